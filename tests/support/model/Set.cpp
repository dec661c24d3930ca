// SPDX-License-Identifier: MIT
#include "support/model/Set.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace model {

namespace {

using Data = TCServiceData;
using virtualtv::WindowState;

constexpr std::uint64_t absent = ~std::uint64_t{0};  // sorts last

bool meets(const Service& service, const Condition& condition) {
  const auto held = number(service, condition.field);
  if (condition.field == virtualtv::HIDDEN) return held.value_or(0) == condition.value;
  return held == condition.value;
}

bool meetsAll(const Service& service, const Conditions& conditions) {
  return std::all_of(conditions.begin(), conditions.end(),
                     [&](const Condition& condition) { return meets(service, condition); });
}

/// The sort key of a service in the list.
auto place(const Set& set, ServiceKey key) {
  const Service& service = set.services.at(key);
  return std::tuple(number(service, Data::MAJOR).value_or(absent), number(service, Data::MINOR).value_or(absent), key);
}

ServiceKey firstOf(const std::vector<ServiceKey>& keys) {
  return keys.empty() ? 0 : keys.front();
}

bool namesAnOperator(int serviceMode) {
  return (serviceMode >= 3 && serviceMode <= 18) || (serviceMode >= 21 && serviceMode <= 27);
}

virtualtv::Input* inputOf(Set& set, int source) {
  for (virtualtv::Input& input : set.state.inputs) {
    if (input.source == source) return &input;
  }
  return nullptr;
}

int stateOf(const virtualtv::Input& input) {
  return input.plugged ? virtualtv::SOURCE_STATE_SHOWN : virtualtv::SOURCE_STATE_NO_SIGNAL;
}

/// Records in the settings what the main window shows, as the platform does.
void note(Set& set, const char* shown) {
  set.settings["db/boot/last_service"] = shown;
}

}  // namespace

Condition equals(int field, int value) {
  return {field, static_cast<std::uint64_t>(std::int64_t{value})};
}

std::optional<std::uint64_t> number(const Service& service, int field) {
  const auto found = service.numbers.find(field);
  if (found == service.numbers.end()) return std::nullopt;
  return found->second;
}

const Service* at(const Set& set, ServiceKey key) {
  const auto found = set.services.find(key);
  return found == set.services.end() ? nullptr : &found->second;
}

std::vector<ServiceKey> listed(const Set& set, const Conditions& conditions) {
  std::vector<ServiceKey> keys;
  for (const auto& [key, service] : set.services) {
    if (meetsAll(service, conditions)) keys.push_back(key);
  }
  std::sort(keys.begin(), keys.end(), [&](ServiceKey a, ServiceKey b) { return place(set, a) < place(set, b); });
  return keys;
}

ServiceKey first(const Set& set, const Conditions& conditions) {
  return firstOf(listed(set, conditions));
}

ServiceKey firstById(const Set& set, const Conditions& conditions) {
  const auto rank = [&](ServiceKey key) {
    const auto id = number(set.services.at(key), Data::SERVICE_ID);
    return std::pair(!id, id.value_or(0));
  };
  std::vector<ServiceKey> keys = listed(set, conditions);
  std::stable_sort(keys.begin(), keys.end(), [&](ServiceKey a, ServiceKey b) { return rank(a) < rank(b); });
  return firstOf(keys);
}

ServiceKey keyOf(const Set& set, std::uint64_t id) {
  return first(set, {{Data::SERVICE_ID, id}});
}

std::optional<Conditions> listOf(virtualtv::TvMode mode) {
  if (mode.antenna < 0 || mode.antenna > 2) return std::nullopt;
  Conditions conditions{equals(Data::ANTENNA_MODE, mode.antenna)};
  if (namesAnOperator(mode.service)) conditions.push_back(equals(virtualtv::SERVICE_MODE, mode.service));
  conditions.push_back(equals(virtualtv::HIDDEN, 0));
  return conditions;
}

