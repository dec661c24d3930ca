// SPDX-License-Identifier: MIT
#include "services/FieldNumbers.h"

#include <limits>
#include <stdexcept>

#include "services/FieldNames.h"
#include "services/Fields.h"
#include "services/Service.h"
#include "tvservice/TCServiceData.h"

namespace virtualtv {

namespace {

[[noreturn]] void refuseInput(int fieldId, const std::string& input) {
  throw std::invalid_argument(describeField(fieldId) + " takes " + takenBy(fieldId) + ", not " + input);
}

}  // namespace

std::string describeField(int fieldId) {
  const KnownField* field = knownField(fieldId);
  const std::string number = std::to_string(fieldId);
  const std::string name = field == nullptr ? nameOfField(fieldId) : field->name;
  return "field " + number + (name == number ? "" : " (" + name + ")");
}

void requireFieldId(std::string_view written) {
  constexpr text::Range ids{0, std::numeric_limits<int>::max()};
  if (text::numberIn(written, ids)) return;
  throw std::invalid_argument("a field has " + text::describe(ids) + ", not '" + std::string(written) + "'");
}

bool takesNumber(int fieldId) {
  const KnownField* field = knownField(fieldId);
  return field == nullptr || field->kind != FieldKind::text;
}

bool takesText(int fieldId) {
  const KnownField* field = knownField(fieldId);
  const bool isOfPicture = fieldId >= PICTURE_WIDTH && fieldId <= ACTIVE_FORMAT;
  return field == nullptr ? !isOfPicture : field->kind == FieldKind::text;
}

text::Range rangeOfField(int fieldId) {
  const KnownField* field = knownField(fieldId);
  switch (field == nullptr ? FieldKind::text : field->kind) {
    case FieldKind::int32:
      return text::rangeOf<std::int32_t>();
    case FieldKind::uint16:
      return text::rangeOf<std::uint16_t>();
    case FieldKind::uint64:
      return {1, std::numeric_limits<std::uint64_t>::max()};
    case FieldKind::text:
      break;
  }
  return text::rangeOf<std::int64_t>();
}

std::string numbersTakenBy(int fieldId) {
  return text::describe(rangeOfField(fieldId)) +
         (fieldId == TCServiceData::SERVICE_ID ? " (0 stands for no service)" : "");
}

std::string takenBy(int fieldId) {
  constexpr const char* text = "a text between double quotes";
  if (!takesNumber(fieldId)) return text;
  std::string wanted = numbersTakenBy(fieldId);
  if (takesText(fieldId)) wanted.append(" or ").append(text);
  return wanted;
}

std::uint64_t fieldNumber(int fieldId, std::string_view written) {
  const auto number = takesNumber(fieldId) ? text::numberIn(written, rangeOfField(fieldId)) : std::nullopt;
  if (number) return *number;
  refuseInput(fieldId, "'" + std::string(written) + "'");
}

void requireText(int fieldId) {
  if (!takesText(fieldId)) refuseInput(fieldId, "a text");
}

}  // namespace virtualtv
