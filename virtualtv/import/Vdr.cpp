// SPDX-License-Identifier: MIT
// A line of VDR's channels.conf is a service with thirteen fields separated by colons, or a colon followed by the head
// of a group.

#include "import/Vdr.h"

#include <algorithm>
#include <array>
#include <utility>

#include "import/LineReader.h"
#include "import/ListBuilder.h"
#include "import/Streams.h"
#include "import/VdrFields.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

enum Field : std::size_t {
  NAME,
  FREQUENCY,
  PARAMETERS,
  SOURCE,
  SYMBOL_RATE,
  VIDEO,
  AUDIO,
  TELETEXT,
  CONDITIONAL_ACCESS,
  SERVICE,
  NETWORK,
  STREAM,
  RADIO,
  FIELDS,
};

constexpr std::string_view channelNumber = "channel number";
constexpr std::size_t fewestFields = SERVICE + 1;      // lines of old versions have only these
constexpr std::uint64_t greatestSymbolRate = 100'000;  // ksym/s

/// The fields of one line, and one more when the line has too many.
struct Fields {
  std::array<std::string_view, FIELDS + 1> texts;
  std::size_t count = 0;

  explicit Fields(std::string_view line) {
    std::size_t end = 0;
    while (count < texts.size() && end != std::string_view::npos) {
      end = line.find(':');
      texts[count++] = line.substr(0, end);
      if (end != std::string_view::npos) line.remove_prefix(end + 1);
    }
    for (std::string_view& text : texts) {
      if (&text != &texts[NAME]) text = trimmed(text);
    }
  }

  bool areEnough() const { return count >= fewestFields && count <= FIELDS; }
  /// True for a service without a name. Its line starts with a colon, like that of a group.
  bool areNameless() const { return trimmed(texts[NAME]).empty() && count >= fewestFields && hasFrequency(); }
  bool hasFrequency() const {
    const std::string_view frequency = texts[FREQUENCY];
    return !frequency.empty() && std::all_of(frequency.begin(), frequency.end(), isDigit);
  }
};

std::string wrongCount(std::size_t count) {
  if (count > FIELDS) return " has more than the 13 fields of a service; a colon in a name is written as |";
  return " has " + std::to_string(count) + " of the 13 fields of a service";
}

/// The name in NAME,SHORT;PROVIDER.
std::string_view nameOnly(std::string_view field) {
  field = field.substr(0, field.find(';'));
  return field.substr(0, field.rfind(','));
}

Modulation satelliteModulation(const VdrParameters& parameters) {
  const Modulation untold = parameters.secondGeneration ? MODULATION_UNKNOWN : MODULATION_QPSK;
  const Modulation modulation = parameters.modulation.value_or(untold);
  return modulation == MODULATION_QPSK && parameters.secondGeneration ? MODULATION_QPSK_S2 : modulation;
}

/// American cable networks have the source letter of terrestrial ones, and are recognised by their QAM. Inputs that do
/// not belong to one of the set's antennas count as cable.
EAntennaMode antennaOf(char sourceLetter, Modulation modulation) {
  switch (sourceLetter) {
    case 'S':
      return ANTENNA_SATELLITE;
    case 'T':
      return ANTENNA_TERRESTRIAL;
    case 'A':
      return isQam(modulation) ? ANTENNA_CABLE : ANTENNA_TERRESTRIAL;
    default:
      return ANTENNA_CABLE;
  }
}

bool isTuner(char sourceLetter) {
  return std::string_view("SCTA").find(sourceLetter) != std::string_view::npos;
}

void setTuning(Entry& entry, const Fields& fields, const VdrSource& source) {
  if (!isTuner(source.letter)) {
    entry.antenna = antennaOf(source.letter, MODULATION_UNKNOWN);
    return;
  }
  const VdrParameters parameters = readVdrParameters(fields.texts[PARAMETERS], source.letter);
  entry.frequency = readVdrFrequency(fields.texts[FREQUENCY], source.letter);
  entry.polarisation = parameters.polarisation;
  entry.bandwidth = parameters.bandwidth;
  entry.modulation = parameters.modulation.value_or(MODULATION_UNKNOWN);
  entry.antenna = antennaOf(source.letter, entry.modulation);
  if (source.letter == 'S') entry.modulation = satelliteModulation(parameters);
  if (source.letter == 'A') entry.raster = Raster::american;
  if (source.letter != 'S' && source.letter != 'C') return;
  entry.symbolRate = static_cast<int>(number(fields.texts[SYMBOL_RATE], "symbol rate", greatestSymbolRate));
}

