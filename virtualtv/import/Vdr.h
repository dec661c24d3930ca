// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line that looks like a service in VDR's `channels.conf`: the number of fields, a frequency, a
/// source. Its fields may still be invalid. @return its offset, in bytes.
std::optional<std::size_t> findVdr(std::string_view content);

/// Reads VDR's `channels.conf`. See `Format`.
void readVdr(std::string_view content, ListBuilder& list, Problems& problems);

}  // namespace virtualtv::import
