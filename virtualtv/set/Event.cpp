// SPDX-License-Identifier: MIT
#include "set/Event.h"

#include <type_traits>
#include <utility>

#include "text/Numbers.h"

namespace virtualtv {

namespace {

WindowSource sourceOf(const WindowState& window) {
  return {window.sourceState, window.source, window.previousSource};
}

WindowScreen screenOf(const WindowState& window) {
  return {window.service, window.previousService};
}

template <typename Kind, typename Value>
void appendOf(WindowId window, const Value& before, const Value& after, std::vector<Change>& changes) {
  if (!(before == after)) changes.emplace_back(Kind{window, before, after});
}

template <typename Value>
void appendKnob(const char* name, const Value& before, const Value& after, std::vector<Change>& changes) {
  if (before == after) return;
  changes.emplace_back(KnobChanged{name, std::to_string(before), std::to_string(after)});
}

/// Calls `visitor` with the name of each numeric knob of a state, and the member that holds the number.
template <typename Visit>
void visitKnobs(Visit visitor) {
  visitor("start.service", &TvState::startServiceId);
  visitor("start.source", &TvState::startSource);
  visitor("region", &TvState::region);
  visitor("country", &TvState::country);
  visitor("tuner.fade", &TvState::fade);
  visitor("clock", &TvState::clock);
}

constexpr const char* resolutionKnob = ".resolution";
constexpr const char* automatic = "auto";

std::string resolutionOf(const WindowState& window) {
  return window.resolution ? std::to_string(*window.resolution) : automatic;
}

void appendWindow(WindowId id, const WindowState& before, const WindowState& after, std::vector<Change>& changes) {
  appendOf<SourceChanged>(id, sourceOf(before), sourceOf(after), changes);
  appendOf<ModeChanged>(id, before.mode, after.mode, changes);
  appendOf<ScreenChanged>(id, screenOf(before), screenOf(after), changes);
  appendOf<TracksChanged>(id, before.inUse, after.inUse, changes);
  appendOf<PlaneChanged>(id, before.plane, after.plane, changes);
  if (before.resolution == after.resolution) return;
  changes.emplace_back(
      KnobChanged{std::string(nameOf(id)) + resolutionKnob, resolutionOf(before), resolutionOf(after)});
}

/// Calls `told` with each key of either map, in order, and the value of each map.
template <typename Map, typename Told>
void compare(const Map& before, const Map& after, Told told) {
  auto left = before.begin();
  auto right = after.begin();
  while (left != before.end() || right != after.end()) {
    const bool inBefore = right == after.end() || (left != before.end() && left->first <= right->first);
    const bool inAfter = left == before.end() || (right != after.end() && right->first <= left->first);
    told(inBefore ? left->first : right->first, inBefore ? &left->second : nullptr, inAfter ? &right->second : nullptr);
    if (inBefore) ++left;
    if (inAfter) ++right;
  }
}

template <typename Value>
std::optional<Value> valueOf(const Value* held) {
  return held == nullptr ? std::nullopt : std::optional(*held);
}

template <typename Value>
void appendFields(ServiceKey service, const std::map<int, Value>& before, const std::map<int, Value>& after,
                  std::vector<Change>& changes) {
  const auto valueIn = [](const Value* held) { return held == nullptr ? FieldValue() : FieldValue(*held); };
  compare(before, after, [&](int fieldId, const Value* left, const Value* right) {
    FieldChanged change{service, fieldId, valueIn(left), valueIn(right)};
    if (change.before != change.after) changes.emplace_back(std::move(change));
  });
}

template <typename Kind, typename Value>
void appendList(ServiceKey service, const Value& before, const Value& after, std::vector<Change>& changes) {
  if (before != after) changes.emplace_back(Kind{service, before, after});
}

/// Undoes changes of a state: one function for each kind of change.
class UndoState {
 public:
  explicit UndoState(TvState& state) : state_(state) {}

