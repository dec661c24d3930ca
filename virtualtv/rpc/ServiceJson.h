// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include "services/Service.h"

namespace virtualtv::rpc {

/// A service as in the results of methods that list services.
Json::Value serviceDocument(ServiceKey key, const Service& service);

}  // namespace virtualtv::rpc
