// SPDX-License-Identifier: MIT
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

// The changes of a set: one type for each thing that can change. `before` and `after` hold the whole value, and differ,
// except for `ServicesChanged`, which only counts the services.

namespace virtualtv {

/// The source of a window's picture, as in `WindowState`.
struct WindowSource {
  int state;
  int source;
  int previous;

  bool operator==(const WindowSource&) const = default;
};

/// The service on a window's screen, and the previous one.
struct WindowScreen {
  ServiceKey service;
  ServiceKey previous;

  bool operator==(const WindowScreen&) const = default;
};

/// The source of a window or its state has changed.
struct SourceChanged {
  WindowId window;
  WindowSource before;
  WindowSource after;
};

/// The service on a window's screen, or the previous one, has changed.
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

/// The tracks selected for the service on a window's screen have changed.
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

/// A knob without a type of its own here was set, or has changed on its own: region, country, the start service and
/// source, the tuner's attenuation, the clock, a window's resolution code, a latency.
struct KnobChanged {
  std::string name;    ///< as `setKnob` takes it
  std::string before;  ///< as `getKnob` returns it
  std::string after;
};

/// The value of a settings key has changed. Empty while the key is not set.
struct SettingChanged {
  std::string key;
  std::optional<Setting> before;
  std::optional<Setting> after;
};

/// A field of a service has changed. Holds std::monostate while the field is absent.
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

/// The favourite groups of a service have changed. Each group is mapped to true if the service is a member.
struct FavouritesChanged {
  ServiceKey service;
  std::map<std::uint8_t, bool> before;
  std::map<std::uint8_t, bool> after;
};

/// What was done to a service of the list.
struct ListEdit {
  ServiceKey service;
  std::optional<std::uint64_t> number{};  ///< its channel number after a move; empty when it was removed
};

/// The list of services was replaced, or a service was moved or removed.
struct ServicesChanged {
  std::size_t before;  ///< how many services there were
  std::size_t after;
  ServiceChanges services{};       ///< how the services changed
  std::optional<ListEdit> edit{};  ///< empty when the list was replaced
};

using Change = std::variant<SourceChanged, ScreenChanged, ModeChanged, PlaneChanged, TracksChanged, InputChanged,
                            IspChanged, KnobChanged, SettingChanged, FieldChanged, AudioTracksChanged,
                            SubtitleTracksChanged, FavouritesChanged, ServicesChanged>;

/// A change, and the revision of the set after it. All changes of one verb have the same revision.
struct Event {
  std::uint64_t revision;
  Change change;
};

/// Append the differences between two states of a set, between two versions of all its settings keys, and between two
/// versions of all its services (by key) or of one service.
void appendChanges(const TvState& before, const TvState& after, std::vector<Change>& changes);
void appendChanges(const std::map<std::string, Setting>& before, const std::map<std::string, Setting>& after,
                   std::vector<Change>& changes);
void appendChanges(const std::map<ServiceKey, Service>& before, const std::map<ServiceKey, Service>& after,
                   std::vector<Change>& changes);
void appendChanges(ServiceKey service, const Service& before, const Service& after, std::vector<Change>& changes);

// Undo a change: restore the value from before it. To undo several changes, start with the last one. Each function
// ignores the changes that are not about its kind of data.

void undo(const Change& change, TvState& state);
/// @param settings  the earlier values of the settings keys that have changed since; empty for a key that was not set.
void undo(const Change& change, std::map<std::string, std::optional<Setting>>& settings);
/// @param service  the service that the change is about.
void undo(const Change& change, Service& service);

/// The service that a change is about; 0 for changes of other things.
ServiceKey changedService(const Change& change);

}  // namespace virtualtv
