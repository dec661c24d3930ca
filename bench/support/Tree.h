// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <cstddef>
#include <string>

namespace bench {

/// The document of a full channel list, as small and as little scattered as the JSON library can hold it.
/// @param text  the document as "GetFullChannelList" answers it. @throws std::runtime_error when it is no JSON.
Json::Value channelTree(const std::string& text);

}  // namespace bench
