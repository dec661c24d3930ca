// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "Problems.h"

namespace catalogue {

/// A member that an object of the help texts may have.
struct Member {
  const char* name = "";
  Json::ValueType type = Json::stringValue;  ///< a text is one line and not empty
  bool required = true;
};

/// The help texts, a JSON document that is written by hand, and where in their file each thing stands.
class Help {
 public:
  /// Reads the document. What is no JSON is reported, and the document is empty then.
  /// @param file      its name in problems.
  /// @param problems  kept; outlives the help texts.
  Help(std::string file, std::string text, Problems& problems);

  /// The document.
  const Json::Value& root() const { return root_; }

  /// True as long as nothing was reported.
  bool isFaultless() const { return problems_.empty(); }

  /// Reports something wrong with a value of the document.
  void report(const Json::Value& at, const std::string& what) const;

  /// True when `object` is an object that has all of `members` that are required and no other than these; otherwise
  /// what is wrong is reported. @param what  what the object describes, for a person.
  bool check(const Json::Value& object, const std::string& what, std::initializer_list<Member> members) const;

  /// The same for an object or array all of whose elements are of one type.
  bool checkAll(const Json::Value& collection, const std::string& what, Json::ValueType type) const;

 private:
  bool isOfType(const Json::Value& value, const std::string& what, Json::ValueType type) const;

  std::string file_;
  std::string text_;
  Problems& problems_;
  Json::Value root_{Json::objectValue};
};

}  // namespace catalogue
