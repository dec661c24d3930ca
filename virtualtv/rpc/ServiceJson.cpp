// SPDX-License-Identifier: MIT
#include "rpc/ServiceJson.h"

#include <cstdint>
#include <optional>

#include "services/AntennaNames.h"
#include "services/KindNames.h"
#include "set/StateJson.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

std::optional<std::uint64_t> number(const Service& service, int fieldId) {
  const auto found = service.numbers.find(fieldId);
  return found == service.numbers.end() ? std::nullopt : std::optional(found->second);
}

bool isSet(const Service& service, int fieldId) {
  return number(service, fieldId).value_or(0) != 0;
}

/// Null when the service has no antenna field, or an unknown number in it.
Json::Value antennaOf(const Service& service) {
  const auto antenna = number(service, TCServiceData::ANTENNA_MODE);
  const char* const name = antenna ? antennaName(*antenna) : nullptr;
  return name == nullptr ? Json::Value() : Json::Value(name);
}

/// Null when the service has no channel type, or an unknown one.
Json::Value kindIn(const Service& service) {
  const auto type = number(service, TCServiceData::CHANNEL_TYPE);
  const auto kind = type ? kindOf(*type) : std::nullopt;
  return kind ? Json::Value(nameOf(*kind)) : Json::Value();
}

}  // namespace

Json::Value serviceDocument(ServiceKey key, const Service& service) {
  Json::Value json = jsonOf(key, service);
  json["antenna"] = antennaOf(service);
  json["kind"] = kindIn(service);
  json["group"] = text::wellFormed(service.group);
  json["locked"] = isSet(service, TCServiceData::LOCK);
  json["hidden"] = isSet(service, HIDDEN);
  json["favourites"] = Json::arrayValue;
  for (const auto& [group, isMember] : service.favourites) {
    if (isMember) json["favourites"].append(group);
  }
  json["audio"] = jsonOf(service.audio);
  json["subtitles"] = jsonOf(service.subtitles);
  return json;
}

}  // namespace virtualtv::rpc
