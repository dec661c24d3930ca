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

/// A model of a TV set on plain lists: its services and their order, tuning, seeking, inputs and settings keys. The set
/// in software is compared with it. The two share no code, only the types of a set's state.
namespace model {

using virtualtv::Service;
using virtualtv::ServiceKey;
using virtualtv::WindowId;

using Setting = std::variant<int, std::string>;

/// The whole state of a set. The clock does not advance.
struct Set {
  virtualtv::TvState state;
  std::map<ServiceKey, Service> services;
  std::map<std::string, Setting> settings;
};

// The services. A key of 0 stands for no service.

/// A condition that a field equals a value. An absent field equals nothing, except that an absent `HIDDEN` counts as 0.
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

/// The services that meet all conditions, in list order: by major, then by minor number. Services without numbers come
/// last.
std::vector<ServiceKey> listed(const Set& set, const Conditions& conditions);
/// The first of them in list order.
ServiceKey first(const Set& set, const Conditions& conditions);
/// The first of them in the order of service ids. Services without an id come last.
ServiceKey firstById(const Set& set, const Conditions& conditions);
/// The service with this id: the first in list order if several have it.
ServiceKey keyOf(const Set& set, std::uint64_t id);

/// The conditions for the services of a TV mode: its antenna, the operator's list if the mode names one, and not
/// hidden. Returns nothing for an antenna that the set does not have.
std::optional<Conditions> listOf(virtualtv::TvMode mode);

/// The first service that meets the conditions, preferring the window's own list.
ServiceKey best(const Set& set, WindowId window, const Conditions& conditions);

enum class Direction { forwards, backwards };
/// The next service after the service with an id that meets the conditions, has an id and is not locked. The search
/// wraps around at the end of the list, and returns the starting service only if there is no other. An unknown id
/// counts as beyond both ends.
ServiceKey step(const Set& set, const Conditions& conditions, std::uint64_t from, Direction direction);

// The windows. Functions that return false have changed nothing.

/// Shows a service in a window, 0 for none, with its first audio track and without subtitles.
void bring(virtualtv::WindowState& window, ServiceKey key);
/// Tunes a window to a service. @return false when there is no such service.
bool tune(Set& set, WindowId id, ServiceKey key);
/// Shows an input, and the service if one is given. @return false when the set has no such input or service.
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

/// Returns nothing for a key that is not set or holds a text.
std::optional<int> readInt(const Set& set, const std::string& key);

}  // namespace model
