#pragma once

#include <json/json.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace virtualtv::rpc {

/// Codes of JSON-RPC 2.0, and below 2000 those of the virtual TV.
enum class Code {
  notJson = -32700,
  notARequest = -32600,
  noSuchMethod = -32601,
  badParameters = -32602,
  internal = -32603,
  unreadable = 1001,  ///< the set can't read or keep something
  badValue = 1002,    ///< a value that the set does not take
  noSuchSession = 1003,
};

/// Why a call fails: a code for programs, a line for a person, and an object with what else is known.
struct Failure : std::runtime_error {
  Failure(Code failed, const std::string& reason, Json::Value known = Json::objectValue)
      : std::runtime_error(reason), code(failed), data(std::move(known)) {}
  Code code;
  Json::Value data;
};

/// A name that a client gave, for a reason: the front of a long one, and without zero bytes, which end reasons.
std::string nameShown(std::string_view name);

/// The failure that the exception in flight comes to. @param doing  what failed, for messages.
Failure currentFailure(const std::string& doing);

/// The `error` of a response.
Json::Value errorOf(const Failure& failure);

}  // namespace virtualtv::rpc
