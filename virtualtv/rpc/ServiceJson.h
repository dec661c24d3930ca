#pragma once

#include <json/json.h>

#include "services/Service.h"

namespace virtualtv::rpc {

/// A service as lists of services tell it.
Json::Value serviceDocument(ServiceKey key, const Service& service);

}  // namespace virtualtv::rpc
