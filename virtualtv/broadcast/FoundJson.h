// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include "broadcast/Found.h"

namespace virtualtv::broadcast {

/// The result of a scan as a document, without unknown values.
Json::Value documentOf(const Scan& scan);

}  // namespace virtualtv::broadcast
