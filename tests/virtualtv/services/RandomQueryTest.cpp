// SPDX-License-Identifier: MIT
// Compares answers of the service database with those of a simple search through a list of services.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <tuple>
#include <variant>

#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;
using Step = TCCriteriaHelper::Step;

const std::vector<int> narrowFields{2, 13, 14, 15, 18, 22, 37, 41};
const std::vector<int> wideFields{1, 4, 6, 7, 115, HIDDEN, SERVICE_MODE};
const std::vector<int> textFields{16, 110};
const std::vector<int> rawFields{200, -7};

bool isOneOf(const std::vector<int>& fields, int field) {
  return std::find(fields.begin(), fields.end(), field) != fields.end();
}

struct Entry {
  ServiceKey key;
  Service service;

  std::optional<std::uint64_t> number(int field) const {
    const auto found = service.numbers.find(field);
    return found == service.numbers.end() ? std::nullopt : std::optional(found->second);
  }

  auto place() const {
    return std::tuple(number(Data::MAJOR).value_or(65536), number(Data::MINOR).value_or(65536), key);
  }

  bool meets(int field, std::uint64_t value) const {
    auto held = number(field);
    if (field == HIDDEN && !held) held = 0;
    if (!held) return false;
    if (!isOneOf(wideFields, field)) return *held == value;
    const auto number32 = static_cast<std::uint32_t>(*held);
    const auto widened = static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(number32)});
    return value == number32 || value == widened;
  }

  /// Sorts absent values last, numbers before texts.
  using Rank = std::tuple<int, std::variant<std::uint64_t, std::int64_t, std::u16string>>;
  Rank rank(int field, bool descending) const {
    const auto text = service.texts.find(field);
    const int textual = descending ? 0 : 1;
    if (text != service.texts.end()) return {textual, text->second};
    const auto held = number(field);
    if (!held) return {2, std::uint64_t{0}};
    if (field == Data::SERVICE_ID) return {1 - textual, *held};
    return {1 - textual, static_cast<std::int64_t>(*held)};
  }
};

class Reference {
 public:
  explicit Reference(std::vector<Entry> entries) : entries_(std::move(entries)) {
    std::sort(entries_.begin(), entries_.end(), [](const auto& a, const auto& b) { return a.place() < b.place(); });
  }

  std::vector<Entry> selected(const TCCriteriaHelper& criteria, const TSTvMode& mode) const {
    std::vector<Entry> found;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(found),
                 [&](const Entry& entry) { return isSelected(entry, criteria, mode); });
    return found;
  }

  std::vector<std::string> list(const TCCriteriaHelper& criteria, const TSTvMode& mode) const {
    std::vector<Entry> found = selected(criteria, mode);
    const std::vector<Step> lastFirst(criteria.Steps().rbegin(), criteria.Steps().rend());
    for (const Step& step : lastFirst) {
      if (step.kind != Step::ORDER_BY) continue;
      const bool descending = step.value == 1;
      std::stable_sort(found.begin(), found.end(), [&](const Entry& a, const Entry& b) {
        const auto left = a.rank(step.fieldId, descending);
        const auto right = b.rank(step.fieldId, descending);
        if (std::get<0>(left) != std::get<0>(right)) return std::get<0>(left) < std::get<0>(right);
        return descending ? std::get<1>(right) < std::get<1>(left) : std::get<1>(left) < std::get<1>(right);
      });
    }
    std::vector<std::string> described;
    described.reserve(found.size());
    for (const Entry& entry : found) described.push_back(record(entry, criteria));
    return described;
  }

  std::string step(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t id, bool skipLocked,
                   bool forwards) const {
    std::vector<Entry> list = selected(criteria, mode);
    std::erase_if(list, [&](const Entry& entry) {
      const bool locked = entry.number(Data::LOCK).value_or(0) != 0;
      return !entry.number(Data::SERVICE_ID) || (skipLocked && locked);
    });
    const auto current = std::find_if(entries_.begin(), entries_.end(),
                                      [&](const Entry& entry) { return entry.number(Data::SERVICE_ID) == id; });
    if (!forwards) std::reverse(list.begin(), list.end());
    const auto isBeyond = [&](const Entry& entry) {
      if (current == entries_.end()) return false;
      return forwards ? current->place() < entry.place() : entry.place() < current->place();
    };
    // The current service is considered only when there is no other.
    const auto behind = std::stable_partition(list.begin(), list.end(),
                                              [&](const Entry& entry) { return entry.number(Data::SERVICE_ID) != id; });
    std::stable_partition(list.begin(), behind, isBeyond);
    return list.empty() ? "none" : record(list.front(), criteria);
  }

 private:
  static bool isSelected(const Entry& entry, const TCCriteriaHelper& criteria, const TSTvMode& mode) {
    for (const Step& step : criteria.Steps()) {
      if (step.kind == Step::WHERE && !entry.meets(step.fieldId, step.value)) return false;
    }
    if (mode.antennaMode == -1 && mode.serviceMode == -1) return true;
    const int list = mode.serviceMode;
    const bool named = (list >= 3 && list <= 18) || (list >= 21 && list <= 27);
    const auto value = [](int number) { return static_cast<std::uint64_t>(std::int64_t{number}); };
    return entry.meets(Data::ANTENNA_MODE, value(mode.antennaMode)) &&
           (!named || entry.meets(SERVICE_MODE, value(list)));
  }

  static std::string record(const Entry& entry, const TCCriteriaHelper& criteria) {
    TCServiceData data;
    std::vector<int> fetched;
    for (const Step& step : criteria.Steps()) {
      if (step.kind != Step::FETCH || isOneOf(fetched, step.fieldId)) continue;
      fetched.push_back(step.fieldId);
      if (const auto number = entry.number(step.fieldId)) data.Set(step.fieldId, *number);
      const auto text = entry.service.texts.find(step.fieldId);
      if (text == entry.service.texts.end()) continue;
      std::vector<unsigned short> units;
      for (const char16_t unit : text->second) {
        const unsigned char bytes[] = {static_cast<unsigned char>(unit >> 8), static_cast<unsigned char>(unit & 0xff)};
        unsigned short stored = 0;
        std::copy(std::begin(bytes), std::end(bytes), reinterpret_cast<unsigned char*>(&stored));
        units.push_back(stored);
      }
      data.Set(step.fieldId, units.data(), static_cast<int>(units.size()));
    }
    return describe(data);
  }

  std::vector<Entry> entries_;
};

