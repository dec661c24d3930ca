// SPDX-License-Identifier: MIT
#include "broadcast/Found.h"

#include <json/json.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

#include "import/ListBuilder.h"
#include "json/Write.h"
#include "text/Units.h"

namespace virtualtv::broadcast {

namespace {

using import::Entry;
using import::ListBuilder;

/// Prefixes a UTF-8 name with the byte that marks its encoding, so that the list reader need not guess.
std::string marked(const std::string& name) {
  return name.empty() ? name : '\x15' + name;
}

std::optional<int> known(int id) {
  return id < 0 ? std::nullopt : std::optional(id);
}

Entry entryOf(const FoundService& service, const std::string& name) {
  Entry entry;
  entry.name = name;
  const Delivery& delivery = service.delivery;
  entry.antenna = delivery.antenna;
  entry.raster = delivery.raster;
  entry.frequency = delivery.frequency;
  entry.bandwidth = delivery.bandwidth;
  entry.polarisation = delivery.polarisation;
  entry.modulation = delivery.modulation;
  entry.symbolRate = delivery.symbolRate;
  entry.network = known(service.stream.network);
  entry.transportStream = known(service.stream.stream);
  entry.source = delivery.position ? delivery.position : entry.network;
  entry.program = service.program;
  entry.kind = service.kind;
  if (service.number) {
    entry.major = service.number->major;
    entry.minor = service.number->minor;
    entry.hidden = !service.number->isVisible;
  }
  entry.audio = service.audio;
  entry.subtitles = service.subtitles;
  return entry;
}

/// A point in time in UTC, as in 2026-11-23T20:15:00Z.
std::string momentOf(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  if (::gmtime_r(&time, &parts) == nullptr) return {};
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

Json::Value documentOf(const Event& event) {
  Json::Value json(Json::objectValue);
  if (!event.name.empty()) json["name"] = event.name;
  if (!event.text.empty()) json["text"] = event.text;
  if (event.start) json["start"] = momentOf(*event.start);
  if (event.duration) json["duration"] = *event.duration;
  return json;
}

/// The data that has no field in the set, as JSON; empty when there is none.
std::u16string attachedTo(const FoundService& service) {
  Json::Value json(Json::objectValue);
  if (!service.provider.empty()) json["provider"] = service.provider;
  if (!service.network.empty()) json["network"] = service.network;
  if (service.isScrambled) json["scrambled"] = true;
  if (service.present) json["presentEvent"] = documentOf(*service.present);
  if (service.following) json["followingEvent"] = documentOf(*service.following);
  return json.empty() ? std::u16string() : text::toUnits(json::write(json));
}

}  // namespace

std::vector<Service> servicesOf(const Scan& scan) {
  std::vector<std::string> names;
  names.reserve(scan.services.size());  // no reallocation: the list holds views of them until it is finished
  std::uint64_t greatest = 0;
  for (const FoundService& service : scan.services) {
    names.push_back(marked(service.name));
    if (service.number) greatest = std::max(greatest, static_cast<std::uint64_t>(service.number->major));
  }
  static constexpr import::Format found{"scan", "a recording", u':', nullptr, nullptr};
  ListBuilder list(found, "");
  list.continueFrom(greatest + 1);
  for (std::size_t at = 0; at < names.size(); ++at) list.add(entryOf(scan.services[at], names[at]));
  std::vector<Service> services = list.finish();
  for (std::size_t at = 0; at < services.size(); ++at) {
    std::u16string attached = attachedTo(scan.services[at]);
    if (!attached.empty()) services[at].texts[TCServiceData::SERVICE_FIELD_110] = std::move(attached);
  }
  return services;
}

}  // namespace virtualtv::broadcast
