// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "rpc/Failure.h"

namespace virtualtv::rpc {

/// A request, as views of its message.
struct Request {
  std::string method;
  std::string_view params;  ///< an array or an object, as JSON; empty for none
  std::string_view id;      ///< as JSON; empty for a notification
};

/// The failure for an invalid request. The answer has the id of the request, or `null` when it has no readable id.
struct NotARequest : Failure {
  NotARequest(const std::string& reason, std::string_view member)
      : Failure(Code::notARequest, reason), id(member.empty() ? "null" : member) {}
  std::string id;  ///< as JSON
};

/// @param text  JSON that was checked; outlives what is read. @throws NotARequest.
Request requestIn(std::string_view text);

}  // namespace virtualtv::rpc
