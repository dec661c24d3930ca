// SPDX-License-Identifier: MIT
#include "channels/ExportList.h"

#include "text/Numbers.h"

namespace virtualtv {

std::string ExportReport::summary() const {
  return "exported " + text::counted(exported.services, "service");
}

std::string ExportReport::losses() const {
  std::string text;
  for (const auto& [what, number] : exported.lost)
    text += (text.empty() ? "" : ", ") + what + " of " + text::counted(number, "service");
  if (exported.leftOut > 0)
    text += (text.empty() ? "" : "; ") + text::counted(exported.leftOut, "service") + " left out";
  return text.empty() ? text : format + " can't hold all: " + text;
}

std::string ExportReport::error() const {
  if (exported.services > 0) return {};
  return exported.leftOut > 0 ? format + " can hold none of the services" : "there are no services to export";
}

ExportReport exportServices(const ServiceStore& services, const import::Format& format) {
  import::Exporter exporter(format);
  services.each([&](ServiceKey, const Service& service) { exporter.add(service); });
  return {std::string(format.name), exporter.finish()};
}

const import::Format& defaultExportFormat() {
  return *import::formatNamed("json");
}

}  // namespace virtualtv