void setIds(Entry& entry, const Fields& fields, const VdrSource& source) {
  const auto id = [&](Field field, const char* what) {
    return static_cast<int>(number(fields.texts[field], what, greatestId));
  };
  entry.program = id(SERVICE, "service id");
  if (fields.count > NETWORK) entry.network = id(NETWORK, "network id");
  if (fields.count > STREAM) entry.transportStream = id(STREAM, "transport stream id");
  entry.source = source.position ? source.position : entry.network;
}

/// Fields that the set does not use may hold anything: teletext, conditional access, radio id.
Entry readService(const Fields& fields) {
  const auto source = parseVdrSource(fields.texts[SOURCE]);
  if (!source) throw Unreadable{"source " + quoted(fields.texts[SOURCE]) + " is not known"};
  Entry entry;
  setTuning(entry, fields, *source);
  entry.video = readVdrVideo(fields.texts[VIDEO]);
  entry.audio = readVdrAudio(fields.texts[AUDIO]);
  entry.subtitles = readVdrSubtitles(fields.texts[TELETEXT]);
  setIds(entry, fields, *source);
  entry.name = nameOnly(fields.texts[NAME]);
  return entry;
}

class VdrReader {
 public:
  VdrReader(ListBuilder& list, Problems& problems) : list_(list), problems_(problems) {}

  void read(std::string_view content) {
    for (LineReader lines(content); lines.next();) {
      try {
        readLine(lines);
      } catch (Unreadable& unread) {
        problems_.add(unreadable(lines.number(), std::move(unread.reason)));
      }
    }
  }

 private:
  void readLine(const LineReader& lines) {
    const std::string_view text = trimmed(lines.line());
    if (text.empty() || lines.isComment()) return;
    const Fields fields(lines.line());
    if (text.front() == ':' && !fields.areNameless()) {
      readGroup(lines.number(), text.substr(1));
      return;
    }
    if (!fields.areEnough()) throw Unreadable{quoted(text) + wrongCount(fields.count)};
    Entry entry = readService(fields);
    entry.text = lines.line();
    list_.add(std::move(entry));
  }

  /// Reads the head of a group: a name, which may be preceded by an @ and the number of the next channel.
  void readGroup(int line, std::string_view text) {
    if (!text.starts_with('@')) return list_.startGroup(text);
    const std::string_view word = text.substr(0, text.find_first_of(" \t"));
    const std::string_view digits = word.substr(1);
    requireDigits(digits, channelNumber);
    list_.startGroup(text.substr(word.size()));
    continueFrom(line, digits);
  }

  void continueFrom(int line, std::string_view digits) {
    try {
      const std::uint64_t wanted = number(digits, channelNumber, greatestChannelNumber);
      if (list_.continueFrom(wanted)) return;
      throw Unreadable{std::string(channelNumber) + ' ' + quoted(digits) + " is less than " +
                       std::to_string(list_.nextNumber())};
    } catch (const Unreadable& unread) {
      const std::uint64_t next = list_.nextNumber();
      const std::string instead = next > greatestChannelNumber ? "have no number" : "start at " + std::to_string(next);
      problems_.add(remark(line, unread.reason + "; its services " + instead));
    }
  }

  ListBuilder& list_;
  Problems& problems_;
};

/// True for a line in the form of a service.
bool looksLikeVdr(std::string_view line) {
  const Fields fields(line);
  return fields.areEnough() && fields.hasFrequency() && parseVdrSource(fields.texts[SOURCE]).has_value();
}

}  // namespace

std::optional<std::size_t> findVdr(std::string_view content) {
  for (LineReader lines(content); lines.next();) {
    if (!lines.isComment() && looksLikeVdr(lines.line())) return lines.offset();
  }
  return std::nullopt;
}

void readVdr(std::string_view content, ListBuilder& list, Problems& problems) {
  VdrReader(list, problems).read(content);
}

}  // namespace virtualtv::import
