#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/Service.h"

// The lists that a service has beside its fields as texts that a person reads and writes, with commas between, or
// `none`. What is written is read again as it was. Reading throws std::invalid_argument with a line that says which
// piece of the text is wrong, and what is wanted there.

namespace virtualtv {

/// The coding of that name: unknown, mpeg, ac3, eac3 or aac; nothing where there is none.
std::optional<int> codingNamed(std::string_view name);
/// What `codingNamed` reads; a number for a coding without a name.
std::string nameOfCoding(int coding);

/// The kind of subtitles of that name: dvb, teletext or teletext-subtitle; nothing where there is none.
std::optional<int> subtitleKindNamed(std::string_view name);
/// What `subtitleKindNamed` reads; a number for a kind without a name.
std::string nameOfSubtitleKind(int kind);

/// Audio tracks as PID:LANG:CODING:MODE:TYPE, with `!` before a track that can't be read:
/// `256:eng:aac:2:0,!257:deu:ac3:4:0`. When reading, later parts may be left out: the language and the coding are
/// unknown then, the rest is 0. A language is three letters, `und` or a number, a coding a name or a number.
std::string textOf(const std::vector<AudioTrack>& tracks);
std::vector<AudioTrack> readAudioTracks(std::string_view text);
/// Reads all that `textOf` writes, also PIDs that no stream has.
std::vector<AudioTrack> readAllAudioTracks(std::string_view text);

/// Subtitles as PID:LANG:KIND; where the kind is left out it is `dvb`.
std::string textOf(const std::vector<SubtitleTrack>& tracks);
/// Those of a service, which are DVB subtitles and teletext.
std::vector<SubtitleTrack> readSubtitleTracks(std::string_view text);
/// Those of the secondary TV stack, which has teletext subtitle pages beside. They are put in the order of kinds.
std::vector<SubtitleTrack> readIspSubtitles(std::string_view text);
/// Reads all that `textOf` writes, also PIDs that no stream has and numbers of kinds without a name.
std::vector<SubtitleTrack> readAllSubtitleTracks(std::string_view text);

/// Favourite groups, 0 to 255, as GROUP=1 where the service is a member and GROUP=0 where it is not: `1=1,12=0`.
std::string textOf(const std::map<std::uint8_t, bool>& favourites);
std::map<std::uint8_t, bool> readFavourites(std::string_view text);

/// Puts subtitles in the order of their kinds, as the secondary TV stack counts them; within a kind they stay.
void orderByKind(std::vector<SubtitleTrack>& tracks);

}  // namespace virtualtv
