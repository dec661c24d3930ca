// SPDX-License-Identifier: MIT
// A libdvbv5 channel file has a section for each service: its name in brackets, then lines of KEY = VALUE in any order.

#include "import/Dvbv5.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "import/Dvbv5Values.h"
#include "import/LineReader.h"
#include "import/ListBuilder.h"
#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

/// Keys with one value in a section. If a key is repeated, its last value counts.
enum Key : std::size_t {
  CHANNEL,
  SERVICE_ID,
  NETWORK_ID,
  TRANSPORT_ID,
  DELIVERY_SYSTEM,
  FREQUENCY,
  BANDWIDTH_HZ,
  SYMBOL_RATE,
  MODULATION,
  POLARIZATION,
  SAT_NUMBER,
  KEYS,
};

constexpr std::array<std::string_view, KEYS> keyNames{
    "CHANNEL",      "SERVICE_ID",  "NETWORK_ID", "TRANSPORT_ID", "DELIVERY_SYSTEM", "FREQUENCY",
    "BANDWIDTH_HZ", "SYMBOL_RATE", "MODULATION", "POLARIZATION", "SAT_NUMBER",
};

std::optional<Key> keyNamed(std::string_view name) {
  const auto found =
      std::find_if(keyNames.begin(), keyNames.end(), [&](std::string_view known) { return sameWord(known, name); });
  if (found == keyNames.end()) return std::nullopt;
  return static_cast<Key>(found - keyNames.begin());
}

/// One section of the file. Values are stored as text and read when the section is complete, since some depend on
/// others.
class Section {
 public:
  /// @param head  its first line. @param name  the name in that line.
  Section(int line, std::string_view head, std::string_view name)
      : text_(head), name_(name), head_(line), line_(line) {}

  /// The line last read, which is the invalid one when reading throws.
  int line() const { return line_; }

  /// Keeps a line of the section.
  /// @throws Unreadable when it is not KEY = VALUE.
  void add(int line, std::string_view text) {
    line_ = line;
    const std::string_view whole = text;
    text_.append("\n").append(text);
    const bool assigns = text.find('=') != std::string_view::npos;
    const std::string_view name = trimmed(cut(text, '='));
    if (!assigns || name.empty()) throw Unreadable{quoted(whole) + " is not KEY = VALUE"};
    if (const auto key = keyNamed(name)) values_[*key] = {line, trimmed(text)};
    if (const auto kind = dvbv5Streams(name)) streams_.push_back({*kind, name, {line, trimmed(text)}});
  }

  Entry read() {
    Entry entry;
    entry.program = id(SERVICE_ID).value_or(-1);
    if (entry.program < 0) missing("SERVICE_ID: it is no service");
    readTuning(entry);
    entry.network = id(NETWORK_ID);
    entry.transportStream = id(TRANSPORT_ID);
    entry.source = entry.network;
    if (entry.antenna == ANTENNA_SATELLITE) entry.source = satellite();
    readStreams(entry);
    entry.name = serviceName();
    entry.text = text_;
    return entry;
  }

 private:
  struct Value {
    int line = 0;
    std::string_view text;
  };

  struct Streams {
    Dvbv5Streams kind;
    std::string_view key;
    Value value;
  };

  [[noreturn]] void missing(const std::string& what) {
    line_ = head_;
    throw Unreadable{"the section has no " + what};
  }

  /// The value of a key, without a trailing comment; nothing when the section lacks the key.
  std::optional<std::string_view> value(Key key) {
    if (values_[key].line == 0) return std::nullopt;
    return uncommented(values_[key]);
  }

  std::string_view uncommented(const Value& value) {
    line_ = value.line;
    return trimmed(value.text.substr(0, std::min(value.text.find(" #"), value.text.find("\t#"))));
  }

  std::optional<int> id(Key key) {
    const auto text = value(key);
    if (!text) return std::nullopt;
    return static_cast<int>(number(*text, keyNames[key], greatestId));
  }

  /// The number of the satellite; nothing for -1, which stands for a dish without a switch.
  std::optional<int> satellite() {
    if (value(SAT_NUMBER) == "-1") return std::nullopt;
    return id(SAT_NUMBER);
  }

  void readTuning(Entry& entry) {
    const auto system = value(DELIVERY_SYSTEM);
    if (!system) missing("DELIVERY_SYSTEM");
    const Dvbv5System known = readDvbv5System(*system);
    entry.antenna = known.antenna;
    entry.raster = known.raster;
    const auto frequency = value(FREQUENCY);
    if (!frequency) missing("FREQUENCY");
    entry.frequency = readDvbv5Frequency(*frequency, entry.antenna);
    readChannel(entry);
    readModulation(entry, known);
    const auto symbolRate = value(SYMBOL_RATE);
    if (!symbolRate || entry.antenna == ANTENNA_TERRESTRIAL) return;
    entry.symbolRate = static_cast<int>((number(*symbolRate, keyNames[SYMBOL_RATE], 100'000'000) + 500) / 1000);
  }

  /// Reads the bandwidth or the polarisation. The set does not store them; they determine the physical channel.
  void readChannel(Entry& entry) {
    if (entry.antenna == ANTENNA_TERRESTRIAL) {
      if (const auto text = value(BANDWIDTH_HZ)) entry.bandwidth = readDvbv5Bandwidth(*text);
    } else if (entry.antenna == ANTENNA_SATELLITE) {
      if (const auto text = value(POLARIZATION)) entry.polarisation = readDvbv5Polarisation(*text);
    }
  }

