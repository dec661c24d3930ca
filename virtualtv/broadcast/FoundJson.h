#pragma once

#include <json/json.h>

#include "broadcast/Found.h"

namespace virtualtv::broadcast {

/// All that was found, as a document: what is not told is left out.
Json::Value documentOf(const Scan& scan);

}  // namespace virtualtv::broadcast
