#include "channels/ExportList.h"

namespace virtualtv {

namespace {

std::string services(std::size_t number) {
  return std::to_string(number) + " service" + (number == 1 ? "" : "s");
}

}  // namespace

std::string ExportReport::summary() const {
  return "exported " + services(exported.services);
}

std::string ExportReport::losses() const {
  std::string text;
  for (const auto& [what, number] : exported.lost)
    text += (text.empty() ? "" : ", ") + what + " of " + services(number);
  if (exported.leftOut > 0) text += (text.empty() ? "" : "; ") + services(exported.leftOut) + " left out";
  return text.empty() ? text : format + " can't hold all: " + text;
}

std::string ExportReport::error() const {
  return exported.services > 0 ? std::string() : format + " can hold none of the services";
}

ExportReport exportServices(const ServiceStore& services, const import::Format& format) {
  import::Exporter exporter(format);
  for (const ServiceKey key : services.keys()) {
    if (const std::optional<Service> service = services.read(key)) exporter.add(*service);
  }
  return {std::string(format.name), exporter.finish()};
}

const import::Format& defaultExportFormat() {
  return *import::formatNamed("json");
}

}  // namespace virtualtv
