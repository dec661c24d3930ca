#include "rpc/ServiceJson.h"

#include <cstdint>
#include <optional>

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

/// The name that stands for a value; null where it has none.
template <typename Value>
Json::Value nameOf(const std::vector<std::pair<const char*, Value>>& names, std::optional<Value> value) {
  for (const auto& [name, named] : names) {
    if (value == named) return name;
  }
  return {};
}

}  // namespace

const std::vector<std::pair<const char*, EAntennaMode>>& antennaNames() {
  static const std::vector<std::pair<const char*, EAntennaMode>> names{
      {"terrestrial", ANTENNA_TERRESTRIAL}, {"cable", ANTENNA_CABLE}, {"satellite", ANTENNA_SATELLITE}};
  return names;
}

const std::vector<std::pair<const char*, ServiceKind>>& kindNames() {
  static const std::vector<std::pair<const char*, ServiceKind>> names{
      {"television", ServiceKind::television}, {"radio", ServiceKind::radio}, {"data", ServiceKind::data}};
  return names;
}

Json::Value serviceDocument(ServiceKey key, const Service& service) {
  Json::Value json = jsonOf(key, service);
  const auto antenna = number(service, TCServiceData::ANTENNA_MODE);
  json["antenna"] = nameOf(antennaNames(), antenna ? std::optional(static_cast<EAntennaMode>(*antenna)) : std::nullopt);
  const auto type = number(service, TCServiceData::CHANNEL_TYPE);
  json["kind"] = nameOf(kindNames(), type ? kindOf(*type) : std::nullopt);
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
