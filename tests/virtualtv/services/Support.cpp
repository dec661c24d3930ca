// SPDX-License-Identifier: MIT
#include "virtualtv/services/Support.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

namespace virtualtv::test {

namespace {

std::string quoted(const std::vector<unsigned short>& units) {
  std::string text = "\"";
  for (const unsigned short& unit : units) {
    std::array<unsigned char, 2> bytes{};
    std::memcpy(bytes.data(), &unit, bytes.size());
    const int code = bytes[0] << 8 | bytes[1];
    std::array<char, 8> escaped{};
    std::snprintf(escaped.data(), escaped.size(), "\\u%04X", code);
    text += code >= ' ' && code <= '~' ? std::string(1, static_cast<char>(code)) : std::string(escaped.data());
  }
  return text + "\"";
}

std::string described(bool found, const TCServiceData& record) {
  return found ? describe(record) : "none";
}

}  // namespace

Service serviceOf(std::uint64_t id, int major, int minor) {
  Service service;
  service.numbers[TCServiceData::SERVICE_ID] = id;
  service.numbers[TCServiceData::MAJOR] = static_cast<std::uint64_t>(major);
  service.numbers[TCServiceData::MINOR] = static_cast<std::uint64_t>(minor);
  service.numbers[TCServiceData::ANTENNA_MODE] = 0;
  const std::string name = "Service " + std::to_string(id);
  service.texts[TCServiceData::CHANNEL_NAME] = std::u16string(name.begin(), name.end());
  return service;
}

std::string describe(const TCServiceData& record) {
  std::string text;
  for (const auto& field : record.Fields()) {
    if (!text.empty()) text += ' ';
    text += std::to_string(field.id) + "=";
    if (field.length < 0) {
      text += std::to_string(field.value);
      continue;
    }
    std::vector<unsigned short> units(static_cast<std::size_t>(field.length));
    record.Get(field.id, units.data());
    text += quoted(units);
  }
  return text;
}

Criteria& Criteria::fetch(std::initializer_list<int> fields) {
  for (const int field : fields) Fetch(field);
  return *this;
}

Criteria& Criteria::where(int field, int value) {
  Where(field, value);
  return *this;
}

Criteria& Criteria::where(int field, unsigned long long value) {
  Where(field, value);
  return *this;
}

Criteria& Criteria::orderBy(int field, int order) {
  OrderBy(field, static_cast<ESortOrder>(order));
  return *this;
}

std::vector<std::string> listOf(ServiceStore& store, const TCCriteriaHelper& criteria, const TSTvMode& mode) {
  std::list<TCServiceData*> records;
  const int count = store.list(criteria, mode, records);
  std::vector<std::string> described;
  for (TCServiceData* record : records) described.push_back(describe(*std::unique_ptr<TCServiceData>(record)));
  if (static_cast<std::size_t>(count) != described.size()) described.emplace_back("but counted otherwise");
  return described;
}

std::string firstOf(ServiceStore& store, const TCCriteriaHelper& criteria, const TSTvMode& mode) {
  TCServiceData record;
  const bool found = store.first(criteria, mode, record);
  return described(found, record);
}

std::string nextOf(ServiceStore& store, const TCCriteriaHelper& criteria, std::uint64_t id, bool skipLocked,
                   const TSTvMode& mode) {
  TCServiceData record;
  const bool found = store.next(criteria, mode, id, skipLocked, record);
  return described(found, record);
}

std::string previousOf(ServiceStore& store, const TCCriteriaHelper& criteria, std::uint64_t id, bool skipLocked,
                       const TSTvMode& mode) {
  TCServiceData record;
  const bool found = store.previous(criteria, mode, id, skipLocked, record);
  return described(found, record);
}

}  // namespace virtualtv::test
