// SPDX-License-Identifier: MIT
// Writes sections of libdvbv5 channel files. A line whose value has not changed is written as it was read.

#include <algorithm>
#include <array>
#include <string>

#include "import/Dvbv5Values.h"
#include "import/LineReader.h"
#include "import/Words.h"
#include "import/Writing.h"

namespace virtualtv::import {

namespace {

constexpr const char* headPiece = "[";
constexpr const char* audioPiece = "audio";
constexpr const char* videoPiece = "video";

struct WrittenModulation {
  Modulation modulation;
  const char* name;
};

constexpr std::array<WrittenModulation, 19> writtenModulations{{
    {MODULATION_UNKNOWN, "QAM/AUTO"},  {MODULATION_QAM_16, "QAM/16"},   {MODULATION_QAM_32, "QAM/32"},
    {MODULATION_QAM_64, "QAM/64"},     {MODULATION_QAM_128, "QAM/128"}, {MODULATION_QAM_256, "QAM/256"},
    {MODULATION_QAM_512, "QAM/512"},   {MODULATION_QPSK, "QPSK"},       {MODULATION_QAM_1024, "QAM/1024"},
    {MODULATION_QAM_4096, "QAM/4096"}, {MODULATION_VSB_8, "VSB/8"},     {MODULATION_VSB_16, "VSB/16"},
    {MODULATION_DQPSK, "DQPSK"},       {MODULATION_APSK_16, "APSK/16"}, {MODULATION_APSK_32, "APSK/32"},
    {MODULATION_QAM_4_NR, "QAM/4_NR"}, {MODULATION_PSK_8, "PSK/8"},     {MODULATION_APSK_64, "APSK/64"},
    {MODULATION_QPSK_S2, "QPSK"},
}};

const char* modulationName(Modulation modulation) {
  for (const WrittenModulation& one : writtenModulations) {
    if (one.modulation == modulation) return one.name;
  }
  return "QAM/AUTO";
}

const char* systemOf(const Entry& entry) {
  if (entry.raster == Raster::american) return "ATSC";
  if (entry.antenna == ANTENNA_TERRESTRIAL) return "DVBT";
  if (entry.antenna == ANTENNA_CABLE) return "DVBC/ANNEX_A";
  return entry.modulation == MODULATION_QPSK ? "DVBS" : "DVBS2";
}

const char* polarisationName(char polarisation) {
  constexpr std::array names{"HORIZONTAL", "VERTICAL", "LEFT", "RIGHT"};
  for (const char* name : names) {
    if (*name == polarisation) return name;
  }
  return "OFF";
}

const char* audioKey(int coding) {
  switch (coding) {
    case CODING_MPEG:
      return "PID_03";
    case CODING_AC3:
      return "AC3_PID";
    case CODING_EAC3:
      return "EAC3_PID";
    case CODING_AAC:
      return "PID_0F";
    default:
      return "AUDIO_PID";
  }
}

std::string line(std::string_view key, std::string_view value) {
  return "\t" + std::string(key) + " = " + std::string(value);
}

/// Consecutive tracks of one coding share a line.
std::string audioLines(const std::vector<AudioTrack>& tracks) {
  std::string text;
  const char* before = "";
  for (const AudioTrack& track : tracks) {
    const char* const key = audioKey(track.decodeType);
    const std::string pid = std::to_string(track.pid);
    if (std::string_view(key) == before) {
      text += " " + pid;
    } else {
      text += (text.empty() ? "" : "\n") + line(key, pid);
    }
    before = key;
  }
  return text;
}

Pieces dvbv5Pieces(const Entry& entry) {
  Pieces pieces;
  const bool satellite = entry.antenna == ANTENNA_SATELLITE;
  const auto put = [&](const char* key, const auto& value) {
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(value)>>) {
      pieces.emplace_back(key, line(key, std::to_string(value)));
    } else {
      pieces.emplace_back(key, line(key, value));
    }
  };
  pieces.emplace_back(headPiece, "[" + std::string(entry.name) + "]");
  put("SERVICE_ID", entry.program);
  if (entry.network) put("NETWORK_ID", *entry.network);
  if (entry.transportStream) put("TRANSPORT_ID", *entry.transportStream);
  if (entry.video != 0) pieces.emplace_back(videoPiece, line("VIDEO_PID", std::to_string(entry.video)));
  if (!entry.audio.empty()) pieces.emplace_back(audioPiece, audioLines(entry.audio));
  put("DELIVERY_SYSTEM", systemOf(entry));
  put("FREQUENCY", std::int64_t{entry.frequency} * (satellite ? 1 : 1000));
  put("MODULATION", modulationName(entry.modulation));
  if (entry.antenna == ANTENNA_TERRESTRIAL && entry.bandwidth != 0)
    put("BANDWIDTH_HZ", std::int64_t{entry.bandwidth} * 1000);
  if (entry.antenna != ANTENNA_TERRESTRIAL && entry.symbolRate != 0)
    put("SYMBOL_RATE", std::int64_t{entry.symbolRate} * 1000);
  if (satellite && entry.polarisation != 0) put("POLARIZATION", polarisationName(entry.polarisation));
  if (satellite && entry.source) put("SAT_NUMBER", *entry.source);
  return pieces;
}

/// The name of the piece that a line belongs to: the head, the streams of one kind, or the key in capitals.
std::string pieceOf(std::string_view text) {
  if (text.starts_with('[')) return headPiece;
  std::string key(trimmed(cut(text, '=')));
  for (char& letter : key) letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  if (key == "CHANNEL") return headPiece;  // the key also holds the name
  if (const auto streams = dvbv5Streams(key)) return streams->video ? videoPiece : audioPiece;
  return key;
}

}  // namespace

std::string writeDvbv5(const Wanted& wanted) {
  Pieces pieces = dvbv5Pieces(wanted.now);
  if (wanted.before != nullptr) {
    const Pieces before = dvbv5Pieces(*wanted.before);
    Pieces kept;
    for (LineReader lines(wanted.kept); lines.next();) kept.emplace_back(pieceOf(trimmed(lines.line())), lines.line());
    pieces = changed(kept, before, pieces);
  }
  std::string text;
  for (const auto& [name, lines] : pieces) {
    const bool indented = name == headPiece || lines.starts_with('\t');
    text.append(text.empty() ? "" : "\n").append(indented ? "" : "\t").append(lines);
  }
  return text;
}

}  // namespace virtualtv::import
