// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/model/Set.h"

/// The tracks and favourite groups of a set: what its services and the ISP source have, what is in use, and how knobs
/// write them.
namespace model {

using virtualtv::AudioTrack;
using virtualtv::SubtitleTrack;

/// True when there is a track at a position, counted from 0. Such a track can be selected even if it can't be read.
template <typename Track>
bool has(const std::vector<Track>& tracks, std::int64_t position) {
  return position >= 0 && position < static_cast<std::int64_t>(tracks.size());
}

/// The track at a position; null when there is no track, or when it can't be read.
template <typename Track>
const Track* told(const std::vector<Track>& tracks, std::int64_t position) {
  if (!has(tracks, position)) return nullptr;
  const Track* const track = &tracks[static_cast<std::size_t>(position)];
  return track->readable ? track : nullptr;
}

// The selected tracks of the service on a window's screen. Functions that return false have changed nothing.

const AudioTrack* audioInUse(const Set& set, WindowId window);
const SubtitleTrack* subtitleInUse(const Set& set, WindowId window);
bool selectAudio(Set& set, WindowId window, std::int64_t position);
bool selectSubtitle(Set& set, WindowId window, std::int64_t position);

/// True when the secondary stack can be reached and shows the ISP source. Otherwise it reports nothing about its
/// tracks.
bool showsIspTracks(const Set& set);
bool selectIspAudio(Set& set, std::int64_t position);
/// The first track of a PID that can be read.
bool selectIspAudioByPid(Set& set, std::int64_t pid);
bool selectIspSubtitle(Set& set, std::int64_t position);

// Texts of knobs. Values must be valid.

/// The parts between separators, at least one.
std::vector<std::string> split(const std::string& text, char separator);
std::vector<AudioTrack> audioOf(const std::string& text);
std::vector<SubtitleTrack> subtitlesOf(const std::string& text);
/// Reads the subtitles of the ISP source, sorted by kind.
std::vector<SubtitleTrack> ispSubtitlesOf(const std::string& text);
std::map<std::uint8_t, bool> favouritesOf(const std::string& text);

}  // namespace model
