#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/Numbers.h"

// What may be written into the fields of a service from outside. Fields that the set knows nothing of take numbers and
// texts.

namespace virtualtv {

/// A field for a person: `field 2 (PTC)`, `field 1003 (picture_width)`, `field 200`.
std::string describeField(int fieldId);

/// Refuses a number that no field has. @throws std::invalid_argument with the numbers that fields have.
void requireFieldId(std::string_view written);

bool takesNumber(int fieldId);
bool takesText(int fieldId);

/// The numbers that a field takes. No service has the id 0, which stands for no service. Fields that the set knows
/// nothing of and those of pictures take any number with a sign; a field of a text can hold as many in an odd record.
text::Range rangeOfField(int fieldId);

/// The same for a person: `a number from 0 to 65535`.
std::string numbersTakenBy(int fieldId);
/// All that a field takes: its numbers, `a text between double quotes`, or one of both.
std::string takenBy(int fieldId);

/// The number that a text is, for a field; a negative one as two's complement.
/// @throws std::invalid_argument when the text is no number that the field takes; says which field and what it takes.
std::uint64_t fieldNumber(int fieldId, std::string_view written);
/// @throws std::invalid_argument when the field takes no text; likewise.
void requireText(int fieldId);

}  // namespace virtualtv
