// SPDX-License-Identifier: MIT
// Writes lines of VDR's channels.conf. A field that still matches the set's data is written unchanged.

#include <algorithm>
#include <array>

#include "import/Streams.h"
#include "import/Words.h"
#include "import/Writing.h"

namespace virtualtv::import {

namespace {

enum VdrPlace : std::size_t {
  VDR_NAME,
  VDR_FREQUENCY,
  VDR_PARAMETERS,
  VDR_SOURCE,
  VDR_SYMBOL_RATE,
  VDR_VIDEO,
  VDR_AUDIO,
  VDR_TELETEXT,
  VDR_CONDITIONAL_ACCESS,
  VDR_SERVICE,
  VDR_NETWORK,
  VDR_STREAM,
  VDR_RADIO,
  VDR_FIELDS,
};

struct ModulationCode {
  Modulation modulation;
  int code;
};

constexpr std::array<ModulationCode, 16> modulationCodes{{
    {MODULATION_QPSK, 2},
    {MODULATION_QPSK_S2, 2},
    {MODULATION_PSK_8, 5},
    {MODULATION_APSK_16, 6},
    {MODULATION_APSK_32, 7},
    {MODULATION_VSB_8, 10},
    {MODULATION_VSB_16, 11},
    {MODULATION_DQPSK, 12},
    {MODULATION_QAM_16, 16},
    {MODULATION_QAM_32, 32},
    {MODULATION_QAM_64, 64},
    {MODULATION_QAM_128, 128},
    {MODULATION_QAM_256, 256},
    {MODULATION_QAM_512, 512},
    {MODULATION_QAM_1024, 1024},
    {MODULATION_QAM_4096, 4096},
}};

std::string modulationParameter(Modulation modulation) {
  for (const ModulationCode& one : modulationCodes) {
    if (one.modulation == modulation) return "M" + std::to_string(one.code);
  }
  return "";
}

/// The byte before a name that marks it as UTF-8. It is not part of the name.
constexpr char utf8Mark = '\x15';

/// Writes the name of a service or a group; | stands for a colon.
std::string vdrName(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), ':', '|');
  return text;
}

/// Writes a name so that it is read back unchanged. A comma at the end keeps earlier commas from starting a short name;
/// the mark in front keeps a # from starting a comment.
std::string nameField(std::string_view name) {
  std::string text = vdrName(name);
  if (text.find(',') != std::string::npos) text += ',';
  return (text.starts_with('#') ? std::string(1, utf8Mark) : "") + text;
}

std::string parameters(const Entry& entry) {
  std::string modulation = modulationParameter(entry.modulation);
  if (entry.antenna == ANTENNA_SATELLITE) {
    const bool first = entry.modulation == MODULATION_QPSK;
    return (entry.polarisation == 0 ? "" : std::string(1, entry.polarisation)) + modulation + (first ? "S0" : "S1");
  }
  if (entry.bandwidth == 0 || entry.antenna != ANTENNA_TERRESTRIAL) return modulation;
  return "B" + std::to_string(entry.bandwidth == 1712 ? 1712 : entry.bandwidth / 1000) + modulation;
}

std::string position(int source) {
  const bool west = source > 1800;
  const int tenths = west ? 3600 - source : source;
  return "S" + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + (west ? "W" : "E");
}

std::string sourceField(const Entry& entry) {
  if (entry.antenna == ANTENNA_SATELLITE) return position(entry.source.value_or(0));
  if (entry.raster == Raster::american) return "A";
  return entry.antenna == ANTENNA_CABLE ? "C" : "T";
}

std::string languageOf(LanguageCode language) {
  return language == 0 ? "" : "=" + nameOfLanguage(language);
}

bool isDolby(const AudioTrack& track) {
  return track.decodeType == CODING_AC3 || track.decodeType == CODING_EAC3;
}

/// The stream type of a coding; empty if the position implies it.
std::string streamType(const AudioTrack& track, bool behindSemicolon) {
  switch (track.decodeType) {
    case CODING_MPEG:
      return "";
    case CODING_AC3:
      return behindSemicolon ? "" : "@106";
    case CODING_EAC3:
      return "@122";
    case CODING_AAC:
      return "@15";
    default:
      return "@0";
  }
}

