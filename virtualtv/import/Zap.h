#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line that has the shape of a service in a zap file. Any of its fields may still be wrong.
/// @return where it starts, in bytes.
std::optional<std::size_t> findZap(std::string_view content);

/// Reads a zap file, of whatever antenna. See `Format`.
void readZap(std::string_view content, ServiceList& list, Problems& problems);

}  // namespace virtualtv::import
