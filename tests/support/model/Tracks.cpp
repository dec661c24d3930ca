// SPDX-License-Identifier: MIT
#include "support/model/Tracks.h"

#include <algorithm>
#include <cctype>

namespace model {

namespace {

using Words = std::vector<std::string>;

template <typename Track>
bool select(const std::vector<Track>& tracks, std::int64_t position, int& inUse) {
  if (!has(tracks, position)) return false;
  inUse = static_cast<int>(position);
  return true;
}

// Texts.

/// The pieces between the commas. The text `none` has no pieces.
Words piecesOf(const std::string& text) {
  return text == "none" ? Words() : split(text, ',');
}

/// A part of a track, given as a name or a number; 0 if it is missing.
int coded(const Words& parts, std::size_t index, const std::map<std::string, int>& names) {
  if (index >= parts.size()) return 0;
  const auto named = names.find(parts[index]);
  return named == names.end() ? std::stoi(parts[index]) : named->second;
}

int languageOf(const Words& parts) {
  if (parts.size() < 2 || parts[1] == "und") return 0;
  if (std::isalpha(static_cast<unsigned char>(parts[1].front())) == 0) return std::stoi(parts[1]);
  int code = 0;
  for (const char letter : parts[1]) code = code * 256 + letter;
  return code;
}

/// The parts of a track. @param readable  set to false when the text starts with the mark `!`.
Words trackParts(const std::string& piece, bool& readable) {
  readable = piece.front() != '!';
  return split(readable ? piece : piece.substr(1), ':');
}

}  // namespace

const AudioTrack* audioInUse(const Set& set, WindowId window) {
  const Service* const service = at(set, set.state[window].service);
  return service == nullptr ? nullptr : told(service->audio, set.state[window].inUse.audio);
}

const SubtitleTrack* subtitleInUse(const Set& set, WindowId window) {
  const Service* const service = at(set, set.state[window].service);
  return service == nullptr ? nullptr : told(service->subtitles, set.state[window].inUse.subtitle);
}

bool selectAudio(Set& set, WindowId window, std::int64_t position) {
  const Service* const service = at(set, set.state[window].service);
  return service != nullptr && select(service->audio, position, set.state[window].inUse.audio);
}

bool selectSubtitle(Set& set, WindowId window, std::int64_t position) {
  const Service* const service = at(set, set.state[window].service);
  return service != nullptr && select(service->subtitles, position, set.state[window].inUse.subtitle);
}

bool showsIspTracks(const Set& set) {
  return set.state.isp.present && set.state.isp.shown;
}

bool selectIspAudio(Set& set, std::int64_t position) {
  return showsIspTracks(set) && select(set.state.isp.audio, position, set.state.isp.inUse.audio);
}

bool selectIspAudioByPid(Set& set, std::int64_t pid) {
  const std::vector<AudioTrack>& tracks = set.state.isp.audio;
  const auto found = std::find_if(tracks.begin(), tracks.end(),
                                  [=](const AudioTrack& track) { return track.readable && track.pid == pid; });
  return found != tracks.end() && selectIspAudio(set, found - tracks.begin());
}

bool selectIspSubtitle(Set& set, std::int64_t position) {
  return showsIspTracks(set) && select(set.state.isp.subtitles, position, set.state.isp.inUse.subtitle);
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::vector<AudioTrack> audioOf(const std::string& text) {
  std::vector<AudioTrack> tracks;
  for (const std::string& piece : piecesOf(text)) {
    AudioTrack track;
    const Words parts = trackParts(piece, track.readable);
    track.pid = std::stoi(parts[0]);
    track.lang = languageOf(parts);
    track.decodeType = coded(parts, 2, {{"unknown", 0}, {"mpeg", 1}, {"ac3", 2}, {"eac3", 3}, {"aac", 4}});
    track.audioMode = coded(parts, 3, {});
    track.audioType = coded(parts, 4, {});
    tracks.push_back(track);
  }
  return tracks;
}

std::vector<SubtitleTrack> subtitlesOf(const std::string& text) {
  std::vector<SubtitleTrack> tracks;
  for (const std::string& piece : piecesOf(text)) {
    SubtitleTrack track;
    const Words parts = trackParts(piece, track.readable);
    track.pid = std::stoi(parts[0]);
    track.lang = languageOf(parts);
    track.type = coded(parts, 2, {{"dvb", 0}, {"teletext", 1}, {"teletext-subtitle", 2}});
    tracks.push_back(track);
  }
  return tracks;
}

std::vector<SubtitleTrack> ispSubtitlesOf(const std::string& text) {
  std::vector<SubtitleTrack> tracks = subtitlesOf(text);
  std::stable_sort(tracks.begin(), tracks.end(),
                   [](const SubtitleTrack& a, const SubtitleTrack& b) { return a.type < b.type; });
  return tracks;
}

std::map<std::uint8_t, bool> favouritesOf(const std::string& text) {
  std::map<std::uint8_t, bool> groups;
  for (const std::string& piece : piecesOf(text)) {
    const Words parts = split(piece, '=');
    groups[static_cast<std::uint8_t>(std::stoi(parts.at(0)))] = parts.at(1) == "1";
  }
  return groups;
}

}  // namespace model
