#include "shell/ImportFile.h"

#include <stdexcept>

namespace virtualtv::shell {

namespace {

using import::Format;

std::string count(std::size_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

Format formatOf(const std::string& name, std::string_view content, const ImportOptions& options) {
  const std::optional<Format> format = options.format ? options.format : import::recognise(content);
  if (!format) throw std::runtime_error(name + ": not a channel list of a known format");
  return *format;
}

}  // namespace

ImportReport importServices(Tv& tv, const std::string& name, std::string_view content, const ImportOptions& options) {
  const import::Result read = import::read(content, formatOf(name, content, options));
  if (!read.services.empty()) tv.import(read.services, options.add);
  ImportReport report;
  for (const import::Problem& problem : read.problems) {
    report.problems.push_back(oneLine(name) + ":" + std::to_string(problem.line) + ": " + problem.reason);
  }
  report.summary = "imported " + count(read.services.size(), "service") + ", " + count(read.problems.size(), "line") +
                   " could not be read";
  if (read.services.empty()) report.error = name + ": no service in it";
  return report;
}

}  // namespace virtualtv::shell
