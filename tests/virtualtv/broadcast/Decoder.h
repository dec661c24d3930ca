// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "virtualtv/broadcast/Broadcast.h"

/// Reads services by a third-party library, for comparison. For intact captures only: the library reads past the ends
/// of damaged descriptors, so only tests may use it.
namespace broadcast_tests {

/// Describes a service in a line: ids, names, scrambling, number, streams with their languages.
std::string decodedLine(const virtualtv::broadcast::FoundService& service);

/// That line of every service that the library finds in packets of 188 bytes, in order.
std::vector<std::string> decoded(const Blob& bytes);

}  // namespace broadcast_tests