/// Dolby tracks at the end follow a semicolon.
std::string audioField(const std::vector<AudioTrack>& tracks) {
  const auto dolby = std::find_if_not(tracks.rbegin(), tracks.rend(), isDolby).base();
  std::string text;
  for (auto track = tracks.begin(); track != tracks.end(); ++track) {
    if (track == dolby) {
      text += text.empty() ? "0;" : ";";
    } else if (!text.empty()) {
      text += ',';
    }
    text += std::to_string(track->pid) + languageOf(track->lang) + streamType(*track, track >= dolby);
  }
  return text.empty() ? "0" : text;
}

std::string teletextField(const std::vector<SubtitleTrack>& tracks) {
  std::string text = "0";
  for (const SubtitleTrack& track : tracks) {
    if (track.type != KIND_DVB) continue;
    text += (text.size() == 1 ? ";" : ",") + std::to_string(track.pid) + languageOf(track.lang);
  }
  return text;
}

std::string placeName(std::size_t place) {
  return std::to_string(place);
}

Pieces vdrPieces(const Entry& entry) {
  Pieces pieces;
  const auto put = [&](VdrPlace place, std::string text) { pieces.emplace_back(placeName(place), std::move(text)); };
  const bool satellite = entry.antenna == ANTENNA_SATELLITE;
  const bool american = entry.raster == Raster::american;
  put(VDR_NAME, nameField(entry.name));
  put(VDR_FREQUENCY, std::to_string(satellite ? entry.frequency / 1000 : entry.frequency));
  put(VDR_PARAMETERS, parameters(entry));
  put(VDR_SOURCE, sourceField(entry));
  put(VDR_SYMBOL_RATE, std::to_string(american ? 0 : entry.symbolRate));
  put(VDR_VIDEO, std::to_string(entry.video));
  put(VDR_AUDIO, audioField(entry.audio));
  put(VDR_TELETEXT, teletextField(entry.subtitles));
  put(VDR_CONDITIONAL_ACCESS, "0");
  put(VDR_SERVICE, std::to_string(entry.program));
  if (!entry.network && !entry.transportStream) return pieces;  // lists of old versions have no such fields
  put(VDR_NETWORK, std::to_string(entry.network.value_or(0)));
  if (entry.transportStream) put(VDR_STREAM, std::to_string(*entry.transportStream));
  if (entry.transportStream) put(VDR_RADIO, "0");
  return pieces;
}

Pieces vdrFields(std::string_view line) {
  Pieces pieces;
  bool more = true;
  for (std::size_t place = 0; more && place < VDR_FIELDS; ++place) {
    more = line.find(':') != std::string_view::npos;
    pieces.emplace_back(placeName(place), cut(line, ':'));
  }
  return pieces;
}

/// Replaces the name, and keeps the short name and the provider.
std::string renamed(std::string_view name, std::string_view field) {
  const std::size_t provider = std::min(field.find(';'), field.size());
  const std::size_t comma = field.substr(0, provider).rfind(',');
  std::string text = vdrName(name);
  if (comma != std::string_view::npos) {
    text += field.substr(comma, provider - comma);
  } else if (text.find(',') != std::string::npos) {
    text += ',';
  }
  return (text.starts_with('#') ? std::string(1, utf8Mark) : "") + text.append(field.substr(provider));
}

std::string joined(const Pieces& pieces) {
  std::array<std::string, VDR_FIELDS> fields;
  std::size_t count = 0;
  fields.fill("0");
  for (const auto& [name, text] : pieces) {
    const auto place = static_cast<std::size_t>(std::stoul(name));
    fields.at(place) = text;
    count = std::max(count, place + 1);
  }
  std::string line;
  for (std::size_t place = 0; place < count; ++place) line += (place == 0 ? "" : ":") + fields.at(place);
  return line;
}

}  // namespace

std::string writeVdr(const Wanted& wanted) {
  Pieces now = vdrPieces(wanted.now);
  if (wanted.before == nullptr) return joined(now);
  const Pieces before = vdrPieces(*wanted.before);
  if (now == before) return std::string(wanted.kept);
  const Pieces kept = vdrFields(wanted.kept);
  if (now[VDR_NAME] != before[VDR_NAME]) now[VDR_NAME].second = renamed(wanted.now.name, kept[VDR_NAME].second);
  return joined(changed(kept, before, now));
}

std::string vdrGroup(std::string_view name, std::optional<std::uint64_t> number) {
  const std::string shown = vdrName(name);
  if (!number && !shown.starts_with('@')) return ":" + shown;
  return ":@" + std::to_string(number.value_or(0)) + (shown.empty() ? "" : " ") + shown;
}

}  // namespace virtualtv::import
