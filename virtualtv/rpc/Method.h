#pragma once

#include <json/json.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "json/JsonPart.h"
#include "rpc/Failure.h"

namespace virtualtv::rpc {

class Core;
struct Method;
struct Seat;

/// A parameter of a method, as it is checked and documented.
struct Parameter {
  std::string_view name;
  std::string_view schema;  ///< JSON Schema, as JSON
  std::string_view help;
  bool required = false;
};

/// The parameters of a call, by name. What is missing or of another kind throws a `Failure` that names it.
class Params {
 public:
  /// @param given  what the call has, as JSON that was checked: a list in the order of `known`, or an object; empty for
  /// none. @throws Failure when there are unknown ones, too many, or a required one is missing.
  Params(std::span<const Parameter> known, std::string_view given);

  /// False for one that is missing, or null.
  bool has(std::string_view name) const { return !value(name).isNull(); }
  /// False for one that is missing.
  bool isGiven(std::string_view name) const { return values_.find(name.data(), name.data() + name.size()) != nullptr; }
  /// Null where it is missing. Owned by this object.
  const Json::Value& value(std::string_view name) const;
  /// A text without U+0000.
  std::string text(std::string_view name) const;
  /// Any text.
  std::string content(std::string_view name) const;
  std::string text(std::string_view name, const std::string& otherwise) const;
  bool truth(std::string_view name, bool otherwise) const;
  std::int64_t number(std::string_view name, const text::Range& range) const;
  std::int64_t number(std::string_view name, const text::Range& range, std::int64_t otherwise) const;

  /// Runs `read` on the value; what it throws as std::invalid_argument is a failure of the parameter.
  template <typename Read>
  auto read(std::string_view name, Read read) const {
    try {
      const JsonPart all(values_);
      return read(all.at(name));
    } catch (const std::invalid_argument& error) {
      throw Failure(Code::badParameters, error.what());
    }
  }

 private:
  void put(std::span<const Parameter> known, Json::Value given);

  Json::Value values_{Json::objectValue};
};

/// What a method has to do with.
struct Call {
  Core& core;
  Seat& seat;  ///< whose call it is
  const Method& method;
  const Params& params;
  std::vector<std::function<void()>>& behind;  ///< to be run once the reply is on its way
};

/// A method that clients can call. From these rows calls are carried out, and the description of all is made.
struct Method {
  std::string_view name;
  std::string_view help;
  std::vector<Parameter> parameters;
  std::string_view result;  ///< JSON Schema of what it answers, as JSON
  Json::Value (*run)(const Call& call) = nullptr;
  /// In place of that: appends the answer as JSON, which is quicker.
  void (*write)(const Call& call, std::string& text) = nullptr;
  /// Where the texts of the row are missing: puts them into the method's part of the description.
  void (*describe)(const Method& method, Json::Value& description) = nullptr;
};

/// All methods but those of the plug-in's commands, by area.
std::span<const Method> sessionMethods();
std::span<const Method> setMethods();
std::span<const Method> testMethods();
std::span<const Method> eventMethods();
std::span<const Method> historyMethods();
std::span<const Method> commandMethods();

/// The method of that name; null when there is none.
const Method* findMethod(std::string_view name);
/// All of them, in the order in which the description tells them.
std::vector<const Method*> methods();

}  // namespace virtualtv::rpc
