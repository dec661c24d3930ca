// SPDX-License-Identifier: MIT
#include "virtualtv/device/Replica.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <variant>

#include "services/ServiceStore.h"

namespace virtualtv::device {

namespace {

/// Replaces a value. @return false when the old value was not the expected one.
template <typename Value>
bool replace(Value& held, const Value& before, const Value& after) {
  return std::exchange(held, after) == before;
}

template <typename Map, typename Value>
bool replaceIn(Map& map, const typename Map::key_type& key, const std::optional<Value>& before,
               const std::optional<Value>& after) {
  const auto held = map.find(key);
  const bool isRight = held == map.end() ? !before : before == held->second;
  if (held != map.end()) map.erase(held);
  if (after) map.emplace(key, *after);
  return isRight;
}

template <typename Value>
std::optional<Value> valueIn(const FieldValue& value) {
  const auto* held = std::get_if<Value>(&value);
  return held == nullptr ? std::nullopt : std::optional(*held);
}

bool replaceNumber(int& held, const KnobChanged& change) {
  return replace(held, std::stoi(change.before), std::stoi(change.after));
}

bool replaceNumber(std::uint64_t& held, const KnobChanged& change) {
  return replace(held, std::uint64_t{std::stoull(change.before)}, std::uint64_t{std::stoull(change.after)});
}

std::optional<int> codeIn(const std::string& text) {
  return text == "auto" ? std::nullopt : std::optional(std::stoi(text));
}

bool turn(TvState& state, const KnobChanged& change) {
  for (const WindowId window : windowIds) {
    if (change.name == nameOf(window) + std::string(".resolution"))
      return replace(state[window].resolution, codeIn(change.before), codeIn(change.after));
  }
  if (change.name == "start.service") return replaceNumber(state.startServiceId, change);
  if (change.name == "start.source") return replaceNumber(state.startSource, change);
  if (change.name == "region") return replaceNumber(state.region, change);
  if (change.name == "country") return replaceNumber(state.country, change);
  if (change.name == "tuner.fade") return replaceNumber(state.fade, change);
  if (change.name == "clock") return replaceNumber(state.clock, change);
  return change.name.starts_with("latency.");  // latencies are not part of the state
}

}  // namespace

struct Replica::Applier {
  Replica& copy;
  Tv& tv;

  WindowState& at(WindowId window) const { return copy.state_[window]; }
  Service& at(ServiceKey service) const { return copy.services_[service]; }

  bool operator()(const SourceChanged& change) const {
    WindowState& window = at(change.window);
    const bool isRight = change.before == WindowSource{window.sourceState, window.source, window.previousSource};
    window.sourceState = change.after.state;
    window.source = change.after.source;
    window.previousSource = change.after.previous;
    return isRight;
  }
  bool operator()(const ScreenChanged& change) const {
    WindowState& window = at(change.window);
    const bool isRight = change.before == WindowScreen{window.service, window.previousService};
    window.service = change.after.service;
    window.previousService = change.after.previous;
    return isRight;
  }
  bool operator()(const ModeChanged& change) const {
    return replace(at(change.window).mode, change.before, change.after);
  }
  bool operator()(const PlaneChanged& change) const {
    return replace(at(change.window).plane, change.before, change.after);
  }
  bool operator()(const TracksChanged& change) const {
    return replace(at(change.window).inUse, change.before, change.after);
  }
  bool operator()(const InputChanged& change) const {
    for (Input& input : copy.state_.inputs) {
      if (input.source == change.before.source) return replace(input, change.before, change.after);
    }
    return false;
  }
  bool operator()(const IspChanged& change) const { return replace(copy.state_.isp, change.before, change.after); }
  bool operator()(const KnobChanged& change) const { return turn(copy.state_, change); }
  bool operator()(const SettingChanged& change) const {
    return replaceIn(copy.settings_, change.key, change.before, change.after);
  }
  bool operator()(const FieldChanged& change) const {
    Service& service = at(change.service);
    const bool isNumberRight = replaceIn(service.numbers, change.fieldId, valueIn<std::uint64_t>(change.before),
                                         valueIn<std::uint64_t>(change.after));
    const bool isTextRight = replaceIn(service.texts, change.fieldId, valueIn<std::u16string>(change.before),
                                       valueIn<std::u16string>(change.after));
    return isNumberRight && isTextRight;
  }
  bool operator()(const AudioTracksChanged& change) const {
    return replace(at(change.service).audio, change.before, change.after);
  }
  bool operator()(const SubtitleTracksChanged& change) const {
    return replace(at(change.service).subtitles, change.before, change.after);
  }
  bool operator()(const FavouritesChanged& change) const {
    return replace(at(change.service).favourites, change.before, change.after);
  }
  bool operator()(const ServicesChanged& change) const {
    const bool isRight = change.before == copy.services_.size();
    copy.services_ = tv.services().all();
    return isRight && change.after == copy.services_.size();
  }
};

Replica::Replica(Tv& tv) : state_(tv.state()), settings_(tv.settings().list()), services_(tv.services().all()) {}

bool Replica::apply(const Change& change, Tv& tv) {
  return std::visit(Applier{*this, tv}, change);
}

std::string Replica::differences(Tv& tv) const {
  std::string found;
  if (!(state_ == tv.state())) found += " state";
  if (settings_ != tv.settings().list()) found += " settings";
  if (services_ != tv.services().all()) found += " services";
  return found;
}

}  // namespace virtualtv::device
