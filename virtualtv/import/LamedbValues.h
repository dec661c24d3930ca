#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "import/ServiceList.h"

namespace virtualtv::import {

// How the values of a lamedb are written. What can't be read is thrown as `Unreadable`.

/// A hexadecimal number without a prefix. @param what  names it in the reason. @param most  the greatest.
std::uint64_t hexadecimal(std::string_view digits, std::string_view what, std::uint64_t most);

/// Namespace, transport stream and original network: what tells a transponder.
using TransponderKey = std::tuple<std::uint64_t, int, int>;
/// A transponder and a service id.
using LamedbKey = std::tuple<TransponderKey, int>;

/// Takes NAMESPACE:STREAM:NETWORK off `text`, and a colon behind it.
TransponderKey takeTransponderKey(std::string_view& text);

/// Reads what stands behind the key of a transponder, as in `s 11778000:27500000:1:2:192:2:0`, into the tuning of an
/// entry. @param text  its first letter, a blank or a colon, then fields between colons.
void readTuning(Entry& entry, std::string_view text);

/// Reads `p:PROVIDER,c:CACHE,...`, of which the PIDs of picture and sound count.
void readCache(Entry& entry, std::string_view text);

}  // namespace virtualtv::import
