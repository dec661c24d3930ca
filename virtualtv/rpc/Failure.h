// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace virtualtv::rpc {

/// Error codes: the negative ones of JSON-RPC 2.0, and positive ones below 2000 of the virtual TV.
enum class Code {
  notJson = -32700,
  notARequest = -32600,
  noSuchMethod = -32601,
  badParameters = -32602,
  internal = -32603,
  unreadable = 1001,  ///< the set can't read or persist something
  badValue = 1002,    ///< a value that the set does not take
  noSuchSession = 1003,
};

/// Why a call fails: a code for programs, a line for a person, and an object with details.
struct Failure : std::runtime_error {
  Failure(Code failed, const std::string& reason, Json::Value known = Json::objectValue)
      : std::runtime_error(reason), code(failed), data(std::move(known)) {}
  Code code;
  Json::Value data;
};

/// A name from a client for use in a reason: shortened, and without zero bytes, which would end the reason.
std::string nameShown(std::string_view name);

/// The failure for the current exception. @param doing  the failed action, for messages.
Failure currentFailure(const std::string& doing);

/// The `error` of a response.
Json::Value errorOf(const Failure& failure);

}  // namespace virtualtv::rpc
