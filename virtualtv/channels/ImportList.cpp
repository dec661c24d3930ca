// SPDX-License-Identifier: MIT
#include "channels/ImportList.h"

#include <stdexcept>
#include <utility>

#include "broadcast/Found.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv {

namespace {

using import::Format;

/// The titles of all formats, each with the name that `--format` takes.
std::string titlesOfFormats() {
  std::string titles;
  for (const Format& format : import::formats()) {
    titles += (titles.empty() ? "" : ", ") + std::string(format.title) + " (" + std::string(format.name) + ")";
  }
  return titles;
}

const Format& formatOf(const std::string& name, std::string_view content, const ImportOptions& options) {
  const Format* format = options.format != nullptr ? options.format : import::recognise(content);
  if (format == nullptr)
    throw std::runtime_error(name + ": not a channel list of a known format: " + titlesOfFormats());
  return *format;
}

std::optional<Footage> footageOf(const broadcast::FoundService& service, const RecordingFiles& files) {
  if (service.video == 0 || service.file > files.paths.size()) return {};
  const std::string& path = files.paths[service.file - 1];
  if (path.empty()) return {};
  return Footage{path, service.video, service.videoType, files.areTrusted};
}

}  // namespace

std::vector<std::string> ImportReport::problemLines() const {
  std::vector<std::string> lines;
  for (const import::Problem& problem : problems.kept()) {
    const std::string place = problem.line ? ":" + std::to_string(*problem.line) : ": " + problem.at;
    lines.push_back(text::printable(list) + place + ": " + problem.reason);
  }
  const std::size_t others = problems.count() - problems.kept().size();
  if (others > 0) lines.push_back(text::printable(list) + ": " + text::counted(others, "more problem"));
  return lines;
}

std::string ImportReport::summary() const {
  return "imported " + text::counted(imported, "service") + ": " + std::to_string(changes.added) + " added, " +
         std::to_string(changes.changed) + " changed, " + std::to_string(changes.gone) + " gone" +
         (hasLines ? "; " + text::counted(problems.unread(), "line") + " could not be read" : "");
}

std::string ImportReport::error() const {
  return imported > 0 ? std::string() : list + ": no service in it";
}

ImportReport importServices(Tv& tv, const std::string& name, std::string_view content, const ImportOptions& options) {
  import::Result read = import::read(content, formatOf(name, content, options), options.encoding);
  ImportReport report{name, read.services.size(), {}, std::move(read.problems), true};
  if (!read.services.empty()) report.changes = tv.import(read.services, options.add);
  return report;
}

ImportReport importScan(Tv& tv, const std::string& name, const broadcast::Scan& scan, bool add,
                        const RecordingFiles& files) {
  ImportReport report{name, scan.services.size(), {}, {}, false};
  std::vector<Service> services = broadcast::servicesOf(scan);
  for (std::size_t at = 0; at < services.size(); ++at) services[at].footage = footageOf(scan.services[at], files);
  if (!services.empty()) report.changes = tv.import(services, add);
  return report;
}

}  // namespace virtualtv
