// SPDX-License-Identifier: MIT
// A line of a zap file is a service, with fields separated by colons. The number of fields and the third field
// determine the antenna.

#include "import/Zap.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "import/Dvbv5Values.h"
#include "import/LineReader.h"
#include "import/ListBuilder.h"
#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

/// The meaning of a field. `other` fields are not used.
enum class ZapField {
  name,
  hertz,
  megahertz,
  inversion,
  bandwidth,
  modulation,
  polarisation,
  satellite,
  symbols,      ///< per second
  kilosymbols,  ///< per second
  video,
  audio,
  service,
  other,
};

/// The fields of a line in their order. The last one, the service id, may be left out.
struct ZapShape {
  EAntennaMode antenna;
  Raster raster;
  std::span<const ZapField> fields;
};

using enum ZapField;
constexpr std::array terrestrialFields{name,  hertz, inversion, bandwidth, other, other,  modulation,
                                       other, other, other,     video,     audio, service};
constexpr std::array cableFields{name, hertz, inversion, symbols, other, modulation, video, audio, service};
constexpr std::array satelliteFields{name, megahertz, polarisation, satellite, kilosymbols, video, audio, service};
constexpr std::array americanFields{name, hertz, modulation, video, audio, service};

constexpr std::array shapes{
    ZapShape{ANTENNA_TERRESTRIAL, Raster::european, terrestrialFields},
    ZapShape{ANTENNA_CABLE, Raster::european, cableFields},
    ZapShape{ANTENNA_SATELLITE, Raster::european, satelliteFields},
    ZapShape{ANTENNA_TERRESTRIAL, Raster::american, americanFields},
};

constexpr std::string_view inversionWord = "INVERSION_";

std::vector<std::string_view> fieldsOf(std::string_view line) {
  constexpr std::size_t most = terrestrialFields.size() + 1;
  std::vector<std::string_view> fields;
  while (fields.size() < most) {
    const bool last = line.find(':') == std::string_view::npos;
    fields.push_back(trimmed(cut(line, ':')));
    if (last) break;
  }
  return fields;
}

bool isPolarisation(std::string_view word) {
  return word.size() == 1 && std::string_view("hvlrHVLR").find(word) != std::string_view::npos;
}

bool isAmericanModulation(std::string_view word) {
  return word == "8VSB" || word == "16VSB" || word == "VSB_8" || word == "VSB_16" || word.starts_with("QAM_");
}

/// The shape of a line, determined by its third field and, if needed, the fourth; null when there is none.
const ZapShape* shapeOf(std::span<const std::string_view> fields) {
  if (fields.size() < 4) return nullptr;
  if (fields[2].starts_with(inversionWord)) return &shapes[fields[3].starts_with("BANDWIDTH_") ? 0 : 1];
  if (isPolarisation(fields[2])) return &shapes[2];
  return isAmericanModulation(fields[2]) ? &shapes[3] : nullptr;
}

bool hasRightCount(const ZapShape& shape, std::size_t count) {
  return count == shape.fields.size() || count + 1 == shape.fields.size();
}

/// Reads BANDWIDTH_8_MHZ, BANDWIDTH_1_712_MHZ, BANDWIDTH_AUTO and the like. @return kHz; 0 for BANDWIDTH_AUTO.
int readBandwidth(std::string_view text) {
  struct Bandwidth {
    std::string_view name;
    int kilohertz;
  };
  constexpr std::array<Bandwidth, 7> known{{{"BANDWIDTH_8_MHZ", 8000},
                                            {"BANDWIDTH_7_MHZ", 7000},
                                            {"BANDWIDTH_6_MHZ", 6000},
                                            {"BANDWIDTH_5_MHZ", 5000},
                                            {"BANDWIDTH_10_MHZ", 10000},
                                            {"BANDWIDTH_1_712_MHZ", 1712},
                                            {"BANDWIDTH_AUTO", 0}}};
  for (const Bandwidth& one : known) {
    if (sameWord(one.name, text)) return one.kilohertz;
  }
  throw Unreadable{"bandwidth " + quoted(text) + " is not known"};
}

