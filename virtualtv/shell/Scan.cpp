// SPDX-License-Identifier: MIT
#include "shell/Scan.h"

#include <set>

#include "broadcast/FoundJson.h"
#include "broadcast/Scanner.h"
#include "json/Write.h"
#include "services/KindNames.h"
#include "services/Language.h"
#include "shell/Table.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

using broadcast::FoundService;
using broadcast::Scan;

std::string numberOf(const FoundService& service) {
  if (!service.number) return "-";
  const int minor = service.number->minor;
  return std::to_string(service.number->major) + (minor == 0 ? "" : "-" + std::to_string(minor));
}

/// Network, transport stream and program, as far as known.
std::string idsOf(const FoundService& service) {
  const auto id = [](int value) { return value < 0 ? std::string("-") : std::to_string(value); };
  return id(service.stream.network) + ":" + id(service.stream.stream) + ":" + std::to_string(service.program);
}

std::string quoted(const std::string& text) {
  return text.empty() ? "-" : text::quoted(text::toUnits(text));
}

/// The languages of tracks in order, without duplicates.
template <typename Track>
std::string languagesOf(const std::vector<Track>& tracks) {
  std::string languages;
  std::set<LanguageCode> seen;
  for (const Track& track : tracks) {
    if (seen.insert(track.lang).second) languages += (languages.empty() ? "" : ",") + nameOfLanguage(track.lang);
  }
  return languages.empty() ? "-" : languages;
}

Lines row(const FoundService& service) {
  return {numberOf(service),
          service.kind ? nameOf(*service.kind) : "-",
          idsOf(service),
          languagesOf(service.audio),
          languagesOf(service.subtitles),
          service.isScrambled ? "scrambled" : "-",
          quoted(service.provider),
          quoted(service.name)};
}

}  // namespace

Scan scanFiles(const std::vector<std::string>& files, const ReadFile& read) {
  broadcast::Scanner scanner;
  for (const std::string& file : files) {
    read(file, [&scanner](broadcast::Bytes block) { scanner.feed(block); });
    scanner.endStream(files.size() > 1 ? file : "");
  }
  return scanner.finish();
}

Lines scanProblems(const Scan& scan, const std::vector<std::string>& files) {
  const std::string front = files.size() == 1 ? text::printable(files.front()) + ": " : "";
  Lines lines;
  for (const import::Problem& problem : scan.problems.kept()) {
    lines.push_back(front + text::printable(problem.at) + ": " + problem.reason);
  }
  const std::size_t others = scan.problems.count() - scan.problems.kept().size();
  if (others > 0) lines.push_back(front + text::counted(others, "more problem"));
  return lines;
}

std::string noServiceIn(const std::vector<std::string>& files) {
  return files.front() + (files.size() > 1 ? " and others" : "") + ": no service in it";
}

Lines scanTable(const Scan& scan) {
  std::vector<Lines> rows{{"NUMBER", "KIND", "IDS", "AUDIO", "SUBTITLES", "FLAGS", "PROVIDER", "NAME"}};
  for (const FoundService& service : scan.services) rows.push_back(row(service));
  Lines lines = rows.size() > 1 ? table(rows) : Lines();
  lines.push_back(text::counted(scan.services.size(), "service") + " in " + text::counted(scan.packets, "packet"));
  return lines;
}

Lines scanLines(const Scan& scan, const ScanWishes& wishes) {
  if (wishes.json) return {json::write(broadcast::documentOf(scan))};
  Lines lines = scanProblems(scan, wishes.files);
  for (std::string& line : scanTable(scan)) lines.push_back(std::move(line));
  return lines;
}

}  // namespace virtualtv::shell
