// SPDX-License-Identifier: MIT
#include "seam/Values.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "services/FieldNumbers.h"
#include "text/Units.h"

namespace virtualtv::seam {

namespace {

constexpr std::string_view nullRecord = "null";
constexpr std::size_t recordsShown = 8;  // a longer list is written as its length only

/// Units of a record's text in host order; records hold them big-endian.
std::u16string hostUnits(const TCServiceData& record, const TCServiceData::Field& field) {
  const auto& stored = record.Units();
  std::u16string units(static_cast<std::size_t>(field.length), u'\0');
  for (std::size_t at = 0; at < units.size(); ++at) {
    const unsigned unit = stored[static_cast<std::size_t>(field.value) + at];
    units[at] = static_cast<char16_t>((unit & 0xFFU) << 8U | unit >> 8U);
  }
  return units;
}

/// Removes and returns a number at the front of `text`; empty when there is none.
std::string_view takeNumber(std::string_view& text) {
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", sign), text.size());
  const std::string_view number = text.substr(0, end);
  text.remove_prefix(end);
  return number;
}

bool take(std::string_view& text, char expected) {
  if (text.empty() || text.front() != expected) return false;
  text.remove_prefix(1);
  return true;
}

bool take(std::string_view& text, std::string_view expected) {
  if (!text.starts_with(expected)) return false;
  text.remove_prefix(expected.size());
  return true;
}

/// The 64 bits of a record's number, signed or unsigned.
std::optional<std::uint64_t> bitsOf(std::string_view written) {
  constexpr text::Range all{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::uint64_t>::max()};
  return text::numberIn(written, all);
}

bool takeField(std::string_view& text, TCServiceData& record, const FieldCheck& check) {
  const std::string_view field = takeNumber(text);
  const auto id = text::numberIn<int>(field);
  if (check && !field.empty()) requireFieldId(field);
  if (!id || *id < 0 || !take(text, '=')) return false;
  if (!text.starts_with('"')) {
    const std::string_view written = text.substr(0, text.find_first_of(",}"));
    text.remove_prefix(written.size());
    if (check) check(record, *id, written);
    const auto bits = bitsOf(written);
    if (bits) record.Set(*id, *bits);
    return bits.has_value();
  }
  const auto units = text::parseQuoted(text);
  if (!units) return false;
  if (check) check(record, *id, std::nullopt);
  std::vector<unsigned short> stored;
  for (const char16_t unit : *units) stored.push_back(static_cast<unsigned short>((unit & 0xFFU) << 8U | unit >> 8U));
  record.Set(*id, stored.data(), static_cast<int>(stored.size()));
  return true;
}

/// Reads `open item,item close` from the front of `text`.
template <typename Item>
bool takeList(std::string_view& text, char open, char close, Item item) {
  if (!take(text, open)) return false;
  if (take(text, close)) return true;
  do {
    if (!item()) return false;
  } while (take(text, ','));
  return take(text, close);
}

bool takeRecord(std::string_view& text, TCServiceData& record, const FieldCheck& check) {
  return takeList(text, '{', '}', [&] { return takeField(text, record, check); });
}

}  // namespace

std::string print(const std::string& value) {
  return text::quoted(text::toUnits(value));
}
std::string print(const char* value) {
  return value == nullptr ? "null" : print(std::string(value));
}

std::string printNumber(int fieldId, unsigned long long value) {
  if (fieldId == TCServiceData::SERVICE_ID) return std::to_string(value);
  return std::to_string(static_cast<long long>(value));
}

std::string print(const TCServiceData& record) {
  std::string text = "{";
  for (const TCServiceData::Field& field : record.Fields()) {
    if (text.size() > 1) text += ',';
    text.append(std::to_string(field.id)).append("=");
    text += field.length < 0 ? printNumber(field.id, field.value) : text::quoted(hostUnits(record, field));
  }
  return text += '}';
}

std::string print(const std::list<TCServiceData*>& records) {
  if (records.size() > recordsShown) return "[" + std::to_string(records.size()) + " records]";
  std::string text;
  for (const TCServiceData* record : records) {
    text += (text.empty() ? "" : ",") + (record == nullptr ? std::string(nullRecord) : print(*record));
  }
  return "[" + text + "]";
}

std::string print(const std::map<unsigned char, bool>& favourites) {
  std::string text;
  for (const auto& [group, member] : favourites) {
    text += (text.empty() ? "" : ",") + std::to_string(group) + "=" + (member ? "1" : "0");
  }
  return "{" + text + "}";
}

std::string print(const std::list<std::pair<unsigned long long, bool>>& updates) {
  std::string text;
  for (const auto& [service, member] : updates) {
    text += (text.empty() ? "" : ",") + std::to_string(service) + "=" + (member ? "1" : "0");
  }
  return "{" + text + "}";
}

std::string print(const TCCriteriaHelper& criteria) {
  std::string text;
  TCCriteriaHelper::Step::Kind last = TCCriteriaHelper::Step::WHERE;
  for (const TCCriteriaHelper::Step& step : criteria.Steps()) {
    const bool fetch = step.kind == TCCriteriaHelper::Step::FETCH;
    const bool more = fetch && last == step.kind;
    text += text.empty() ? "" : more ? " " : ", ";
    last = step.kind;
    if (fetch) {
      text += (more ? "" : "fetch ") + std::to_string(step.fieldId);
    } else if (step.kind == TCCriteriaHelper::Step::WHERE) {
      text += "where " + std::to_string(step.fieldId) + "=" + printNumber(step.fieldId, step.value);
    } else {
      text += "order " + std::to_string(step.fieldId) + (step.value == SORT_ASCENDING ? " up" : " down");
    }
  }
  return text;
}

bool parseNumbers(std::string_view text, std::span<const text::Range> ranges, std::uint64_t* numbers) {
  for (const text::Range& range : ranges) {
    if (&range != &ranges.front() && !take(text, ',')) return false;
    const auto number = text::numberIn(takeNumber(text), range);
    if (!number) return false;
    *numbers++ = *number;
  }
  return text.empty();
}

bool parse(std::string_view text, TCServiceData& record, const FieldCheck& check) {
  TCServiceData read;
  if (!takeRecord(text, read, check) || !text.empty()) return false;
  record = read;
  return true;
}

bool parse(std::string_view text, std::list<TCServiceData*>& records, const FieldCheck& check) {
  std::list<std::unique_ptr<TCServiceData>> read;
  const bool whole = takeList(text, '[', ']', [&] {
    if (take(text, nullRecord)) {
      read.push_back(nullptr);
      return true;
    }
    read.push_back(std::make_unique<TCServiceData>());
    return takeRecord(text, *read.back(), check);
  });
  if (!whole || !text.empty()) return false;
  for (TCServiceData* old : records) delete old;
  records.clear();
  for (auto& record : read) records.push_back(record.release());
  return true;
}

bool parse(std::string_view text, std::map<unsigned char, bool>& favourites, const GroupCheck& check) {
  std::map<unsigned char, bool> read;
  const bool whole = takeList(text, '{', '}', [&] {
    const auto group = text::numberIn<unsigned char>(takeNumber(text));
    if (!group || !take(text, '=')) return false;
    const auto member = text::numberIn(takeNumber(text), text::rangeOf<bool>());
    if (!member) return false;
    const bool isNew = read.insert_or_assign(*group, *member != 0).second;
    if (!isNew && check) check(*group);
    return true;
  });
  if (!whole || !text.empty()) return false;
  favourites = std::move(read);
  return true;
}

}  // namespace virtualtv::seam
