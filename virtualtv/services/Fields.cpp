// SPDX-License-Identifier: MIT
#include "services/Fields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <stdexcept>

#include "services/FieldNumbers.h"
#include "services/Service.h"
#include "tvservice/TCServiceData.h"

namespace virtualtv {

namespace {

using FieldKind::int32;
using FieldKind::uint16;
using FieldKind::uint64;
using Data = TCServiceData;

constexpr std::array fields{
    KnownField{Data::CHANNEL_TYPE, "CHANNEL_TYPE", int32, "channel_type", "channel_type", true},
    KnownField{Data::PTC, "PTC", uint16, "ptc", "ptc", true},
    KnownField{Data::FREQUENCY, "FREQUENCY", int32, "frequency", "frequency", true},
    KnownField{Data::MODULATION, "MODULATION", int32, "modulation", "modulation", true},
    KnownField{Data::SYMBOL_RATE, "SYMBOL_RATE", int32, "symbol_rate", "symbol_rate", true},
    KnownField{Data::SERVICE_ID, "SERVICE_ID", uint64, "service_id", "service_id", true},
    KnownField{Data::MAJOR, "MAJOR", uint16, "major", "major", true},
    KnownField{Data::MINOR, "MINOR", uint16, "minor", "minor", true},
    KnownField{Data::PROGRAM_NUMBER, "PROGRAM_NUMBER", uint16, "program_number", "program_number", true},
    KnownField{Data::CHANNEL_NAME, "CHANNEL_NAME", FieldKind::text, "channel_name", "NULL", true},
    KnownField{Data::TRANSPORT_STREAM_ID, "TRANSPORT_STREAM_ID", uint16, "transport_stream_id", "transport_stream_id",
               true},
    KnownField{Data::LOCK, "LOCK", uint16, "lock", "lock", false},
    KnownField{Data::SOURCE_ID, "SOURCE_ID", uint16, "source_id", "source_id", true},
    KnownField{Data::ORIGINAL_NETWORK_ID, "ORIGINAL_NETWORK_ID", uint16, "original_network_id", "original_network_id",
               true},
    KnownField{Data::SERVICE_FIELD_110, "SERVICE_FIELD_110", FieldKind::text, "service_field_110", "NULL", false},
    KnownField{Data::ANTENNA_MODE, "ANTENNA_MODE", int32, "antenna_mode", "antenna_mode", true},
    KnownField{HIDDEN, "HIDDEN", int32, "hidden", "hidden_or_0", false},
    KnownField{SERVICE_MODE, "SERVICE_MODE", int32, "service_mode", "service_mode", false},
};

[[noreturn]] void refuse(int fieldId, const std::string& reason) {
  throw std::invalid_argument(describeField(fieldId) + " " + reason);
}

}  // namespace

std::span<const KnownField> knownFields() {
  return fields;
}

const KnownField* knownField(int id) {
  const auto found =
      std::find_if(fields.begin(), fields.end(), [=](const KnownField& field) { return field.id == id; });
  return found == fields.end() ? nullptr : &*found;
}

std::optional<std::int64_t> toColumn(const KnownField* field, std::uint64_t value) {
  const auto number = std::bit_cast<std::int64_t>(value);
  if (field == nullptr) return number;
  switch (field->kind) {
    case uint64:
      return std::bit_cast<std::int64_t>(value ^ unsignedAsSigned);
    case uint16:
      if (value <= std::numeric_limits<std::uint16_t>::max()) return number;
      return std::nullopt;
    case int32:
      if (value <= std::numeric_limits<std::uint32_t>::max()) return static_cast<std::int32_t>(value);
      if (number < 0 && number >= std::numeric_limits<std::int32_t>::min()) return number;
      return std::nullopt;
    case FieldKind::text:
      break;
  }
  return std::nullopt;
}

std::int64_t numberColumn(const KnownField& field, std::uint64_t value) {
  const auto column = toColumn(&field, value);
  return column ? *column : numberColumn(field.id, value);
}

std::int64_t numberColumn(int fieldId, std::uint64_t value) {
  if (const auto column = toColumn(knownField(fieldId), value)) return *column;
  if (!takesNumber(fieldId)) refuse(fieldId, "takes a text, not a number");
  refuse(fieldId, "can't hold " + std::to_string(std::bit_cast<std::int64_t>(value)));
}

std::vector<std::byte> toBytes(std::u16string_view units) {
  std::vector<std::byte> bytes(units.size() * 2);
  auto byte = bytes.begin();
  for (const char16_t unit : units) {
    *byte++ = static_cast<std::byte>(unit >> 8);
    *byte++ = static_cast<std::byte>(unit & 0xff);
  }
  return bytes;
}

std::u16string toUnits(Bytes bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t at = 0; at < units.size(); ++at) {
    units[at] =
        static_cast<char16_t>(std::to_integer<int>(bytes[2 * at]) << 8 | std::to_integer<int>(bytes[2 * at + 1]));
  }
  return units;
}

}  // namespace virtualtv
