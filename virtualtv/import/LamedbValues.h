// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "import/ListBuilder.h"

namespace virtualtv::import {

// Readers for the values of a lamedb. Invalid values throw `Unreadable`.

/// Reads a hexadecimal number without a prefix. @param what  its name in the reason. @param most  the greatest valid
/// number.
std::uint64_t hexadecimal(std::string_view digits, std::string_view what, std::uint64_t most);

/// Namespace, transport stream and original network, which identify a transponder.
using TransponderKey = std::tuple<std::uint64_t, int, int>;
/// A transponder and a service id, which identify a service.
using LamedbKey = std::tuple<TransponderKey, int>;

/// Removes NAMESPACE:STREAM:NETWORK and the colon after it from `text`.
TransponderKey takeTransponderKey(std::string_view& text);

/// Reads the data after the key of a transponder, as in `s 11778000:27500000:1:2:192:2:0`, into the tuning of an entry.
/// @param text  a letter, a blank or a colon, then fields separated by colons.
void readTuning(Entry& entry, std::string_view text);

/// Reads `p:PROVIDER,c:CACHE,...`. Only the PIDs of video and audio are used.
void readCache(Entry& entry, std::string_view text);

}  // namespace virtualtv::import