class Chance {
 public:
  explicit Chance(unsigned seed) : engine_(seed) {}

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine_); }
  bool in(int parts) { return below(parts) == 0; }
  template <typename Value>
  Value oneOf(const std::vector<Value>& values) {
    return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
  }

  std::uint64_t number(int field) {
    constexpr auto minusOne = ~std::uint64_t{0};
    if (field == Data::SERVICE_ID || isOneOf(rawFields, field)) {
      return oneOf<std::uint64_t>({0, 1, 2, 3, std::uint64_t{1} << 63, minusOne - 1, minusOne});
    }
    if (isOneOf(narrowFields, field)) return oneOf<std::uint64_t>({0, 1, 2, 3, 65535});
    return oneOf<std::uint64_t>({0, 1, 2, 3, minusOne});
  }

  std::u16string text() { return oneOf<std::u16string>({u"", u"a", u"B", u"\x0100", u"ab", u"\xFFFF"}); }

  int field() {
    std::vector<int> fields{Data::SERVICE_ID};
    for (const auto* group : {&narrowFields, &wideFields, &textFields, &rawFields}) {
      fields.insert(fields.end(), group->begin(), group->end());
    }
    return oneOf(fields);
  }

  Service service() {
    Service service;
    for (const auto* group : {&narrowFields, &wideFields}) {
      for (const int field : *group) {
        if (!in(5)) service.numbers[field] = number(field);
      }
    }
    if (!in(10)) service.numbers[Data::SERVICE_ID] = number(Data::SERVICE_ID);
    for (const int field : textFields) {
      if (!in(5)) service.texts[field] = text();
    }
    for (const int field : rawFields) {
      if (in(2)) service.numbers[field] = number(field);
      if (!service.numbers.contains(field) && in(2)) service.texts[field] = text();
    }
    return service;
  }

  TCCriteriaHelper criteria() {
    TCCriteriaHelper criteria;
    for (int steps = below(9); steps > 0; --steps) {
      const int id = field();
      const int kind = below(8);
      if (kind < 5) criteria.Fetch(id);
      if (kind == 5) criteria.Where(id, static_cast<unsigned long long>(number(id)));
      if (kind == 6) criteria.Where(id, oneOf<int>({-1, 0, 1, 2, 3, 65535}));
      if (kind == 7) criteria.OrderBy(id, oneOf<ESortOrder>({SORT_ASCENDING, SORT_DESCENDING}));
    }
    return criteria;
  }

  TSTvMode mode() { return in(2) ? anyMode : modeOf(below(4) - 1, oneOf<int>({-1, 0, 1, 2, 3, 19, 27})); }

 private:
  std::mt19937 engine_;
};

std::string shown(const TCCriteriaHelper& criteria, const TSTvMode& mode) {
  std::string text = "mode " + std::to_string(mode.antennaMode) + "," + std::to_string(mode.serviceMode);
  for (const Step& step : criteria.Steps()) {
    text += std::string(" ") + "FWO"[step.kind] + std::to_string(step.fieldId) + ":" + std::to_string(step.value);
  }
  return text;
}

TEST(RandomQueries, AreAnsweredAsWorkedOutOnAPlainList) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  Chance chance(seed);
  MemoryStore memory;
  ServiceStore& store = memory.store;
  for (int round = 0; round < 12; ++round) {
    std::vector<Service> services;
    for (int count = chance.below(40); count > 0; --count) services.push_back(chance.service());
    store.replaceAll(services);
    std::vector<Entry> entries;
    for (const ServiceKey key : store.keys()) entries.push_back({key, store.read(key).value()});
    const Reference reference(entries);
    for (int query = 0; query < 150; ++query) {
      const TCCriteriaHelper criteria = chance.criteria();
      const TSTvMode mode = chance.mode();
      SCOPED_TRACE(shown(criteria, mode));
      const auto expected = reference.list(criteria, mode);
      ASSERT_EQ(listOf(store, criteria, mode), expected);
      ASSERT_EQ(firstOf(store, criteria, mode), expected.empty() ? "none" : expected.front());
      const std::uint64_t id = chance.number(Data::SERVICE_ID);
      const bool skip = chance.in(2);
      ASSERT_EQ(nextOf(store, criteria, id, skip, mode), reference.step(criteria, mode, id, skip, true)) << id << skip;
      ASSERT_EQ(previousOf(store, criteria, id, skip, mode), reference.step(criteria, mode, id, skip, false))
          << id << skip;
    }
  }
}

}  // namespace
}  // namespace virtualtv::test
