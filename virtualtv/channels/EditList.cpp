// SPDX-License-Identifier: MIT
// The edits of a service in the list. To add one, write its function and its row, and describe it in
// docs/virtual-tv.md.
#include "channels/EditList.h"

#include <array>
#include <optional>
#include <stdexcept>

#include "services/ServiceStore.h"
#include "set/KnobParts.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv {

namespace {

using knobparts::onOrOff;
using knobparts::refuse;

std::uint64_t channelNumber(const std::string& text) {
  return text::requireNumber<std::uint16_t>(text, {0, 65534});
}

/// The service with this number; nothing when there is none.
std::optional<ServiceKey> withNumber(const Tv& tv, std::uint64_t number) {
  std::optional<ServiceKey> found;
  tv.services().outline([&](const ServiceOutline& service) {
    if (service.major == number && !found) found = service.key;
  });
  return found;
}

void rename(Tv& tv, ServiceKey service, const std::string& name) {
  if (name.empty()) refuse("a name is wanted");
  tv.setField(service, TCServiceData::CHANNEL_NAME, text::toUnits(name));
}

void renumber(Tv& tv, ServiceKey service, const std::string& text) {
  const std::uint64_t number = channelNumber(text);
  const auto holder = withNumber(tv, number);
  if (holder && *holder != service) refuse("another service has the number " + text + "; move puts this one there");
  tv.setField(service, TCServiceData::MAJOR, number);
}

void move(Tv& tv, ServiceKey service, const std::string& text) {
  const auto holder = withNumber(tv, channelNumber(text));
  if (!holder) refuse("no service has the number " + text + "; renumber gives it to this one");
  if (!tv.moveService(service, *holder)) refuse("a service without a number stands between the two");
}

void hide(Tv& tv, ServiceKey service, const std::string& text) {
  tv.setField(service, HIDDEN, std::uint64_t{onOrOff(text)});
}

void lock(Tv& tv, ServiceKey service, const std::string& text) {
  tv.setField(service, TCServiceData::LOCK, std::uint64_t{onOrOff(text)});
}

void remove(Tv& tv, ServiceKey service, const std::string&) {
  tv.removeService(service);
}

constexpr std::array edits{
    ServiceEdit{"rename", "NAME", rename}, ServiceEdit{"renumber", "NUMBER", renumber},
    ServiceEdit{"move", "NUMBER", move},   ServiceEdit{"hide", "on|off", hide},
    ServiceEdit{"lock", "on|off", lock},   ServiceEdit{"remove", "", remove},
};

std::string namesOfEdits() {
  std::string names;
  for (const ServiceEdit& edit : edits) names.append(names.empty() ? "" : ", ").append(edit.name);
  return names;
}

}  // namespace

std::span<const ServiceEdit> serviceEdits() {
  return edits;
}

void editService(Tv& tv, const std::string& service, const std::string& edit, const std::string& value) {
  for (const ServiceEdit& row : edits) {
    if (row.name != edit) continue;
    if (row.value.empty() && !value.empty()) refuse(edit + " takes no value");
    if (!row.value.empty() && value.empty()) refuse(edit + " takes " + std::string(row.value));
    return row.run(tv, knobparts::existingService(tv, service), value);
  }
  refuse("one of " + namesOfEdits() + " is wanted, not '" + edit + "'");
}

}  // namespace virtualtv
