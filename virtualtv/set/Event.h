#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "services/Service.h"
#include "set/State.h"
#include "store/SettingsStore.h"

// What changes in a set: one type for each thing that can change. `before` and `after` are the whole of that thing, and
// differ.

namespace virtualtv {

/// Where a window's picture comes from, as `WindowState` has it.
struct WindowSource {
  int state;
  int source;
  int previous;

  bool operator==(const WindowSource&) const = default;
};

/// What is on a window's screen.
struct WindowScreen {
  ServiceKey service;
  ServiceKey previous;

  bool operator==(const WindowScreen&) const = default;
};

/// What is seen in a window comes from another source, or its state is another.
struct SourceChanged {
  WindowId window;
  WindowSource before;
  WindowSource after;
};

/// Another service is on a window's screen, or another was there before it.
struct ScreenChanged {
  WindowId window;
  WindowScreen before;
  WindowScreen after;
};

struct ModeChanged {
  WindowId window;
  TvMode before;
  TvMode after;
};

struct PlaneChanged {
  WindowId window;
  Plane before;
  Plane after;
};

/// Other tracks of the service on a window's screen are in use.
struct TracksChanged {
  WindowId window;
  TracksInUse before;
  TracksInUse after;
};

struct InputChanged {
  Input before;
  Input after;
};

struct IspChanged {
  SecondaryStack before;
  SecondaryStack after;
};

/// A knob that has no type of its own here was turned, or moved by itself: region, country, the start service and
/// source, the fading tuner, the clock, a window's resolution code, a latency.
struct KnobChanged {
  std::string name;    ///< as `setKnob` takes it
  std::string before;  ///< as `getKnob` tells it
  std::string after;
};

/// A settings key; nothing for one that was not set or is not set any more.
struct SettingChanged {
  std::string key;
  std::optional<Setting> before;
  std::optional<Setting> after;
};

/// A field of a service; nothing for an absent one.
struct FieldChanged {
  ServiceKey service;
  int fieldId;
  FieldValue before;
  FieldValue after;
};

struct AudioTracksChanged {
  ServiceKey service;
  std::vector<AudioTrack> before;
  std::vector<AudioTrack> after;
};

struct SubtitleTracksChanged {
  ServiceKey service;
  std::vector<SubtitleTrack> before;
  std::vector<SubtitleTrack> after;
};

/// The favourite groups that a service is in, or was taken out of.
struct FavouritesChanged {
  ServiceKey service;
  std::map<std::uint8_t, bool> before;
  std::map<std::uint8_t, bool> after;
};

/// The list of services is another one.
struct ServicesChanged {
  std::size_t before;  ///< how many there were
  std::size_t after;
  ServiceChanges services{};  ///< what became of them
};

using Change = std::variant<SourceChanged, ScreenChanged, ModeChanged, PlaneChanged, TracksChanged, InputChanged,
                            IspChanged, KnobChanged, SettingChanged, FieldChanged, AudioTracksChanged,
                            SubtitleTracksChanged, FavouritesChanged, ServicesChanged>;

/// A change, and the revision of the set that came with it. What one verb changes has one revision.
struct Event {
  std::uint64_t revision;
  Change change;
};

/// Appends what differs: between two states of a set, all its settings keys, or what one service is.
void appendChanges(const TvState& before, const TvState& after, std::vector<Change>& changes);
void appendChanges(const std::map<std::string, Setting>& before, const std::map<std::string, Setting>& after,
                   std::vector<Change>& changes);
/// All services, by their keys.
void appendChanges(const std::map<ServiceKey, Service>& before, const std::map<ServiceKey, Service>& after,
                   std::vector<Change>& changes);
void appendChanges(ServiceKey service, const Service& before, const Service& after, std::vector<Change>& changes);

// The other way: each makes what a change has changed what it was before, and is given the last change first. Changes
// of other things are passed over.

void undo(const Change& change, TvState& state);
/// Settings that differ from what they are now: nothing for a key that was not set.
void undo(const Change& change, std::map<std::string, std::optional<Setting>>& settings);
/// The service that it is a change of.
void undo(const Change& change, Service& service);

/// The service that something of was changed; 0 for other changes.
ServiceKey changedService(const Change& change);

}  // namespace virtualtv
