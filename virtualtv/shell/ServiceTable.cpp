#include "shell/ServiceTable.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "services/ServiceStore.h"
#include "shell/Table.h"
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
  switch (static_cast<std::int64_t>(*mode)) {
    case ANTENNA_TERRESTRIAL:
      return "terrestrial";
    case ANTENNA_CABLE:
      return "cable";
    case ANTENNA_SATELLITE:
      return "satellite";
    default:
      return std::to_string(static_cast<std::int64_t>(*mode));
  }
}

/// As viewers know it: major number, and minor number where there is one.
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

std::string lower(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

std::optional<std::size_t> countIn(const std::string& filter) {
  std::size_t count = 0;
  const char* end = filter.data() + filter.size();
  const auto [stop, error] = std::from_chars(filter.data(), end, count);
  if (error != std::errc() || stop != end) return std::nullopt;
  return count;
}

Lines row(ServiceKey key, const Service& service) {
  return {"#" + std::to_string(key), antenna(service), channelNumber(service),
          serviceId(service),        flags(service),   text::quoted(nameOf(service))};
}

}  // namespace

Lines serviceTable(Tv& tv, const std::string& filter) {
  const std::optional<std::size_t> count = countIn(filter);
  const std::string wanted = count ? "" : lower(filter);
  std::vector<Lines> rows{{"KEY", "ANTENNA", "NUMBER", "ID", "FLAGS", "NAME"}};
  const std::vector<ServiceKey> keys = tv.services().keys();
  for (const ServiceKey key : keys) {
    if (count && rows.size() > *count) break;
    const std::optional<Service> service = tv.services().read(key);
    if (!service || lower(text::toUtf8(nameOf(*service))).find(wanted) == std::string::npos) continue;
    rows.push_back(row(key, *service));
  }
  Lines lines = rows.size() > 1 ? table(rows) : Lines();
  lines.push_back(std::to_string(rows.size() - 1) + " of " + std::to_string(keys.size()) + " services");
  return lines;
}

}  // namespace virtualtv::shell
