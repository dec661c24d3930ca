// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/Service.h"

// Formats and parses the lists of a service (tracks, favourites) for people: entries separated by commas, or `none`.
// Reading a written text gives the same list. Reading throws std::invalid_argument with a line that says which piece of
// the text is wrong and what is expected there.

namespace virtualtv {

/// The audio coding with this name: unknown, mpeg, ac3, eac3 or aac. Returns nothing for any other name.
std::optional<int> codingNamed(std::string_view name);
/// The name of a coding as `codingNamed` reads it, or its number when it has no name.
std::string nameOfCoding(int coding);

/// The subtitle kind with this name: dvb, teletext or teletext-subtitle. Returns nothing for any other name.
std::optional<int> subtitleKindNamed(std::string_view name);
/// The name of a kind as `subtitleKindNamed` reads it, or its number when it has no name.
std::string nameOfSubtitleKind(int kind);

/// Audio tracks as PID:LANG:CODING:MODE:TYPE, with `!` before a track that can't be read:
/// `256:eng:aac:2:0,!257:deu:ac3:4:0`. A text may leave out trailing parts: a missing language or coding is unknown, a
/// missing number is 0. A language is three letters, `und` or a number. A coding is a name or a number.
std::string textOf(const std::vector<AudioTrack>& tracks);
std::vector<AudioTrack> readAudioTracks(std::string_view text);
/// Reads all that `textOf` writes, also PIDs that no stream has.
std::vector<AudioTrack> readAllAudioTracks(std::string_view text);

/// Subtitles as PID:LANG:KIND. A missing kind is `dvb`.
std::string textOf(const std::vector<SubtitleTrack>& tracks);
/// Reads the subtitles of a service, which are DVB subtitles or teletext.
std::vector<SubtitleTrack> readSubtitleTracks(std::string_view text);
/// Reads the subtitles of the secondary TV stack, which may also be teletext subtitle pages. Sorts them by kind.
std::vector<SubtitleTrack> readIspSubtitles(std::string_view text);
/// Reads all that `textOf` writes, also PIDs that no stream has and numbers of kinds without a name.
std::vector<SubtitleTrack> readAllSubtitleTracks(std::string_view text);

/// Favourite groups, 0 to 255, as GROUP=1 where the service is a member and GROUP=0 where it is not: `1=1,12=0`.
std::string textOf(const std::map<std::uint8_t, bool>& favourites);
std::map<std::uint8_t, bool> readFavourites(std::string_view text);

/// Sorts subtitles by kind, the order in which the secondary TV stack counts them. The sort is stable.
void orderByKind(std::vector<SubtitleTrack>& tracks);

}  // namespace virtualtv
