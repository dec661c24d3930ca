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

/// What a field can hold.
enum class FieldKind {
  int32,   ///< a signed number of 32 bits, given as 32 bits or widened to 64
  uint16,  ///< 0 to 65535
  uint64,  ///< any number
  text,    ///< 16-bit units
};

/// A field that has a column of its own. All other field ids hold either a number of 64 bits or a text.
struct KnownField {
  int id;
  const char* name;  ///< as in `TCServiceData` and `ServiceField`
  FieldKind kind;
  const char* column;
  const char* compared;  ///< the column that conditions look at
  bool listed;           ///< channel lists tell it; all other fields are what the user makes of a service
};

std::span<const KnownField> knownFields();

/// Null when the field has no column of its own.
const KnownField* knownField(int id);

/// What makes signed numbers of unsigned ones, in the same order, and back, by exclusive or.
inline constexpr std::uint64_t unsignedAsSigned = std::uint64_t{1} << 63;

/// How the database stands for a number: SQLite's integers are signed, and service ids shall sort as unsigned.
/// @param field  null for one without a column of its own.
/// @return nothing when the field can't hold `value`.
std::optional<std::int64_t> toColumn(const KnownField* field, std::uint64_t value);
/// The number again, a negative one as two's complement of 64 bits.
inline std::uint64_t fromColumn(const KnownField* field, std::int64_t value) {
  const auto number = std::bit_cast<std::uint64_t>(value);
  return field != nullptr && field->kind == FieldKind::uint64 ? number ^ unsignedAsSigned : number;
}

/// `toColumn` for what is to be stored. @throws std::invalid_argument when the field can't hold it; says which and why.
std::int64_t numberColumn(int fieldId, std::uint64_t value);
std::int64_t numberColumn(const KnownField& field, std::uint64_t value);

/// A text as stored: its units, high byte first.
std::vector<std::byte> toBytes(std::u16string_view units);
std::u16string toUnits(Bytes bytes);

}  // namespace virtualtv
