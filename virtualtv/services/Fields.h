// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/Statement.h"

namespace virtualtv {

/// The values that a field can hold.
enum class FieldKind {
  int32,   ///< a signed number of 32 bits, given as 32 bits or widened to 64
  uint16,  ///< 0 to 65535
  uint64,  ///< any number
  text,    ///< 16-bit units
};

/// A field with its own column. All other fields hold either a 64-bit number or a text.
struct KnownField {
  int id;
  const char* name;  ///< as in `TCServiceData` and `ServiceField`
  FieldKind kind;
  const char* column;
  const char* compared;  ///< the column that query conditions compare
  bool listed;           ///< channel lists set it; all other fields are the user's edits
};

std::span<const KnownField> knownFields();

/// Null when the field has no column of its own.
const KnownField* knownField(int id);

/// XOR with this maps unsigned numbers to signed ones in the same order, and back.
inline constexpr std::uint64_t unsignedAsSigned = std::uint64_t{1} << 63;

/// The column value of a number. SQLite's integers are signed, but service ids must sort as unsigned.
/// @param field  null for a field without its own column.
/// @return nothing when the field can't hold `value`.
std::optional<std::int64_t> toColumn(const KnownField* field, std::uint64_t value);
/// The number behind a column value. A negative number is given as its 64-bit two's complement.
inline std::uint64_t fromColumn(const KnownField* field, std::int64_t value) {
  const auto number = std::bit_cast<std::uint64_t>(value);
  return field != nullptr && field->kind == FieldKind::uint64 ? number ^ unsignedAsSigned : number;
}

/// `toColumn` for a value to store. @throws std::invalid_argument when the field can't hold it. The message says which
/// field and why.
std::int64_t numberColumn(int fieldId, std::uint64_t value);
std::int64_t numberColumn(const KnownField& field, std::uint64_t value);

/// A text as stored: its units, high byte first.
std::vector<std::byte> toBytes(std::u16string_view units);
std::u16string toUnits(Bytes bytes);

}  // namespace virtualtv
