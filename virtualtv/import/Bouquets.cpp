// SPDX-License-Identifier: MIT
// Bouquets are lists of references to services. The files are parts of one text that follows the lamedb. Problems in
// them are reported with their own file and line.

#include "import/Bouquets.h"

#include <algorithm>
#include <utility>

#include "import/LineReader.h"
#include "import/Streams.h"
#include "import/Words.h"
#include "text/Units.h"

namespace virtualtv::import {

namespace {

constexpr std::string_view serviceMark = "#SERVICE";
constexpr std::string_view nameMark = "#NAME ";
constexpr std::string_view fromBouquet = "FROM BOUQUET \"";
constexpr std::string_view favourites = "userbouquet.favourites";

enum Reference : std::size_t { KIND, FLAGS, TYPE, SERVICE, STREAM, NETWORK, SPACE };

/// Flags of entries that can't be tuned to: 0x07 for directories and the like, 0x40 for markers.
constexpr std::uint64_t noService = 0x07 | 0x40;

/// The file that a line of `bouquets.tv` names.
std::optional<std::string_view> fileIn(std::string_view line) {
  const std::size_t start = line.find(fromBouquet);
  if (!line.starts_with(serviceMark) || start == std::string_view::npos) return std::nullopt;
  line.remove_prefix(start + fromBouquet.size());
  return cut(line, '"');
}

/// True for a name that can be read and written at the end of a line: no path to another directory, no line break or
/// null character in it, and no blanks at its ends.
bool isPlainName(std::string_view file) {
  return !file.empty() && file != "." && file != ".." && file == trimmed(file) &&
         file.find_first_of(std::string_view("/\\\n\0", 4)) == std::string_view::npos;
}

/// Appends a file to the text, after a line with its name. A line of the content that looks like such a line gets a
/// blank in front, so that it can't start another file.
void append(std::string& text, const std::string& file, std::string_view content) {
  text.append(text.ends_with('\n') ? "" : "\n").append(joinedFile).append(file);
  std::string lines = "\n" + std::string(text::withoutMark(content));
  const std::string mark = "\n" + std::string(joinedFile);
  for (std::size_t at = 0; (at = lines.find(mark, at)) != std::string::npos; at += mark.size()) {
    lines.insert(at + 1, 1, ' ');
  }
  text.append(lines);
}

}  // namespace

std::optional<std::string> joinedLists(const std::function<std::optional<std::string>(const std::string&)>& read) {
  std::optional<std::string> text = read("lamedb");
  if (!text) text = read("lamedb5");
  if (!text) return std::nullopt;
  std::set<std::string, std::less<>> known{"lamedb", "lamedb5", "bouquets.tv", "bouquets.radio"};
  for (const char* index : {"bouquets.tv", "bouquets.radio"}) {
    const std::optional<std::string> content = read(index);
    if (!content) continue;
    append(*text, index, *content);
    for (LineReader lines(*content); lines.next();) {
      const std::optional<std::string_view> file = fileIn(lines.line());
      if (!file || !isPlainName(*file) || !known.emplace(*file).second) continue;
      if (const auto bouquet = read(std::string(*file))) append(*text, std::string(*file), *bouquet);
    }
  }
  return text;
}

std::size_t startOfBouquets(std::string_view content) {
  std::size_t at = 0;
  do {
    at = content.find(joinedFile, at + 1);
  } while (at != std::string_view::npos && content[at - 1] != '\n');
  return std::min(at, content.size());
}

void Bouquets::read(std::string_view files, Problems& problems) {
  for (LineReader lines(files); lines.next();) {
    ++line_;
    if (lines.line().starts_with(joinedFile)) {
      file_ = lines.line().substr(joinedFile.size());
      files_.insert(file_);
      name_ = file_;
      line_ = 0;
      continue;
    }
    try {
      readLine(trimmed(lines.line()));
    } catch (Unreadable& unread) {
      problems.add({std::nullopt, place(), std::move(unread.reason), false});
    }
  }
  for (const auto& [file, at] : wanted_) {
    if (!files_.contains(file)) problems.add({std::nullopt, at, "there is no " + quoted(file), false});
  }
}

std::string Bouquets::place() const {
  return std::string(file_) + ", line " + std::to_string(line_);
}

void Bouquets::readLine(std::string_view line) {
  if (line.starts_with(nameMark)) name_ = trimmed(line.substr(nameMark.size()));
  if (!line.starts_with(serviceMark)) return;
  if (const auto file = fileIn(line)) {
    wanted_.emplace_back(*file, place());
  } else {
    line.remove_prefix(serviceMark.size());
    line.remove_prefix(line.starts_with(':') ? 1 : 0);
    readService(trimmed(line));
  }
}

/// Reads KIND:FLAGS:TYPE:SERVICE:STREAM:NETWORK:NAMESPACE:0:0:0:. All numbers but the first two are hexadecimal.
void Bouquets::readService(std::string_view reference) {
  const std::string_view whole = reference;
  std::array<std::string_view, SPACE + 1> parts;
  for (std::string_view& part : parts) part = cut(reference, ':');
  const std::uint64_t flags = number(parts[FLAGS], "flags", greatestId);
  if ((flags & noService) != 0) return;
  if (parts[KIND] != "1") throw Unreadable{quoted(whole) + " is no service that is broadcast"};
  const auto id = [&](Reference part, std::string_view what) {
    return static_cast<int>(hexadecimal(parts.at(part), what, greatestId));
  };
  const TransponderKey transponder{hexadecimal(parts[SPACE], "namespace", 0xFFFF'FFFF),
                                   id(STREAM, "transport stream id"), id(NETWORK, "network id")};
  const LamedbKey service{transponder, id(SERVICE, "service id")};
  mentions_.push_back({service, place()});
  if (file_.starts_with(favourites)) {
    favourites_.insert(service);
  } else {
    groups_.emplace(service, name_);
  }
}

std::optional<std::string_view> Bouquets::groupOf(const LamedbKey& service) const {
  const auto found = groups_.find(service);
  if (found == groups_.end()) return std::nullopt;
  return found->second;
}

void Bouquets::report(const std::function<bool(const LamedbKey&)>& exists, Problems& problems) const {
  for (const Mention& mention : mentions_) {
    if (!exists(mention.service)) problems.add({std::nullopt, mention.at, "the service is not in the lamedb", false});
  }
}

}  // namespace virtualtv::import
