#pragma once

#include <json/json.h>

#include <utility>
#include <vector>

#include "services/ChannelType.h"
#include "services/Service.h"

namespace virtualtv::rpc {

/// What clients call the kinds of services.
const std::vector<std::pair<const char*, ServiceKind>>& kindNames();

/// A service as lists of services tell it.
Json::Value serviceDocument(ServiceKey key, const Service& service);

}  // namespace virtualtv::rpc
