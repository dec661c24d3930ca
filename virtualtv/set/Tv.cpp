// SPDX-License-Identifier: MIT
#include "set/Tv.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "seam/Seam.h"
#include "set/EmbeddedSet.h"
#include "set/Keeping.h"
#include "set/StorageParts.h"
#include "store/Transaction.h"
#include "tvservice/TVServiceTypes.h"

namespace virtualtv {

namespace {

Tv* theSet = nullptr;

// What the platform records for the main window when it shows an input or the ISP source. For TV it records
// `lastServiceOnTv`.
constexpr const char* inputService = "av-service";
constexpr const char* ispService = "isp-service";

/// The state of a set with this storage when it is switched on.
TvState stateIn(Storage::Parts& parts) {
  TvState state = embeddedSet().state;
  restore(keptIn(parts), parts.database.name(), state);
  return state;
}

template <typename Track>
bool isAt(const std::vector<Track>& tracks, int position) {
  return position >= 0 && std::cmp_less(position, tracks.size());
}

}  // namespace

TvAside::TvAside() : aside_(std::exchange(theSet, nullptr)) {}

TvAside::~TvAside() {
  theSet = aside_;
}

Tv::Tv(Storage& storage, std::uint64_t revision)
    : storage_(storage), state_(stateIn(storage.parts())), revision_(revision + 1) {
  if (theSet != nullptr) throw std::logic_error("a process has one set at a time");
  seam::Seam::instance().onDelay([this](std::uint64_t milliseconds) { advance(milliseconds); });
  theSet = this;  // last, so that an exception above leaves no set behind
}

Tv::~Tv() {
  seam::Seam::instance().onDelay({});
  theSet = nullptr;
}

Tv& Tv::current() {
  if (theSet == nullptr) throw std::logic_error("there is no set");
  return *theSet;
}

const ServiceStore& Tv::services() const {
  return storage_.parts().services;
}
const SettingsStore& Tv::settings() const {
  return storage_.parts().settings;
}

Snapshot Tv::snapshot() const {
  return {switchedOn(state_), settings().list(), services().all()};
}

notify::Subscription Tv::onEvent(std::function<void(const Event&)> listener) {
  return listeners_.add(std::move(listener));
}

notify::Subscription Tv::onReplacing(std::function<void()> told) {
  return replacing_.add(std::move(told));
}

bool Tv::tune(WindowId window, ServiceKey service) {
  TvState next = state_;
  if (!follow(next[window], service)) return false;
  commit(std::move(next));
  return true;
}

/// Puts a service on a window's screen.
bool Tv::follow(WindowState& window, ServiceKey service) {
  TCCriteriaHelper criteria;
  criteria.Fetch(TCServiceData::ANTENNA_MODE);
  TCServiceData record;
  if (!services().at(service, criteria, record)) return false;
  if (window.service != service) {
    window.previousService = window.service;
    window.bring(service);
  }
  int antenna = window.mode.antenna;
  record.Get(TCServiceData::ANTENNA_MODE, antenna);
  if (antenna != window.mode.antenna) window.mode = {antenna, 0};
  return true;
}

bool Tv::switchSource(WindowId id, int source, ServiceKey service) {
  const auto input = std::find_if(state_.inputs.begin(), state_.inputs.end(),
                                  [=](const Input& candidate) { return candidate.source == source; });
  if (input == state_.inputs.end()) return false;
  TvState next = state_;
  WindowState& window = next[id];
  if (service != 0 && !follow(window, service)) return false;
  if (window.source != source && window.source >= 0) window.previousSource = window.source;
  window.source = source;
  window.sourceState = input->plugged ? SOURCE_STATE_SHOWN : SOURCE_STATE_NO_SIGNAL;
  const bool main = id == WindowId::main;
  if (main) next.isp.shown = false;
  commit(std::move(next), !main ? nullptr : source == SOURCE_TV ? lastServiceOnTv : inputService);
  return true;
}

void Tv::deactivate(WindowId id) {
  TvState next = state_;
  WindowState& window = next[id];
  if (window.source >= 0) window.previousSource = window.source;
  window.source = -1;
  window.sourceState = SOURCE_STATE_NONE;
  commit(std::move(next));
}

bool Tv::showIsp() {
  if (!state_.isp.present) return false;
  TvState next = state_;
  next.isp.shown = true;
  commit(std::move(next), ispService);
  return true;
}

void Tv::plug(int source, bool plugged) {
  TvState next = state_;
  for (Input& input : next.inputs) {
    if (input.source == source) input.plugged = plugged;
  }
  for (const WindowId id : windowIds) {
    if (next[id].source == source) next[id].sourceState = plugged ? SOURCE_STATE_SHOWN : SOURCE_STATE_NO_SIGNAL;
  }
  commit(std::move(next));
}

std::optional<int> Tv::signalStrength(WindowId window) {
  TCCriteriaHelper criteria;
  criteria.Fetch(TCServiceData::FREQUENCY);
  TCServiceData record;
  if (!services().at(state_[window].service, criteria, record)) return std::nullopt;
  int frequency = 0;
  record.Get(TCServiceData::FREQUENCY, frequency);
  constexpr int weakest = 140;
  constexpr int spread = 100;  // wide enough that the kHz steps of channels and transponders spread over it
  const int strength = weakest + std::abs(frequency % 9973) % spread;
  return std::clamp(strength - state_.fade, 0, 255);
}

void Tv::setMode(WindowId window, TvMode mode) {
  TvState next = state_;
  next[window].mode = mode;
  commit(std::move(next));
}

bool Tv::place(WindowId window, const Rect& rect) {
  if (rect.width <= 0 || rect.height <= 0) return false;
  Plane plane = state_[window].plane;
  plane.rect = rect;
  plane.crop.reset();
  show(window, plane);
  return true;
}

void Tv::placeDefault(WindowId window) {
  place(window, TvState()[window].plane.rect);
}

bool Tv::crop(WindowId window, const Crop& crop) {
  for (const Rect& rect : {crop.crop, crop.display}) {
    if (rect.width <= 0 || rect.height <= 0) return false;
  }
  Plane plane = state_[window].plane;
  plane.crop = crop;
  show(window, plane);
  return true;
}

bool Tv::setOrder(WindowId window, int order) {
  if (order < 0) return false;
  Plane plane = state_[window].plane;
  plane.order = order;
  show(window, plane);
  return true;
}

void Tv::mute(WindowId window, bool muted) {
  Plane plane = state_[window].plane;
  plane.muted = muted;
  show(window, plane);
}

/// Planes are not persisted: a set that is switched on shows its windows at their defaults.
void Tv::show(WindowId window, const Plane& plane) {
  TvState next = state_;
  next[window].plane = plane;
  std::vector<Change> changes;
  appendChanges(state_, next, changes);
  state_ = std::move(next);
  raise(std::move(changes));
}

bool Tv::selectAudio(WindowId window, int position) {
  if (!isAt(services().audio(state_[window].service), position)) return false;
  adjust([=](TvState& state) { state[window].inUse.audio = position; });
  return true;
}

bool Tv::selectSubtitle(WindowId window, int position) {
  if (!isAt(services().subtitles(state_[window].service), position)) return false;
  adjust([=](TvState& state) { state[window].inUse.subtitle = position; });
  return true;
}

bool Tv::selectIspAudio(int position) {
  if (!state_.isp.shown || !isAt(state_.isp.audio, position)) return false;
  adjust([=](TvState& state) { state.isp.inUse.audio = position; });
  return true;
}

bool Tv::selectIspSubtitle(int position) {
  if (!state_.isp.shown || !isAt(state_.isp.subtitles, position)) return false;
  adjust([=](TvState& state) { state.isp.inUse.subtitle = position; });
  return true;
}

bool Tv::setFavourites(std::uint8_t group, const std::list<std::pair<unsigned long long, bool>>& members) {
  ServiceStore& store = storage_.parts().services;
  std::vector<Change> changes;
  Transaction transaction(storage_.parts().database, "keep favourites");
  for (const auto& [serviceId, member] : members) {
    const auto before = store.favourites(serviceId);
    if (!before) return false;
    store.setFavourite(serviceId, group, member);
    FavouritesChanged change{store.keyOf(serviceId).value_or(0), *before, *before};
    change.after[group] = member;
    if (change.before != change.after) changes.emplace_back(std::move(change));
  }
  transaction.commit();
  raise(std::move(changes));
  return true;
}

void Tv::reset() {
  Storage::Parts& parts = storage_.parts();
  replacing_.tell();
  std::vector<Change> changes;
  const std::map<ServiceKey, Service> services = parts.services.all();
  const std::map<std::string, Setting> settings = parts.settings.list();
  TvState next = furnish(parts.database, parts.services, parts.settings, parts.state);
  appendChanges(services, parts.services.all(), changes);
  appendChanges(settings, parts.settings.list(), changes);
  appendChanges(state_, next, changes);
  state_ = std::move(next);
  raise(std::move(changes));
}

void Tv::restore(const Snapshot& snapshot) {
  Storage::Parts& parts = storage_.parts();
  replacing_.tell();
  std::vector<Change> changes;
  appendChanges(parts.services.all(), snapshot.services, changes);
  appendChanges(parts.settings.list(), snapshot.settings, changes);
  TvState next = switchedOn(snapshot.state);
  appendChanges(state_, next, changes);
  Transaction transaction(parts.database, "restore a snapshot");
  parts.services.restoreAll(snapshot.services);
  parts.settings.replaceAll(snapshot.settings);
  parts.state.setAll(keptOf(next));
  transaction.commit();
  state_ = std::move(next);
  raise(std::move(changes));
}

void Tv::setSetting(const std::string& key, const Setting& value) {
  SettingsStore& store = storage_.parts().settings;
  std::vector<Change> changes;
  SettingChanged change{key, store.get(key), value};
  if (change.before != change.after) changes.emplace_back(std::move(change));
  store.set(key, value);
  raise(std::move(changes));
}

bool Tv::removeSetting(const std::string& key) {
  SettingsStore& store = storage_.parts().settings;
  std::vector<Change> changes{SettingChanged{key, store.get(key), std::nullopt}};
  if (!store.unset(key)) return false;
  raise(std::move(changes));
  return true;
}

bool Tv::setField(ServiceKey service, int fieldId, const FieldValue& value) {
  return edit(service, [&](ServiceStore& store) {
    if (const auto* number = std::get_if<std::uint64_t>(&value)) return store.set(service, fieldId, *number);
    if (const auto* units = std::get_if<std::u16string>(&value)) return store.set(service, fieldId, *units);
    return store.unset(service, fieldId);
  });
}

bool Tv::setAudioTracks(ServiceKey service, const std::vector<AudioTrack>& tracks) {
  return edit(service, [&](ServiceStore& store) { return store.setAudio(service, tracks); });
}

bool Tv::setSubtitleTracks(ServiceKey service, const std::vector<SubtitleTrack>& tracks) {
  return edit(service, [&](ServiceStore& store) { return store.setSubtitles(service, tracks); });
}

bool Tv::setFavouritesOf(ServiceKey service, const std::map<std::uint8_t, bool>& groups) {
  return edit(service, [&](ServiceStore& store) { return store.setFavourites(service, groups); });
}

bool Tv::edit(ServiceKey service, const std::function<bool(ServiceStore&)>& write) {
  const std::optional<Service> before = services().read(service);
  if (!before) return false;
  write(storage_.parts().services);
  std::vector<Change> changes;
  appendChanges(service, *before, services().read(service).value_or(Service()), changes);
  raise(std::move(changes));
  return true;
}

void Tv::setLatency(const seam::Operation& operation, std::uint64_t milliseconds) {
  const std::uint64_t before = seam::Seam::instance().latency(operation);
  if (before == milliseconds) return;
  seam::Seam::instance().setLatency(operation, milliseconds);
  raise({KnobChanged{"latency." + std::string(operation.name), std::to_string(before), std::to_string(milliseconds)}});
}

void Tv::adjust(const std::function<void(TvState&)>& change) {
  TvState next = state_;
  change(next);
  commit(std::move(next));
}

void Tv::advance(std::uint64_t milliseconds) {
  constexpr auto latest = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t after = milliseconds > latest - state_.clock ? latest : state_.clock + milliseconds;
  if (after == state_.clock) return;
  std::vector<Change> changes{KnobChanged{"clock", std::to_string(state_.clock), std::to_string(after)}};
  state_.clock = after;
  raise(std::move(changes));
}

std::vector<std::string> Tv::takeComplaints() {
  return std::exchange(complaints_, {});
}
void Tv::complain(std::string line) {
  complaints_.push_back(std::move(line));
}

void Tv::commit(TvState next, const char* lastService) {
  Storage::Parts& parts = storage_.parts();
  std::vector<Change> changes;
  appendChanges(state_, next, changes);
  Transaction transaction(parts.database, "keep the state of the set");
  parts.state.setAll(keptOf(next));
  if (lastService != nullptr) {
    SettingChanged change{lastServiceKey, parts.settings.get(lastServiceKey), lastService};
    parts.settings.set(lastServiceKey, std::string(lastService));
    if (change.before != change.after) changes.emplace_back(std::move(change));
  }
  transaction.commit();
  state_ = std::move(next);
  raise(std::move(changes));
}

/// The change is already persisted, so a listener that can't be notified for lack of memory is ignored.
void Tv::raise(std::vector<Change> changes) noexcept {
  if (changes.empty()) return;
  ++revision_;
  if (listeners_.empty()) return;
  try {
    for (Change& change : changes) listeners_.tell({revision_, std::move(change)});
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

}  // namespace virtualtv
