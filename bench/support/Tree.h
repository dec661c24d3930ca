// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <cstddef>
#include <string>

namespace bench {

/// The document of a full channel list as a JSON tree, as small and as compact in memory as the JSON library allows.
/// @param text  the document as "GetFullChannelList" returns it. @throws std::runtime_error when it is not JSON.
Json::Value channelTree(const std::string& text);

}  // namespace bench
