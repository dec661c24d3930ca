// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "d2tv/CD2tvMgrProxy.h"
#include "text/Numbers.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

// The text form of the values of platform calls, written in traces and read from faults.

namespace virtualtv::seam {

std::string print(const std::string& value);
std::string print(const char* value);
std::string print(const TCServiceData& record);
std::string print(const std::list<TCServiceData*>& records);
std::string print(const std::map<unsigned char, bool>& favourites);
std::string print(const TCCriteriaHelper& criteria);
std::string print(const std::list<std::pair<unsigned long long, bool>>& updates);

/// Writes a number of a service field, as in records and conditions. It is signed, except for the service id.
std::string printNumber(int fieldId, unsigned long long value);

template <typename Number, std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>, int> = 0>
std::string print(Number value) {
  if constexpr (std::is_enum_v<Number>) {
    return std::to_string(static_cast<int>(value));
  } else {
    return std::to_string(value);
  }
}

/// Called before each field of a record is set, with the record so far in `before`. `number` is the number as written,
/// or nothing when the value is a text between double quotes. Throws to refuse the field; `parse` passes the exception
/// on.
using FieldCheck =
    std::function<void(const TCServiceData& before, int fieldId, std::optional<std::string_view> number)>;
/// Called for each duplicate favourite group. `parse` passes an exception on.
using GroupCheck = std::function<void(int group)>;

/// Parses a text into a value. Returns false, and leaves the value unchanged, when the text has another form or a
/// number in it is out of range. Fields of records take any 64-bit number, signed or unsigned, and any text. If a field
/// or group appears twice, the last one counts, unless `check` throws. With a `check`, an unknown field number throws
/// std::invalid_argument. The list of records is replaced: its old records are deleted, and the caller owns the new
/// ones.
bool parse(std::string_view text, TCServiceData& record, const FieldCheck& check = {});
bool parse(std::string_view text, std::list<TCServiceData*>& records, const FieldCheck& check = {});
bool parse(std::string_view text, std::map<unsigned char, bool>& favourites, const GroupCheck& check = {});
/// Reads comma-separated integers, one for each range. Negative ones are returned as their two's complement.
bool parseNumbers(std::string_view text, std::span<const text::Range> ranges, std::uint64_t* numbers);

/// References to the members that make up a value of the form `numbers`.
template <typename Number, std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>, int> = 0>
auto parts(Number& value) {
  return std::tie(value);
}
inline auto parts(TSTvMode& value) {
  return std::tie(value.antennaMode, value.serviceMode);
}
inline auto parts(TSRectInfo& value) {
  return std::tie(value.x, value.y, value.width, value.height);
}
inline auto parts(TSResolution& value) {
  return std::tie(value.horizontal, value.vertical, value.frequency, value.horizontalFrequency);
}
inline auto parts(TSAudio& value) {
  return std::tie(value.lang, value.decodeType, value.pid, value.audioMode, value.audioType);
}
inline auto parts(TSHybridSBT& value) {
  return std::tie(value.type, value.pid);
}
inline auto parts(TSTransponder& value) {
  return std::tie(value.id, value.satelliteId, value.frequency, value.symbolRate, value.polarisation, value.fecInner);
}
inline auto parts(MVPDAudio& value) {
  return std::tie(value.index, value.pid, value.decodeType, value.audioMode, value.audioType, value.lang);
}
inline auto parts(DVBSubtitleInfo& value) {
  return std::tie(value.index, value.lang);
}

namespace detail {

template <typename Members>
struct Ranges;
template <typename... Members>
struct Ranges<std::tuple<Members&...>> {
  static constexpr std::array<text::Range, sizeof...(Members)> all{text::rangeOf<Members>()...};
};

}  // namespace detail

/// The range of each part of a value of the form `numbers`.
template <typename Value>
inline constexpr std::span<const text::Range> rangesOf = detail::Ranges<decltype(parts(std::declval<Value&>()))>::all;

template <typename Value>
using IsMany = std::bool_constant<(std::tuple_size_v<decltype(parts(std::declval<Value&>()))> > 1)>;

template <typename Value, std::enable_if_t<std::is_class_v<Value> && IsMany<Value>::value, int> = 0>
std::string print(const Value& value) {
  std::string text;
  std::apply([&](const auto&... part) { ((text += (text.empty() ? "" : ",") + print(part)), ...); },
             parts(const_cast<Value&>(value)));  // only read here
  return text;
}

template <typename Value, typename = decltype(parts(std::declval<Value&>()))>
bool parse(std::string_view text, Value& value) {
  auto members = parts(value);
  std::array<std::uint64_t, std::tuple_size_v<decltype(members)>> numbers{};
  if (!parseNumbers(text, rangesOf<Value>, numbers.data())) return false;
  std::apply(
      [&](auto&... member) {
        std::size_t next = 0;
        ((member = static_cast<std::remove_reference_t<decltype(member)>>(numbers[next++])), ...);
      },
      members);
  return true;
}

/// An argument of a call and its name. An empty name is not written.
template <typename Value>
struct In {
  const char* name;
  const Value& value;
};

/// An output of a call.
template <typename Value>
struct Out {
  const char* name;
  Value& value;
};

template <typename Value>
In<Value> in(const char* name, const Value& value) {
  return {name, value};
}
template <typename Value>
Out<Value> out(const char* name, Value& value) {
  return {name, value};
}

}  // namespace virtualtv::seam
