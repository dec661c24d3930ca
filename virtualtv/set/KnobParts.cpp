// SPDX-License-Identifier: MIT
#include "set/KnobParts.h"

#include "services/ServiceStore.h"

namespace virtualtv::knobparts {

void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

bool onOrOff(const std::string& text) {
  if (text != "on" && text != "off") refuse("'" + text + "': on or off is wanted");
  return text == "on";
}

WindowId windowNamed(const std::string& name) {
  for (const WindowId window : windowIds) {
    if (name == nameOf(window)) return window;
  }
  refuse("there is no window '" + name + "'; there are main and pip");
}

namespace {

ServiceKey keyNamed(Tv& tv, const std::string& text) {
  if (text.starts_with('#')) return text::requireNumber<ServiceKey>(text.substr(1), {1, ServiceStore::greatestKey});
  const auto key =
      tv.services().keyOf(text::requireNumber<std::uint64_t>(text, text::rangeOf<std::uint64_t>(), " or #KEY"));
  if (!key) refuse("there is no service " + text);
  return *key;
}

}  // namespace

ServiceKey existingService(Tv& tv, const std::string& text) {
  const ServiceKey key = keyNamed(tv, text);
  if (!tv.services().read(key)) refuse("there is no service " + text);
  return key;
}

std::string nameOfService(Tv& tv, ServiceKey key) {
  if (key == 0) return "0";
  if (const auto service = tv.services().read(key)) {
    const auto id = service->numbers.find(TCServiceData::SERVICE_ID);
    if (id != service->numbers.end()) return std::to_string(id->second);
  }
  return "#" + std::to_string(key);
}

}  // namespace virtualtv::knobparts