int readSatelliteFrequency(std::string_view text) {
  const std::uint64_t megahertzWritten = number(text, "frequency", 999'999);
  if (isSatelliteFrequency(megahertzWritten * 1000)) return static_cast<int>(megahertzWritten) * 1000;
  throw Unreadable{"frequency " + quoted(text) + " is not that of a satellite, 2000 to 50000 MHz"};
}

int readGroundFrequency(std::string_view text) {
  const std::uint64_t hertzWritten = number(text, "frequency", 999'999'999'999);
  if (isGroundFrequency(hertzWritten)) return static_cast<int>((hertzWritten + 500) / 1000);
  throw Unreadable{"frequency " + quoted(text) + " is not within 30000000 to 1500000000 Hz"};
}

int readPid(std::string_view text, std::string_view what) {
  const int pid = static_cast<int>(number(text, what, greatestPid));
  return isStreamPid(pid) ? pid : 0;
}

/// Several PIDs are separated by commas.
std::vector<AudioTrack> readAudio(std::string_view text) {
  std::vector<AudioTrack> tracks;
  do {
    const int pid = readPid(trimmed(cut(text, ',')), "audio PID");
    if (pid != 0) tracks.emplace_back().pid = pid;
  } while (!text.empty());
  return tracks;
}

void readField(Entry& entry, ZapField field, std::string_view text) {
  switch (field) {
    case name:
      entry.name = text;
      break;
    case hertz:
      entry.frequency = readGroundFrequency(text);
      break;
    case megahertz:
      entry.frequency = readSatelliteFrequency(text);
      break;
    case bandwidth:
      entry.bandwidth = readBandwidth(text);
      break;
    case modulation:
      entry.modulation = readDvbv5Modulation(text);
      break;
    case polarisation:
      entry.polarisation = readDvbv5Polarisation(text);
      break;
    case satellite:
      entry.source = static_cast<int>(number(text, "satellite", greatestId));
      break;
    case symbols:
      entry.symbolRate = static_cast<int>((number(text, "symbol rate", 100'000'000) + 500) / 1000);
      break;
    case kilosymbols:
      entry.symbolRate = static_cast<int>(number(text, "symbol rate", 100'000));
      break;
    case video:
      entry.video = readPid(text, "video PID");
      break;
    case audio:
      entry.audio = readAudio(text);
      break;
    case service:
      entry.program = static_cast<int>(number(text, "service id", greatestId));
      break;
    case inversion:
    case other:
      break;
  }
}

Entry readLine(std::string_view line) {
  const std::vector<std::string_view> fields = fieldsOf(line);
  const ZapShape* shape = shapeOf(fields);
  if (shape == nullptr)
    throw Unreadable{quoted(trimmed(line)) + " is no service of a terrestrial, cable or satellite zap file"};
  if (!hasRightCount(*shape, fields.size())) {
    const std::string all = std::to_string(shape->fields.size());
    const bool more = fields.size() > shape->fields.size();
    throw Unreadable{quoted(trimmed(line)) + " has " + (more ? "more than" : std::to_string(fields.size()) + " of") +
                     " the " + all + " fields of a service"};
  }
  Entry entry;
  entry.antenna = shape->antenna;
  entry.raster = shape->raster;
  if (entry.antenna == ANTENNA_SATELLITE) entry.modulation = MODULATION_QPSK;
  for (std::size_t at = 0; at < fields.size(); ++at) readField(entry, shape->fields[at], fields[at]);
  if (entry.raster == Raster::american && isQam(entry.modulation)) entry.antenna = ANTENNA_CABLE;
  entry.text = trimmed(line);
  return entry;
}

bool looksLikeZap(std::string_view line) {
  const std::vector<std::string_view> fields = fieldsOf(line);
  const ZapShape* shape = shapeOf(fields);
  if (shape == nullptr || !hasRightCount(*shape, fields.size())) return false;
  return !fields[1].empty() && std::all_of(fields[1].begin(), fields[1].end(), isDigit);
}

}  // namespace

std::optional<std::size_t> findZap(std::string_view content) {
  for (LineReader lines(content); lines.next();) {
    if (!lines.isComment() && looksLikeZap(lines.line())) return lines.offset();
  }
  return std::nullopt;
}

void readZap(std::string_view content, ListBuilder& list, Problems& problems) {
  for (LineReader lines(content); lines.next();) {
    if (lines.isComment() || trimmed(lines.line()).empty()) continue;
    try {
      list.add(readLine(lines.line()));
    } catch (Unreadable& unread) {
      problems.add(unreadable(lines.number(), std::move(unread.reason)));
    }
  }
}

}  // namespace virtualtv::import