  void readModulation(Entry& entry, const Dvbv5System& system) {
    const auto text = value(MODULATION);
    if (text) entry.modulation = readDvbv5Modulation(*text);
    if (!text && system.name == "DVBS") entry.modulation = MODULATION_QPSK;
    const bool secondGeneration = system.name.starts_with("DVBS2");
    if (secondGeneration && entry.modulation == MODULATION_QPSK) entry.modulation = MODULATION_QPSK_S2;
    if (system.name == "ATSC" && isQam(entry.modulation)) entry.antenna = ANTENNA_CABLE;
  }

  void readStreams(Entry& entry) {
    for (const Streams& streams : streams_) {
      std::string_view rest = uncommented(streams.value);
      while (!rest.empty()) {
        const std::size_t end = rest.find_first_of(" \t,");
        addStream(entry, streams, rest.substr(0, end));
        rest.remove_prefix(std::min(rest.find_first_not_of(" \t,", end), rest.size()));
      }
    }
  }

  static void addStream(Entry& entry, const Streams& streams, std::string_view text) {
    const int pid = static_cast<int>(number(text, streams.key, greatestPid));
    if (!isStreamPid(pid)) return;
    if (streams.kind.video) {
      if (entry.video == 0) entry.video = pid;
      return;
    }
    AudioTrack& track = entry.audio.emplace_back();
    track.pid = pid;
    track.decodeType = streams.kind.coding;
  }

  /// Some writers put CHANNEL into the head when a service has no name.
  std::string_view serviceName() const {
    if (!values_[CHANNEL].text.empty()) return values_[CHANNEL].text;
    return sameWord(trimmed(name_), keyNames[CHANNEL]) ? std::string_view() : name_;
  }

  std::string text_;  ///< the whole section
  std::string_view name_;
  int head_;
  int line_;
  std::array<Value, KEYS> values_;
  std::vector<Streams> streams_;
};

/// The name in the head of a section; nothing when the bracket is not closed.
std::optional<std::string_view> headName(std::string_view line) {
  const std::size_t end = line.rfind(']');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view behind = trimmed(line.substr(end + 1));
  if (!behind.empty() && behind.front() != '#') return std::nullopt;
  return line.substr(1, end - 1);
}

/// A section with an invalid line is skipped as a whole, and only that line is reported.
class Dvbv5Reader {
 public:
  Dvbv5Reader(ListBuilder& list, Problems& problems) : list_(list), problems_(problems) {}

  void read(std::string_view content) {
    for (LineReader lines(content); lines.next();) {
      const std::string_view line = trimmed(lines.line());
      if (line.empty() || lines.isComment()) continue;
      if (line.front() == '[') {
        finishSection();
        startSection(lines.number(), line);
      } else {
        addLine(lines.number(), line);
      }
    }
    finishSection();
  }

 private:
  void startSection(int number, std::string_view line) {
    leftOut_ = true;
    const auto name = headName(line);
    if (!name) {
      problems_.add(unreadable(number, "the head of a section, " + quoted(line) + ", does not end with ]"));
      return;
    }
    section_ = std::make_unique<Section>(number, line, *name);
    leftOut_ = false;
  }

  void addLine(int number, std::string_view line) {
    if (leftOut_) return;
    if (!section_) {
      problems_.add(unreadable(number, quoted(line) + " stands in front of the first section"));
      leftOut_ = true;
      return;
    }
    guarded([&] { section_->add(number, line); });
  }

  void finishSection() {
    if (!section_) return;
    guarded([&] { list_.add(section_->read()); });
    section_.reset();
  }

  template <typename Step>
  void guarded(const Step& step) {
    try {
      step();
    } catch (Unreadable& unread) {
      problems_.add(unreadable(section_->line(), std::move(unread.reason)));
      section_.reset();
      leftOut_ = true;
    }
  }

  ListBuilder& list_;
  Problems& problems_;
  std::unique_ptr<Section> section_;
  bool leftOut_ = false;  ///< skip the lines up to the next head
};

bool isHead(std::string_view line) {
  line = trimmed(line);
  return line.starts_with('[') && headName(line).has_value();
}

/// True for a line that sets one of the keys by which such a file is recognised.
bool setsTellingKey(std::string_view line) {
  if (line.find('=') == std::string_view::npos) return false;
  const auto key = keyNamed(trimmed(cut(line, '=')));
  return key && (*key == SERVICE_ID || *key == DELIVERY_SYSTEM || *key == FREQUENCY);
}

}  // namespace

std::optional<std::size_t> findDvbv5(std::string_view content) {
  bool inSection = false;
  for (LineReader lines(content); lines.next();) {
    if (lines.isComment()) continue;
    if (isHead(lines.line())) inSection = true;
    if (inSection && setsTellingKey(lines.line())) return lines.offset();
  }
  return std::nullopt;
}

void readDvbv5(std::string_view content, ListBuilder& list, Problems& problems) {
  Dvbv5Reader reader(list, problems);
  reader.read(content);
}

}  // namespace virtualtv::import
