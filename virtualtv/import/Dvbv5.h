#pragma once

#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// True for the head of a section in a libdvbv5 channel file, and for a line that sets one of the keys that tell such a
/// file from others.
bool looksLikeDvbv5Section(std::string_view line);
bool looksLikeDvbv5Value(std::string_view line);

/// Reads a libdvbv5 channel file.
Result readDvbv5(std::string_view content);

}  // namespace virtualtv::import
