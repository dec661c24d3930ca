// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

namespace virtualtv::rpc {

/// All methods and the topics of events, as an OpenRPC document.
Json::Value openRpcDocument();

}  // namespace virtualtv::rpc
