#pragma once

#include <string>
#include <string_view>

#include "rpc/Failure.h"

namespace virtualtv::rpc {

/// A request as it stands in its message.
struct Request {
  std::string method;
  std::string_view params;  ///< an array or an object, as JSON; empty where there is none
  std::string_view id;      ///< as JSON; empty for a notification
};

/// @param text  JSON that was checked; outlives what is read. @throws Failure for what is no request.
Request requestIn(std::string_view text);

}  // namespace virtualtv::rpc
