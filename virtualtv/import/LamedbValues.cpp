// SPDX-License-Identifier: MIT
#include "import/LamedbValues.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <system_error>
#include <vector>

#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

constexpr std::uint64_t greatestNamespace = 0xFFFF'FFFF;
constexpr int wholeCircle = 3600;  // tenths of a degree

using Values = std::vector<std::string_view>;

Values valuesOf(std::string_view text) {
  constexpr std::size_t most = 32;
  Values values;
  while (!text.empty() && values.size() < most) values.push_back(trimmed(cut(text, ':')));
  return values;
}

/// The value at an index; 0 when the line is shorter.
std::uint64_t valueAt(const Values& values, std::size_t at, std::string_view what, std::uint64_t most) {
  return at < values.size() ? number(values[at], what, most) : 0;
}

template <std::size_t count>
Modulation modulationAt(const Values& values, std::size_t at, const std::array<Modulation, count>& codes) {
  return codes.at(static_cast<std::size_t>(valueAt(values, at, "modulation", count - 1)));
}

/// Reads tenths of a degree. Western positions are negative or beyond 1800.
int readPosition(std::string_view text) {
  const bool west = text.starts_with('-');
  const std::string_view digits = text.substr(west ? 1 : 0);
  const auto tenths = static_cast<int>(number(digits, "orbital position", west ? wholeCircle / 2 : wholeCircle - 1));
  return orbitalSource(tenths, west);
}

void wantFields(const Values& values, std::size_t least) {
  if (values.size() >= least) return;
  throw Unreadable{"the transponder has " + std::to_string(values.size()) + " of at least " + std::to_string(least) +
                   " fields"};
}

int groundFrequency(std::uint64_t hertz, std::string_view written) {
  if (isGroundFrequency(hertz)) return static_cast<int>((hertz + 500) / 1000);
  throw Unreadable{"frequency " + quoted(written) + " is not within 30 to 1500 MHz"};
}

constexpr std::uint64_t greatestFrequency = 999'999'999'999;

void readSatellite(Entry& entry, const Values& values) {
  constexpr std::array modulations{MODULATION_UNKNOWN, MODULATION_QPSK,    MODULATION_PSK_8,
                                   MODULATION_QAM_16,  MODULATION_APSK_16, MODULATION_APSK_32};
  wantFields(values, 5);
  const std::uint64_t kilohertz = number(values[0], "frequency", greatestFrequency);
  if (!isSatelliteFrequency(kilohertz))
    throw Unreadable{"frequency " + quoted(values[0]) + " is not that of a satellite, 2000000 to 50000000 kHz"};
  entry.antenna = ANTENNA_SATELLITE;
  entry.frequency = static_cast<int>(kilohertz);
  entry.symbolRate = static_cast<int>((number(values[1], "symbol rate", 100'000'000) + 500) / 1000);
  entry.polarisation = std::string_view("HVLR").at(static_cast<std::size_t>(number(values[2], "polarisation", 3)));
  entry.source = readPosition(values[4]);
  const bool secondGeneration = valueAt(values, 7, "system", 1) == 1;
  entry.modulation = secondGeneration ? modulationAt(values, 8, modulations) : MODULATION_QPSK;
  if (secondGeneration && entry.modulation == MODULATION_QPSK) entry.modulation = MODULATION_QPSK_S2;
}

/// Reads a bandwidth, which is a code or a number in Hz.
int readBandwidth(std::string_view text) {
  constexpr std::array kilohertz{8000, 7000, 6000, 0, 5000, 1712, 10000};
  const std::uint64_t value = number(text, "bandwidth", 100'000'000);
  if (value < kilohertz.size()) return kilohertz.at(static_cast<std::size_t>(value));
  if (value >= 1'000'000) return static_cast<int>(value / 1000);
  throw Unreadable{"bandwidth " + quoted(text) + " is not known"};
}

void readTerrestrial(Entry& entry, const Values& values) {
  constexpr std::array modulations{MODULATION_QPSK, MODULATION_QAM_16, MODULATION_QAM_64, MODULATION_UNKNOWN,
                                   MODULATION_QAM_256};
  wantFields(values, 5);
  entry.antenna = ANTENNA_TERRESTRIAL;
  entry.frequency = groundFrequency(number(values[0], "frequency", greatestFrequency), values[0]);
  entry.bandwidth = readBandwidth(values[1]);
  entry.modulation = modulationAt(values, 4, modulations);
}