  void operator()(const SourceChanged& changed) const {
    WindowState& window = state_[changed.window];
    window.sourceState = changed.before.state;
    window.source = changed.before.source;
    window.previousSource = changed.before.previous;
  }
  void operator()(const ScreenChanged& changed) const {
    state_[changed.window].service = changed.before.service;
    state_[changed.window].previousService = changed.before.previous;
  }
  void operator()(const ModeChanged& changed) const { state_[changed.window].mode = changed.before; }
  void operator()(const PlaneChanged& changed) const { state_[changed.window].plane = changed.before; }
  void operator()(const TracksChanged& changed) const { state_[changed.window].inUse = changed.before; }
  void operator()(const IspChanged& changed) const { state_.isp = changed.before; }
  void operator()(const InputChanged& changed) const {
    for (Input& input : state_.inputs) {
      if (input.source == changed.before.source) input = changed.before;
    }
  }
  void operator()(const KnobChanged& changed) const {
    visitKnobs([&](const char* name, auto number) {
      using Number = std::remove_reference_t<decltype(state_.*number)>;
      if (changed.name == name) state_.*number = text::requireNumber<Number>(changed.before);
    });
    for (const WindowId id : windowIds) {
      if (changed.name != std::string(nameOf(id)) + resolutionKnob) continue;
      auto& resolution = state_[id].resolution;
      resolution.reset();
      if (changed.before != automatic) resolution = text::requireNumber<int>(changed.before);
    }
  }
  template <typename Other>
  void operator()(const Other&) const {}

 private:
  TvState& state_;
};

/// Undoes changes of a service.
class UndoService {
 public:
  explicit UndoService(Service& service) : service_(service) {}

  void operator()(const FieldChanged& changed) const {
    service_.numbers.erase(changed.fieldId);
    service_.texts.erase(changed.fieldId);
    if (const auto* number = std::get_if<std::uint64_t>(&changed.before)) service_.numbers[changed.fieldId] = *number;
    if (const auto* units = std::get_if<std::u16string>(&changed.before)) service_.texts[changed.fieldId] = *units;
  }
  void operator()(const AudioTracksChanged& changed) const { service_.audio = changed.before; }
  void operator()(const SubtitleTracksChanged& changed) const { service_.subtitles = changed.before; }
  void operator()(const FavouritesChanged& changed) const { service_.favourites = changed.before; }
  template <typename Other>
  void operator()(const Other&) const {}

 private:
  Service& service_;
};

}  // namespace

void undo(const Change& change, TvState& state) {
  std::visit(UndoState(state), change);
}

void undo(const Change& change, std::map<std::string, std::optional<Setting>>& settings) {
  if (const auto* changed = std::get_if<SettingChanged>(&change)) settings[changed->key] = changed->before;
}

void undo(const Change& change, Service& service) {
  std::visit(UndoService(service), change);
}

ServiceKey changedService(const Change& change) {
  return std::visit(
      [](const auto& changed) {
        if constexpr (requires { changed.service; }) {
          return changed.service;
        } else {
          return ServiceKey{0};
        }
      },
      change);
}

/// The inputs of a set and their order never change.
void appendChanges(const TvState& before, const TvState& after, std::vector<Change>& changes) {
  for (std::size_t at = 0; at < before.inputs.size() && at < after.inputs.size(); ++at) {
    if (!(before.inputs[at] == after.inputs[at])) {
      changes.emplace_back(InputChanged{before.inputs[at], after.inputs[at]});
    }
  }
  for (const WindowId id : windowIds) appendWindow(id, before[id], after[id], changes);
  if (!(before.isp == after.isp)) changes.emplace_back(IspChanged{before.isp, after.isp});
  visitKnobs([&](const char* name, auto number) { appendKnob(name, before.*number, after.*number, changes); });
}

void appendChanges(const std::map<std::string, Setting>& before, const std::map<std::string, Setting>& after,
                   std::vector<Change>& changes) {
  compare(before, after, [&](const std::string& key, const Setting* left, const Setting* right) {
    SettingChanged change{key, valueOf(left), valueOf(right)};
    if (change.before != change.after) changes.emplace_back(std::move(change));
  });
}

void appendChanges(const std::map<ServiceKey, Service>& before, const std::map<ServiceKey, Service>& after,
                   std::vector<Change>& changes) {
  ServicesChanged change{before.size(), after.size(), {}};
  compare(before, after, [&](ServiceKey, const Service* left, const Service* right) {
    if (left == nullptr) {
      ++change.services.added;
    } else if (right == nullptr) {
      ++change.services.gone;
    } else if (!(*left == *right)) {
      ++change.services.changed;
    }
  });
  if (change.services != ServiceChanges()) changes.emplace_back(change);
}

void appendChanges(ServiceKey service, const Service& before, const Service& after, std::vector<Change>& changes) {
  appendFields(service, before.numbers, after.numbers, changes);
  appendFields(service, before.texts, after.texts, changes);
  appendList<AudioTracksChanged>(service, before.audio, after.audio, changes);
  appendList<SubtitleTracksChanged>(service, before.subtitles, after.subtitles, changes);
  appendList<FavouritesChanged>(service, before.favourites, after.favourites, changes);
}

}  // namespace virtualtv
