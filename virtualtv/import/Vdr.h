#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line that has the shape of a service in VDR's `channels.conf`: its number of fields, a frequency, a
/// source. Any of its fields may still be wrong. @return where it starts, in bytes.
std::optional<std::size_t> findVdr(std::string_view content);

/// Reads VDR's `channels.conf`. See `Format`.
void readVdr(std::string_view content, ServiceList& list, Problems& problems);

}  // namespace virtualtv::import
