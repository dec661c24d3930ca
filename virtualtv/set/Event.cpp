#include "set/Event.h"

#include <utility>

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
void appendKnob(std::string name, const Value& before, const Value& after, std::vector<Change>& changes) {
  if (before == after) return;
  changes.emplace_back(KnobChanged{std::move(name), std::to_string(before), std::to_string(after)});
}

std::string resolutionOf(const WindowState& window) {
  return window.resolution ? std::to_string(*window.resolution) : "auto";
}

void appendWindow(WindowId id, const WindowState& before, const WindowState& after, std::vector<Change>& changes) {
  appendOf<SourceChanged>(id, sourceOf(before), sourceOf(after), changes);
  appendOf<ModeChanged>(id, before.mode, after.mode, changes);
  appendOf<ScreenChanged>(id, screenOf(before), screenOf(after), changes);
  appendOf<TracksChanged>(id, before.inUse, after.inUse, changes);
  appendOf<PlaneChanged>(id, before.plane, after.plane, changes);
  if (before.resolution == after.resolution) return;
  changes.emplace_back(KnobChanged{std::string(nameOf(id)) + ".resolution", resolutionOf(before), resolutionOf(after)});
}

/// Calls `told` with each key of either map, in their order, and what each has for it.
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

}  // namespace

/// A set has the same inputs as long as it lives, in the same order.
void appendChanges(const TvState& before, const TvState& after, std::vector<Change>& changes) {
  for (std::size_t at = 0; at < before.inputs.size() && at < after.inputs.size(); ++at) {
    if (!(before.inputs[at] == after.inputs[at])) {
      changes.emplace_back(InputChanged{before.inputs[at], after.inputs[at]});
    }
  }
  for (const WindowId id : windowIds) appendWindow(id, before[id], after[id], changes);
  if (!(before.isp == after.isp)) changes.emplace_back(IspChanged{before.isp, after.isp});
  appendKnob("start.service", before.startServiceId, after.startServiceId, changes);
  appendKnob("start.source", before.startSource, after.startSource, changes);
  appendKnob("region", before.region, after.region, changes);
  appendKnob("country", before.country, after.country, changes);
  appendKnob("tuner.fade", before.fade, after.fade, changes);
  appendKnob("clock", before.clock, after.clock, changes);
}

void appendChanges(const std::map<std::string, Setting>& before, const std::map<std::string, Setting>& after,
                   std::vector<Change>& changes) {
  compare(before, after, [&](const std::string& key, const Setting* left, const Setting* right) {
    SettingChanged change{key, valueOf(left), valueOf(right)};
    if (change.before != change.after) changes.emplace_back(std::move(change));
  });
}

void appendChanges(ServiceKey service, const Service& before, const Service& after, std::vector<Change>& changes) {
  appendFields(service, before.numbers, after.numbers, changes);
  appendFields(service, before.texts, after.texts, changes);
  appendList<AudioTracksChanged>(service, before.audio, after.audio, changes);
  appendList<SubtitleTracksChanged>(service, before.subtitles, after.subtitles, changes);
  appendList<FavouritesChanged>(service, before.favourites, after.favourites, changes);
}

}  // namespace virtualtv
