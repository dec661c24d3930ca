// SPDX-License-Identifier: MIT
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

/// A parameter of a method, for checks and documentation.
struct Parameter {
  std::string_view name;
  std::string_view schema;  ///< JSON Schema, as JSON
  std::string_view help;
  bool required = false;
};

/// The parameters of a call, by name. Reading a missing parameter, or one of another type, throws a `Failure` that
/// names it.
class Params {
 public:
  /// @param given  the parameters of the call, as checked JSON: a list in the order of `known`, or an object; empty for
  /// none. @throws Failure for unknown, too many or missing required parameters.
  Params(std::span<const Parameter> known, std::string_view given);

  /// False for a parameter that is missing or null.
  bool has(std::string_view name) const { return !value(name).isNull(); }
  /// False for a parameter that is missing.
  bool isGiven(std::string_view name) const { return values_.find(name.data(), name.data() + name.size()) != nullptr; }
  /// The value; null when the parameter is missing. Owned by this object.
  const Json::Value& value(std::string_view name) const;
  /// A text. U+0000 in it is refused.
  std::string text(std::string_view name) const;
  /// A text, which may contain U+0000.
  std::string content(std::string_view name) const;
  std::string text(std::string_view name, const std::string& otherwise) const;
  bool truth(std::string_view name, bool otherwise) const;
  std::int64_t number(std::string_view name, const text::Range& range) const;
  std::int64_t number(std::string_view name, const text::Range& range, std::int64_t otherwise) const;

  /// Runs `read` on the value. A std::invalid_argument that it throws becomes a `Failure` of the parameter.
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

/// The context of a call.
struct Context {
  Core& core;
  Seat& seat;  ///< the session of the caller
  const Method& method;
  const Params& params;
  std::vector<std::function<void()>>& behind;  ///< functions to run after the reply was sent
};

/// A method that clients can call. These rows define both the calls and the OpenRPC document.
struct Method {
  std::string_view name;
  std::string_view help;
  std::vector<Parameter> parameters;
  std::string_view result;  ///< JSON Schema of the result, as JSON
  Json::Value (*run)(const Context& context) = nullptr;
  /// A faster alternative: appends the result as JSON.
  void (*write)(const Context& context, std::string& text) = nullptr;
  /// Adds the texts to the method's description in the document, for rows that do not contain them.
  void (*describe)(const Method& method, Json::Value& description) = nullptr;
};

/// All methods except the plug-in's commands, by area.
std::span<const Method> sessionMethods();
std::span<const Method> setMethods();
std::span<const Method> testMethods();
std::span<const Method> eventMethods();
std::span<const Method> historyMethods();
std::span<const Method> commandMethods();

/// The method with this name; null when there is none.
const Method* findMethod(std::string_view name);
/// All methods, in the order of the OpenRPC document.
std::vector<const Method*> methods();

}  // namespace virtualtv::rpc
