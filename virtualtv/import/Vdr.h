#pragma once

#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// True for a line that has the shape of a service in VDR's `channels.conf`: its number of fields, a frequency, a
/// source. Any of its fields may still be wrong.
bool looksLikeVdr(std::string_view line);

/// Reads VDR's `channels.conf`.
Result readVdr(std::string_view content);

}  // namespace virtualtv::import
