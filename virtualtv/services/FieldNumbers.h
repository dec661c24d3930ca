// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/Numbers.h"

// What may be written into the fields of a service from outside. Fields unknown to the set take both numbers and texts.

namespace virtualtv {

/// Describes a field to a person: `field 2 (PTC)`, `field 1003 (picture_width)`, `field 200`.
std::string describeField(int fieldId);

/// Checks the number of a field. @throws std::invalid_argument, with the valid numbers, when no field can have this
/// number.
void requireFieldId(std::string_view written);

bool takesNumber(int fieldId);
bool takesText(int fieldId);

/// The numbers that a field takes. The service id excludes 0, which means "no service". Fields unknown to the set and
/// picture fields take any signed number. So do text fields, since an odd record can hold a number in one.
text::Range rangeOfField(int fieldId);

/// Describes that range to a person: `a number from 0 to 65535`.
std::string numbersTakenBy(int fieldId);
/// Describes everything that a field takes: its numbers, `a text between double quotes`, or either.
std::string takenBy(int fieldId);

/// Parses a text as the number of a field. A negative number becomes its two's complement.
/// @throws std::invalid_argument when the field does not take the text as a number. The message names the field and
/// what it takes.
std::uint64_t fieldNumber(int fieldId, std::string_view written);
/// @throws std::invalid_argument when the field takes no text, with the same message.
void requireText(int fieldId);

}  // namespace virtualtv
