#pragma once

#include <cstdint>
#include <string_view>

#include "text/Numbers.h"

// The numbers that the fields of a service can hold.

namespace virtualtv {

/// What a field can hold. Fields that the set knows nothing of hold any number with a sign, and so does a field of a
/// text in a record that has a number there.
text::Range rangeOfField(int fieldId);

/// The number that a text is, for a field; a negative one as two's complement.
/// @throws std::invalid_argument when the text is no number that the field can hold; says which and why.
std::uint64_t fieldNumber(int fieldId, std::string_view written);

}  // namespace virtualtv