ServiceKey best(const Set& set, WindowId window, const Conditions& conditions) {
  const virtualtv::TvMode mode = set.state[window].mode;
  if (mode.antenna == -1 && mode.service == -1) return first(set, conditions);  // this mode means any
  Conditions own = conditions;
  own.push_back(equals(Data::ANTENNA_MODE, mode.antenna));
  if (namesAnOperator(mode.service)) own.push_back(equals(virtualtv::SERVICE_MODE, mode.service));
  const ServiceKey key = first(set, own);
  return key != 0 ? key : first(set, conditions);
}

ServiceKey step(const Set& set, const Conditions& conditions, std::uint64_t from, Direction direction) {
  const bool forwards = direction == Direction::forwards;
  std::vector<ServiceKey> selected = listed(set, conditions);
  std::erase_if(selected, [&](ServiceKey key) {
    const Service& service = set.services.at(key);
    return !number(service, Data::SERVICE_ID) || number(service, Data::LOCK).value_or(0) != 0;
  });
  if (!forwards) std::reverse(selected.begin(), selected.end());
  std::vector<ServiceKey> others = selected;
  std::erase_if(others, [&](ServiceKey key) { return number(set.services.at(key), Data::SERVICE_ID) == from; });
  if (others.empty()) return firstOf(selected);
  if (const ServiceKey current = keyOf(set, from)) {
    for (const ServiceKey key : others) {
      if (forwards ? place(set, current) < place(set, key) : place(set, key) < place(set, current)) return key;
    }
  }
  return others.front();
}

void bring(WindowState& window, ServiceKey key) {
  window.service = key;
  window.inUse = {0, -1};
}

bool tune(Set& set, WindowId id, ServiceKey key) {
  const Service* const service = at(set, key);
  if (service == nullptr) return false;
  WindowState& window = set.state[id];
  if (window.service != key) {
    window.previousService = window.service;
    bring(window, key);
  }
  const auto antenna = number(*service, Data::ANTENNA_MODE);
  if (antenna && static_cast<int>(*antenna) != window.mode.antenna) window.mode = {static_cast<int>(*antenna), 0};
  return true;
}

bool switchSource(Set& set, WindowId id, int source, std::optional<ServiceKey> service) {
  const virtualtv::Input* const input = inputOf(set, source);
  if (input == nullptr) return false;
  if (service && !tune(set, id, *service)) return false;
  WindowState& window = set.state[id];
  if (window.source != source && window.source >= 0) window.previousSource = window.source;
  window.source = source;
  window.sourceState = stateOf(*input);
  if (id != WindowId::main) return true;
  set.state.isp.shown = false;
  note(set, source == 0 ? "tv-service" : "av-service");
  return true;
}

void deactivate(Set& set, WindowId id) {
  WindowState& window = set.state[id];
  if (window.source >= 0) window.previousSource = window.source;
  window.source = -1;
  window.sourceState = virtualtv::SOURCE_STATE_NONE;
}

bool showIsp(Set& set) {
  if (!set.state.isp.present) return false;
  set.state.isp.shown = true;
  note(set, "isp-service");
  return true;
}

bool setMode(Set& set, WindowId window, virtualtv::TvMode mode) {
  if (mode.antenna < 0 || mode.antenna > 2) return false;
  set.state[window].mode = mode;
  return true;
}

void plug(Set& set, int source, bool plugged) {
  virtualtv::Input* const input = inputOf(set, source);
  if (input == nullptr) return;
  input->plugged = plugged;
  for (WindowState& window : set.state.windows) {
    if (window.source == source) window.sourceState = stateOf(*input);
  }
}

std::optional<int> signalStrength(const Set& set, WindowId window) {
  const Service* const service = at(set, set.state[window].service);
  if (service == nullptr) return std::nullopt;
  const auto frequency = static_cast<int>(number(*service, Data::FREQUENCY).value_or(0));
  const int unfaded = 140 + std::abs(frequency % 9973) % 100;  // spreads frequencies over 140 to 239
  return std::clamp(unfaded - set.state.fade, 0, 255);
}

std::optional<int> readInt(const Set& set, const std::string& key) {
  const auto found = set.settings.find(key);
  if (found == set.settings.end() || !std::holds_alternative<int>(found->second)) return std::nullopt;
  return std::get<int>(found->second);
}

}  // namespace model
