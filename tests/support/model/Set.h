// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "services/Service.h"
#include "set/State.h"

/// How a TV set behaves, worked out on plain lists: its services and the order of their list, tuning, seeking, its
/// inputs, its settings keys. A reference to hold the set in software against; it shares no code with that, only the
/// types that say what a set is made of.
namespace model {

using virtualtv::Service;
using virtualtv::ServiceKey;
using virtualtv::WindowId;

using Setting = std::variant<int, std::string>;

/// Everything that a set is. The state's clock stands still.
struct Set {
  virtualtv::TvState state;
  std::map<ServiceKey, Service> services;
  std::map<std::string, Setting> settings;
};

// The services. A key of 0 stands for no service.

/// A field equals a value. An absent field equals none, but for `HIDDEN`, whose absence counts as 0.
struct Condition {
  int field;
  std::uint64_t value;
};
using Conditions = std::vector<Condition>;

/// A condition on a number that may be negative.
Condition equals(int field, int value);

std::optional<std::uint64_t> number(const Service& service, int field);
/// Null when there is no such service.
const Service* at(const Set& set, ServiceKey key);

/// The services that meet all conditions in list order: by major, then by minor number, those without one last.
std::vector<ServiceKey> listed(const Set& set, const Conditions& conditions);
/// The first of them in list order.
ServiceKey first(const Set& set, const Conditions& conditions);
/// The first of them in the order of service ids, those without one last.
ServiceKey firstById(const Set& set, const Conditions& conditions);
/// The service of an id, the first in list order should several have it.
ServiceKey keyOf(const Set& set, std::uint64_t id);

/// What selects the services of a TV mode: the antenna, the operator's list if the mode names one, and not hidden.
/// Nothing for an antenna that the set does not have.
std::optional<Conditions> listOf(virtualtv::TvMode mode);

/// The first service that meets the conditions: rather one of the window's own list than another.
ServiceKey best(const Set& set, WindowId window, const Conditions& conditions);

enum class Direction { forwards, backwards };
/// The next service that meets the conditions, has an id and is not locked, seen from the service of an id, starting
/// over at the other end of the list. The service itself only if there is no other; an id that no service has stands
/// behind both ends.
ServiceKey step(const Set& set, const Conditions& conditions, std::uint64_t from, Direction direction);

// The windows. What answers false has changed nothing.

/// A service comes on a window's screen, 0 for none: with its first audio track and without subtitles.
void bring(virtualtv::WindowState& window, ServiceKey key);
/// Tunes a window to a service. @return false when there is no such service.
bool tune(Set& set, WindowId id, ServiceKey key);
/// Shows an input, and where a service is told that one. @return false when the set has no such input or service.
bool switchSource(Set& set, WindowId id, int source, std::optional<ServiceKey> service = std::nullopt);
void deactivate(Set& set, WindowId id);
/// @return false when the secondary stack can't be reached.
bool showIsp(Set& set);
/// @return false for an antenna that the set does not have.
bool setMode(Set& set, WindowId window, virtualtv::TvMode mode);
void plug(Set& set, int source, bool plugged);
/// Strength of the tuner's signal for what a window shows; nothing when it shows no service.
std::optional<int> signalStrength(const Set& set, WindowId window);

// The settings keys, as plug-ins see them.

/// Nothing for a key that is not set or holds a text.
std::optional<int> readInt(const Set& set, const std::string& key);

}  // namespace model
