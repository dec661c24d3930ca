// SPDX-License-Identifier: MIT
#include "shell/ServiceTable.h"

#include <cstddef>
#include <optional>

#include "channels/Search.h"
#include "services/AntennaNames.h"
#include "shell/Table.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

std::optional<std::uint64_t> number(const Service& service, int fieldId) {
  const auto found = service.numbers.find(fieldId);
  return found == service.numbers.end() ? std::nullopt : std::optional(found->second);
}

std::u16string nameOf(const Service& service) {
  const auto found = service.texts.find(TCServiceData::CHANNEL_NAME);
  return found == service.texts.end() ? std::u16string() : found->second;
}

std::string antenna(const Service& service) {
  const auto mode = number(service, TCServiceData::ANTENNA_MODE);
  if (!mode) return "-";
  const char* const name = antennaName(*mode);
  return name == nullptr ? std::to_string(static_cast<std::int64_t>(*mode)) : name;
}

/// The channel number as viewers know it: the major number, and the minor number if there is one.
std::string channelNumber(const Service& service) {
  const auto major = number(service, TCServiceData::MAJOR);
  if (!major) return "-";
  const auto minor = number(service, TCServiceData::MINOR).value_or(0);
  return std::to_string(*major) + (minor == 0 ? "" : "-" + std::to_string(minor));
}

std::string serviceId(const Service& service) {
  const auto id = number(service, TCServiceData::SERVICE_ID);
  return id ? std::to_string(*id) : "-";
}

std::string flags(const Service& service) {
  std::string text;
  if (number(service, TCServiceData::LOCK).value_or(0) != 0) text += "locked";
  if (number(service, HIDDEN).value_or(0) != 0) text += text.empty() ? "hidden" : ",hidden";
  return text.empty() ? "-" : text;
}

Lines row(ServiceKey key, const Service& service) {
  return {"#" + std::to_string(key), antenna(service), channelNumber(service),
          serviceId(service),        flags(service),   text::quoted(nameOf(service))};
}

}  // namespace

Lines serviceTable(const ServiceStore& services, const std::string& filter) {
  ServiceQuery query;
  if (const auto count = text::numberIn<std::size_t>(filter)) {
    query.limit = *count;
  } else {
    query.text = filter;
  }
  std::vector<Lines> rows{{"KEY", "ANTENNA", "NUMBER", "ID", "FLAGS", "NAME"}};
  for (const auto& [key, service] : findServices(services, query).services) rows.push_back(row(key, service));
  Lines lines = rows.size() > 1 ? table(rows) : Lines();
  lines.push_back(std::to_string(rows.size() - 1) + " of " + std::to_string(services.size()) + " services");
  return lines;
}

}  // namespace virtualtv::shell
