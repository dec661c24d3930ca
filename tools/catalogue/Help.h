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
  Json::ValueType type = Json::stringValue;  ///< a text must be one line, and not empty
  bool required = true;
};

/// The help texts: a JSON document written by hand. Knows the line of each value, for problems.
class Help {
 public:
  /// Parses the document. If the text is not a JSON object, adds a problem, and the document is empty.
  /// @param file      name of the file, for problems.
  /// @param problems  receives all problems; must outlive this object.
  Help(std::string file, std::string text, Problems& problems);

  /// The document.
  const Json::Value& root() const { return root_; }

  /// True while `problems` is empty.
  bool isFaultless() const { return problems_.empty(); }

  /// Adds a problem, with the line of a value of the document.
  void report(const Json::Value& at, const std::string& what) const;

  /// Checks that `object` is an object, has all required `members` in their types, and has no other members. Adds a
  /// problem for each violation. @param what  describes the object for a person. @return true if there was none.
  bool check(const Json::Value& object, const std::string& what, std::initializer_list<Member> members) const;

  /// Checks in the same way that all elements of an object or an array are of one type.
  bool checkAll(const Json::Value& collection, const std::string& what, Json::ValueType type) const;

 private:
  bool isOfType(const Json::Value& value, const std::string& what, Json::ValueType type) const;

  std::string file_;
  std::string text_;
  Problems& problems_;
  Json::Value root_{Json::objectValue};
};

}  // namespace catalogue