constexpr std::array cableModulations{MODULATION_UNKNOWN, MODULATION_QAM_16,  MODULATION_QAM_32, MODULATION_QAM_64,
                                      MODULATION_QAM_128, MODULATION_QAM_256, MODULATION_VSB_8,  MODULATION_VSB_16};

void readCable(Entry& entry, const Values& values) {
  wantFields(values, 4);
  entry.antenna = ANTENNA_CABLE;
  entry.frequency = groundFrequency(number(values[0], "frequency", greatestFrequency) * 1000, values[0]);
  entry.symbolRate = static_cast<int>((number(values[1], "symbol rate", 100'000'000) + 500) / 1000);
  entry.modulation = modulationAt(values, 3, cableModulations);
}

void readAmerican(Entry& entry, const Values& values) {
  wantFields(values, 3);
  entry.raster = Raster::american;
  entry.frequency = groundFrequency(number(values[0], "frequency", greatestFrequency), values[0]);
  entry.modulation = modulationAt(values, 2, cableModulations);
  entry.antenna = isQam(entry.modulation) ? ANTENNA_CABLE : ANTENNA_TERRESTRIAL;
}

/// An entry of the cache: two digits for its kind, and four hexadecimal digits for its value.
void readCached(Entry& entry, std::string_view text) {
  struct Audio {
    int id;
    AudioCoding coding;
  };
  constexpr std::array<Audio, 5> audio{
      {{1, CODING_MPEG}, {4, CODING_AC3}, {10, CODING_AAC}, {11, CODING_EAC3}, {12, CODING_AAC}}};
  if (text.size() != 6) return;
  int id = 0;
  int pid = 0;
  const char* middle = text.data() + 2;
  const char* end = text.data() + text.size();
  if (std::from_chars(text.data(), middle, id).ptr != middle) return;
  if (std::from_chars(middle, end, pid, 16).ptr != end || !isStreamPid(pid)) return;
  if (id == 0) entry.video = pid;
  for (const Audio& one : audio) {
    if (one.id != id) continue;
    AudioTrack& track = entry.audio.emplace_back();
    track.pid = pid;
    track.decodeType = one.coding;
  }
}

}  // namespace

std::uint64_t hexadecimal(std::string_view digits, std::string_view what, std::uint64_t most) {
  std::uint64_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
  if (digits.empty() || stop != end || digits.front() == '-')
    throw Unreadable{std::string(what) + ' ' + quoted(digits) + " is not a hexadecimal number"};
  if (error == std::errc() && value <= most) return value;
  throw Unreadable{std::string(what) + ' ' + quoted(digits) + " is greater than " + std::to_string(most)};
}

TransponderKey takeTransponderKey(std::string_view& text) {
  const std::uint64_t space = hexadecimal(cut(text, ':'), "namespace", greatestNamespace);
  const auto stream = static_cast<int>(hexadecimal(cut(text, ':'), "transport stream id", greatestId));
  const auto network = static_cast<int>(hexadecimal(trimmed(cut(text, ':')), "network id", greatestId));
  return {space, stream, network};
}

void readTuning(Entry& entry, std::string_view text) {
  const std::string_view whole = text;
  const char letter = text.empty() ? ' ' : text.front();
  text.remove_prefix(std::min<std::size_t>(text.size(), 2));
  const Values values = valuesOf(text);
  switch (letter) {
    case 's':
      return readSatellite(entry, values);
    case 't':
      return readTerrestrial(entry, values);
    case 'c':
      return readCable(entry, values);
    case 'a':
      return readAmerican(entry, values);
    default:
      throw Unreadable{quoted(whole) + " is no transponder of a satellite (s), terrestrial (t), cable (c) or ATSC (a)"};
  }
}

void readCache(Entry& entry, std::string_view text) {
  while (!text.empty()) {
    const std::string_view piece = trimmed(cut(text, ','));
    if (piece.starts_with("c:")) readCached(entry, piece.substr(2));
  }
}

}  // namespace virtualtv::import
