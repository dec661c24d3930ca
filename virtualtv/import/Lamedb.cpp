// SPDX-License-Identifier: MIT
// A lamedb has transponders, then services that refer to them. Versions 3 and 4 use three lines for each, between
// headings. Version 5 uses one line, which starts with a letter.

#include "import/Lamedb.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

#include "import/Bouquets.h"
#include "import/LamedbValues.h"
#include "import/LineReader.h"
#include "import/ListBuilder.h"
#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

constexpr std::string_view lamedbHead = "eDVB services /";

/// The version that a head names; empty for another line.
std::string_view versionOf(std::string_view line) {
  if (!line.starts_with(lamedbHead) || !line.ends_with('/') || line.size() <= lamedbHead.size()) return {};
  return line.substr(lamedbHead.size(), line.size() - lamedbHead.size() - 1);
}

/// A service as text: the lines of version 4 or the parts of version 5.
struct Record {
  int line = 0;
  std::string_view reference;
  std::string_view name;
  std::string_view cache;
};

class LamedbReader {
 public:
  LamedbReader(ListBuilder& list, Problems& problems) : list_(list), problems_(problems) {}

  void read(std::string_view content) {
    const std::size_t end = startOfBouquets(content);
    LineReader lines(content.substr(0, end));
    if (!readHead(lines)) return;
    if (version_ == "5") {
      readLines(lines);
    } else {
      readSections(lines);
    }
    bouquets_.read(content.substr(end), problems_);
    for (const Record& record : records_) guarded(record.line, [&] { add(record); });
    bouquets_.report([&](const LamedbKey& service) { return services_.contains(service); }, problems_);
  }

 private:
  template <typename Step>
  void guarded(int line, const Step& step) {
    try {
      step();
    } catch (Unreadable& unread) {
      problems_.add(unreadable(line, std::move(unread.reason)));
    }
  }

  bool readHead(LineReader& lines) {
    do {
      if (!lines.next()) return false;
    } while (trimmed(lines.line()).empty());
    version_ = versionOf(trimmed(lines.line()));
    if (version_ == "3" || version_ == "4" || version_ == "5") return true;
    const std::string said = version_.empty() ? quoted(trimmed(lines.line())) + " is no head of a lamedb"
                                              : "version " + quoted(version_) + " is not known";
    problems_.add(unreadable(lines.number(), said + "; versions 3, 4 and 5 are"));
    return false;
  }

  // Versions 3 and 4.

  void readSections(LineReader& lines) {
    while (lines.next()) {
      const std::string_view heading = trimmed(lines.line());
      if (heading == "transponders") readTransponders(lines);
      if (heading == "services") readServices(lines);
    }
  }

  void readTransponders(LineReader& lines) {
    std::string_view key;
    int line = 0;
    while (lines.next() && trimmed(lines.line()) != "end") {
      const std::string_view text = trimmed(lines.line());
      const bool indented = lines.line().starts_with('\t') || lines.line().starts_with(' ');
      if (text == "/") key = {};
      if (text == "/" || text.empty()) continue;
      if (!indented) {
        key = text;
        line = lines.number();
      } else if (key.empty()) {
        problems_.add(unreadable(lines.number(), quoted(text) + " stands behind no transponder's numbers"));
      } else {
        guarded(line, [&] { addTransponder(key, text); });
      }
    }
  }

  void readServices(LineReader& lines) {
    while (lines.next() && trimmed(lines.line()) != "end") {
      Record record{lines.number(), trimmed(lines.line()), {}, {}};
      if (lines.next()) record.name = lines.line();
      if (lines.next()) record.cache = trimmed(lines.line());
      records_.push_back(record);
    }
  }

  // Version 5.

  void readLines(LineReader& lines) {
    while (lines.next()) {
      const std::string_view line = trimmed(lines.line());
      if (line.empty() || lines.isComment()) continue;
      guarded(lines.number(), [&] { readLine(lines.number(), line); });
    }
  }

  void readLine(int number, std::string_view line) {
    const std::string_view whole = line;
    const std::string_view letter = cut(line, ':');
    const std::string_view first = cut(line, ',');
    if (letter == "t") {
      addTransponder(first, line);
    } else if (letter == "s") {
      const std::size_t end = std::min(line.find("\",p:"), line.rfind('"'));
      if (!line.starts_with('"') || end == 0) throw Unreadable{quoted(whole) + " has no name between double quotes"};
      const std::string_view cache = line.substr(end + 1);
      records_.push_back({number, first, line.substr(1, end - 1), cache.substr(cache.starts_with(',') ? 1 : 0)});
    } else {
      throw Unreadable{quoted(whole) + " is neither a transponder (t) nor a service (s)"};
    }
  }

  // All versions.

  void addTransponder(std::string_view key, std::string_view tuning) {
    std::string_view rest = key;
    Entry entry;
    const TransponderKey read = takeTransponderKey(rest);
    readTuning(entry, tuning);
    entry.text = tuning;
    transponders_[read] = {key, std::move(entry)};
  }

  void add(const Record& record) {
    std::string_view rest = record.reference;
    const auto service = static_cast<int>(hexadecimal(cut(rest, ':'), "service id", greatestId));
    const TransponderKey transponder = takeTransponderKey(rest);
    const std::uint64_t type = number(trimmed(cut(rest, ':')), "service type", greatestId);
    const auto found = transponders_.find(transponder);
    if (found == transponders_.end())
      throw Unreadable{quoted(record.reference) + " is of a transponder that is not there"};
    Entry entry = found->second.tuning;
    entry.program = service;
    entry.transportStream = std::get<1>(transponder);
    entry.network = std::get<2>(transponder);
    if (entry.antenna != ANTENNA_SATELLITE) entry.source = entry.network;
    readCache(entry, record.cache);
    entry.kind = kindOfServiceType(type);
    entry.name = record.name;
    entry.text = textOf(record, found->second);
    const LamedbKey key{transponder, service};
    services_.insert(key);
    entry.favourite = bouquets_.isFavourite(key);
    list_.startGroup(bouquets_.groupOf(key).value_or(std::string_view()));
    list_.add(std::move(entry));
  }

  struct Transponder {
    std::string_view key;
    Entry tuning;
  };

  /// A lamedb with only this service and its transponder.
  std::string textOf(const Record& record, const Transponder& transponder) const {
    std::string text;
    const auto put = [&](auto... pieces) { (text.append(pieces), ...); };
    put(lamedbHead, version_, "/\n");
    if (version_ == "5") {
      put("t:", transponder.key, ",", transponder.tuning.text, "\ns:", record.reference, ",\"", record.name, "\"");
      put(record.cache.empty() ? "" : ",", record.cache);
    } else {
      put("transponders\n", transponder.key, "\n\t", transponder.tuning.text, "\n/\nend\nservices\n");
      put(record.reference, "\n", record.name, "\n", record.cache, "\nend");
    }
    return text;
  }

  ListBuilder& list_;
  Problems& problems_;
  std::string_view version_;
  std::map<TransponderKey, Transponder> transponders_;
  std::vector<Record> records_;
  std::set<LamedbKey> services_;
  Bouquets bouquets_;
};

}  // namespace

std::optional<std::size_t> findLamedb(std::string_view content) {
  for (LineReader lines(content); lines.next();) {
    if (!versionOf(trimmed(lines.line())).empty()) return lines.offset();
  }
  return std::nullopt;
}

void readLamedb(std::string_view content, ListBuilder& list, Problems& problems) {
  LamedbReader(list, problems).read(content);
}

}  // namespace virtualtv::import
