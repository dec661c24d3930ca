// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "virtualtv/broadcast/Broadcast.h"

/// The same services as a library that others wrote reads them, for sound captures: it runs over the ends of damaged
/// descriptors, so nothing but tests may use it.
namespace broadcast_tests {

/// A line of what the library can tell of a service: ids, names, scrambling, number, streams with their languages.
std::string decodedLine(const virtualtv::broadcast::FoundService& service);

/// That line of every service that the library finds in packets of 188 bytes, in order.
std::vector<std::string> decoded(const Blob& bytes);

}  // namespace broadcast_tests
