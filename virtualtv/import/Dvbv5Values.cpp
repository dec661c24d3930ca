// SPDX-License-Identifier: MIT
#include "import/Dvbv5Values.h"

#include <array>
#include <charconv>
#include <string>

#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

constexpr std::array<Dvbv5System, 22> deliverySystems{{
    {"DVBT", ANTENNA_TERRESTRIAL},
    {"DVBT2", ANTENNA_TERRESTRIAL},
    {"DVBH", ANTENNA_TERRESTRIAL},
    {"ISDBT", ANTENNA_TERRESTRIAL},
    {"DTMB", ANTENNA_TERRESTRIAL},
    {"CMMB", ANTENNA_TERRESTRIAL},
    {"DAB", ANTENNA_TERRESTRIAL},
    {"ATSC", ANTENNA_TERRESTRIAL, Raster::american},
    {"ATSCMH", ANTENNA_TERRESTRIAL, Raster::american},
    {"DVBC", ANTENNA_CABLE},
    {"DVBC/ANNEX_A", ANTENNA_CABLE},
    {"DVBC/ANNEX_B", ANTENNA_CABLE},
    {"DVBC/ANNEX_C", ANTENNA_CABLE},
    {"DVBC2", ANTENNA_CABLE},
    {"ISDBC", ANTENNA_CABLE},
    {"DVBC/ANNEX_AC", ANTENNA_CABLE},
    {"DVBS", ANTENNA_SATELLITE},
    {"DVBS2", ANTENNA_SATELLITE},
    {"DVBS2X", ANTENNA_SATELLITE},
    {"DSS", ANTENNA_SATELLITE},
    {"ISDBS", ANTENNA_SATELLITE},
    {"TURBO", ANTENNA_SATELLITE},
}};

struct ModulationName {
  std::string_view letters;
  int levels;
  Modulation modulation;
};

constexpr std::array<ModulationName, 21> modulationNames{{
    {"QPSK", 0, MODULATION_QPSK},       {"DQPSK", 0, MODULATION_DQPSK},     {"PSK", 8, MODULATION_PSK_8},
    {"APSK", 16, MODULATION_APSK_16},   {"APSK", 32, MODULATION_APSK_32},   {"APSK", 64, MODULATION_APSK_64},
    {"QAM", 16, MODULATION_QAM_16},     {"QAM", 32, MODULATION_QAM_32},     {"QAM", 64, MODULATION_QAM_64},
    {"QAM", 128, MODULATION_QAM_128},   {"QAM", 256, MODULATION_QAM_256},   {"QAM", 512, MODULATION_QAM_512},
    {"QAM", 1024, MODULATION_QAM_1024}, {"QAM", 4096, MODULATION_QAM_4096}, {"QAMNR", 4, MODULATION_QAM_4_NR},
    {"VSB", 8, MODULATION_VSB_8},       {"VSB", 16, MODULATION_VSB_16},     {"QAMAUTO", 0, MODULATION_UNKNOWN},
    {"AUTO", 0, MODULATION_UNKNOWN},    {"PSKAUTO", 0, MODULATION_UNKNOWN}, {"NONE", 0, MODULATION_UNKNOWN},
}};

}  // namespace

Dvbv5System readDvbv5System(std::string_view text) {
  for (const Dvbv5System& known : deliverySystems) {
    if (sameWord(known.name, text)) return known;
  }
  throw Unreadable{"delivery system " + quoted(text) + " is not known"};
}

Modulation readDvbv5Modulation(std::string_view text) {
  std::string letters;
  std::string digits;
  for (const char character : text.substr(0, 16)) {
    if (isDigit(character)) {
      digits += character;
    } else if (character != '/' && character != '_' && character != '-') {
      letters += character;
    }
  }
  int levels = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), levels);
  for (const ModulationName& known : modulationNames) {
    if (sameWord(known.letters, letters) && known.levels == levels && text.size() <= 16) return known.modulation;
  }
  throw Unreadable{"modulation " + quoted(text) + " is not known"};
}

char readDvbv5Polarisation(std::string_view text) {
  constexpr std::array<std::string_view, 4> names{"HORIZONTAL", "VERTICAL", "LEFT", "RIGHT"};
  for (const std::string_view name : names) {
    if (sameWord(name, text) || sameWord(name.substr(0, 1), text)) return name.front();
  }
  if (sameWord("OFF", text)) return 0;
  throw Unreadable{"polarization " + quoted(text) + " is not known"};
}

int readDvbv5Frequency(std::string_view text, EAntennaMode antenna) {
  const std::uint64_t value = number(text, "FREQUENCY", 999'999'999'999);
  if (antenna == ANTENNA_SATELLITE) {
    if (isSatelliteFrequency(value)) return static_cast<int>(value);
    throw Unreadable{"FREQUENCY " + quoted(text) + " is not that of a satellite, 2000000 to 50000000 kHz"};
  }
  if (isGroundFrequency(value)) return static_cast<int>((value + 500) / 1000);
  throw Unreadable{"FREQUENCY " + quoted(text) + " is not within 30000000 to 1500000000 Hz"};
}

int readDvbv5Bandwidth(std::string_view text) {
  if (sameWord(text, "AUTO")) return 0;
  return static_cast<int>(number(text, "BANDWIDTH_HZ", 100'000'000) / 1000);
}

std::optional<Dvbv5Streams> dvbv5Streams(std::string_view name) {
  if (sameWord(name, "VIDEO_PID")) return Dvbv5Streams{true};
  if (sameWord(name, "AUDIO_PID")) return Dvbv5Streams{};
  if (sameWord(name, "AC3_PID") || sameWord(name, "AC3")) return Dvbv5Streams{false, CODING_AC3};
  if (sameWord(name, "EAC3_PID") || sameWord(name, "EAC3")) return Dvbv5Streams{false, CODING_EAC3};
  if (name.size() != 6 || !sameWord(name.substr(0, 4), "PID_")) return std::nullopt;
  int type = 0;
  const char* end = name.data() + name.size();
  if (std::from_chars(name.data() + 4, end, type, 16).ptr != end) return std::nullopt;
  const Dvbv5Streams kind{isVideoType(type), audioCoding(type)};
  if (!kind.video && kind.coding == CODING_UNKNOWN) return std::nullopt;
  return kind;
}

}  // namespace virtualtv::import
