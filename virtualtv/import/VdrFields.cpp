// SPDX-License-Identifier: MIT
#include "import/VdrFields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "import/Streams.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

constexpr std::string_view digitCharacters = "0123456789";

bool isUpper(char character) {
  return character >= 'A' && character <= 'Z';
}

char upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

int readPid(std::string_view text, std::string_view what) {
  return static_cast<int>(number(text, what, greatestPid));
}

/// Removes and returns the digits at the front of `text`.
std::string_view takeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of(digitCharacters));
  text.remove_prefix(digits.size());
  return digits;
}

/// Reads a position such as 19.2E or 5W.
std::optional<int> parsePosition(std::string_view text) {
  constexpr int farthest = 1800;
  const std::string_view whole = takeDigits(text);
  if (whole.empty() || whole.size() > 3) return std::nullopt;
  int tenths = 0;
  std::from_chars(whole.data(), whole.data() + whole.size(), tenths);
  tenths *= 10;
  if (text.size() == 3 && text[0] == '.' && isDigit(text[1])) {
    tenths += text[1] - '0';
    text.remove_prefix(2);
  }
  if ((text != "E" && text != "W") || tenths > farthest) return std::nullopt;
  return orbitalSource(tenths, text == "W");
}

Modulation modulationOf(std::uint64_t code) {
  struct Code {
    std::uint64_t code;
    Modulation modulation;
  };
  constexpr std::array<Code, 18> codes{{
      {0, MODULATION_UNKNOWN},
      {2, MODULATION_QPSK},
      {5, MODULATION_PSK_8},
      {6, MODULATION_APSK_16},
      {7, MODULATION_APSK_32},
      {10, MODULATION_VSB_8},
      {11, MODULATION_VSB_16},
      {12, MODULATION_DQPSK},
      {16, MODULATION_QAM_16},
      {32, MODULATION_QAM_32},
      {64, MODULATION_QAM_64},
      {128, MODULATION_QAM_128},
      {256, MODULATION_QAM_256},
      {512, MODULATION_QAM_512},
      {1024, MODULATION_QAM_1024},
      {4096, MODULATION_QAM_4096},
      {998, MODULATION_UNKNOWN},
      {999, MODULATION_UNKNOWN},
  }};
  for (const Code& known : codes) {
    if (known.code == code) return known.modulation;
  }
  throw Unreadable{"modulation \"M" + std::to_string(code) + "\" is not known"};
}

int bandwidthOf(std::uint64_t code) {
  if (code == 0 || code == 999) return 0;
  if (code == 1712) return 1712;
  if (code <= 10) return static_cast<int>(code) * 1000;
  throw Unreadable{"bandwidth \"B" + std::to_string(code) + "\" is not known"};
}

bool secondGenerationOf(std::uint64_t code) {
  if (code <= 1) return code == 1;
  throw Unreadable{"system generation \"S" + std::to_string(code) + "\" is not known"};
}

/// One stream of the audio and subtitle fields: PID, languages, type, as in 512=deu+eng@3.
struct Stream {
  int pid = 0;
  std::vector<LanguageCode> languages;  ///< at least one, 0 when unknown
  std::optional<int> type;
};

Stream readStream(std::string_view text, const std::string& what) {
  Stream stream;
  const bool typed = text.find('@') != std::string_view::npos;
  std::string_view languages = cut(text, '@');
  if (typed) stream.type = static_cast<int>(number(text, what + " type", 255));
  stream.pid = readPid(cut(languages, '='), what + " PID");
  do {
    stream.languages.push_back(languageNamed(cut(languages, '+')).value_or(0));
  } while (!languages.empty());
  return stream;
}

/// A stream with two languages, one per channel, gives two tracks.
void appendTracks(std::vector<AudioTrack>& tracks, std::string_view text, AudioCoding untyped) {
  while (!text.empty()) {
    const std::string_view piece = trimmed(cut(text, ','));
    if (piece.empty()) continue;
    const Stream stream = readStream(piece, "audio");
    if (!isStreamPid(stream.pid)) continue;
    for (const LanguageCode language : stream.languages) {
      AudioTrack& track = tracks.emplace_back();
      track.pid = stream.pid;
      track.lang = language;
      track.decodeType = stream.type ? audioCoding(*stream.type) : untyped;
    }
  }
}

}  // namespace

std::optional<VdrSource> parseVdrSource(std::string_view text) {
  constexpr std::string_view positionCharacters = "0123456789.EW";
  if (text.empty() || !isUpper(text.front())) return std::nullopt;
  const char letter = text.front();
  text.remove_prefix(1);
  if (letter == 'S') {
    const auto position = parsePosition(text);
    if (!position) return std::nullopt;
    return VdrSource{letter, position};
  }
  if (text.find_first_not_of(positionCharacters) != std::string_view::npos) return std::nullopt;
  return VdrSource{letter, std::nullopt};
}

/// Reads letters, each followed by a number; letters of polarisations have no number. Letters that the set does not use
/// (code rates, inversion, roll-off, those of future versions or of other kinds of sources) may have any number or
/// none.
VdrParameters readVdrParameters(std::string_view text, char sourceLetter) {
  const bool satellite = sourceLetter == 'S';
  const bool terrestrial = sourceLetter == 'T' || sourceLetter == 'A';
  const std::string_view whole = text;
  VdrParameters parameters;
  while (!text.empty()) {
    const char letter = upper(text.front());
    text.remove_prefix(1);
    const std::string_view digits = takeDigits(text);
    const auto code = [&] { return number(digits, std::string("parameter ") + letter, 999'999'999); };
    const bool polarisation = satellite && std::string_view("HVLR").find(letter) != std::string_view::npos;
    if (!isUpper(letter) || (polarisation && !digits.empty())) {
      throw Unreadable{"parameters " + quoted(whole) + " are not letters with numbers"};
    }
    if (polarisation) parameters.polarisation = letter;
    if (letter == 'M') parameters.modulation = modulationOf(code());
    if (letter == 'B' && terrestrial) parameters.bandwidth = bandwidthOf(code());
    if (letter == 'S' && satellite) parameters.secondGeneration = secondGenerationOf(code());
  }
  return parameters;
}

int readVdrFrequency(std::string_view text, char sourceLetter) {
  const std::uint64_t value = number(text, "frequency", 999'999'999'999);
  if (sourceLetter == 'S') {
    if (isSatelliteFrequency(value * 1000)) return static_cast<int>(value) * 1000;
    throw Unreadable{"frequency " + quoted(text) + " is not that of a satellite, 2000 to 50000 MHz"};
  }
  for (const std::uint64_t unit : {1'000'000U, 1000U, 1U}) {
    const std::uint64_t hertz = value * unit;
    if (isGroundFrequency(hertz)) return static_cast<int>((hertz + 500) / 1000);
  }
  throw Unreadable{"frequency " + quoted(text) + " is not within 30 to 1500 MHz, be it in MHz, kHz or Hz"};
}

/// A stream type may follow a PID, and the clock PID may follow the video PID.
int readVdrVideo(std::string_view text) {
  const int pid = readPid(text.substr(0, text.find_first_of("+=")), "video PID");
  return isStreamPid(pid) ? pid : 0;
}

std::vector<AudioTrack> readVdrAudio(std::string_view text) {
  std::vector<AudioTrack> tracks;
  appendTracks(tracks, cut(text, ';'), CODING_MPEG);
  appendTracks(tracks, text, CODING_AC3);
  return tracks;
}

std::vector<SubtitleTrack> readVdrSubtitles(std::string_view text) {
  cut(text, ';');
  std::vector<SubtitleTrack> tracks;
  while (!text.empty()) {
    const std::string_view piece = trimmed(cut(text, ','));
    if (piece.empty()) continue;
    const Stream stream = readStream(piece, "subtitle");
    if (!isStreamPid(stream.pid)) continue;
    for (const LanguageCode language : stream.languages) tracks.push_back({stream.pid, language, 0, true});
  }
  return tracks;
}

}  // namespace virtualtv::import
