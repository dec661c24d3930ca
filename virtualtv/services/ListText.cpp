// SPDX-License-Identifier: MIT
#include "services/ListText.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

#include "text/Numbers.h"

namespace virtualtv {

namespace {

constexpr std::string_view noneAtAll = "none";
constexpr std::array<std::string_view, 5> codings{"unknown", "mpeg", "ac3", "eac3", "aac"};
constexpr std::array<std::string_view, 3> kinds{"dvb", "teletext", "teletext-subtitle"};

template <std::size_t size>
std::optional<int> placeOf(std::string_view name, const std::array<std::string_view, size>& names) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<int>(found - names.begin());
}

template <std::size_t size>
std::string nameOf(int place, const std::array<std::string_view, size>& names) {
  const bool named = place >= 0 && static_cast<std::size_t>(place) < size;
  return named ? std::string(names[static_cast<std::size_t>(place)]) : std::to_string(place);
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

// Writing.

template <typename List, typename Write>
std::string joined(const List& list, Write write) {
  std::string text;
  for (const auto& item : list) text += (text.empty() ? "" : ",") + write(item);
  return text.empty() ? std::string(noneAtAll) : text;
}

template <typename Track>
std::string frontOf(const Track& track) {
  return (track.readable ? "" : "!") + std::to_string(track.pid) + ":" + nameOfLanguage(track.lang) + ":";
}

// Reading.

/// Calls `take` with each comma-separated piece and its number, counted from 1.
template <typename Take>
void eachPiece(std::string_view text, Take take) {
  if (text == noneAtAll) return;
  for (std::size_t number = 1;; ++number) {
    const std::size_t comma = text.find(',');
    take(number, text.substr(0, comma));
    if (comma == text.npos) return;
    text.remove_prefix(comma + 1);
  }
}

/// One track of a text. Its parts are read from the front.
class Piece {
 public:
  Piece(std::size_t number, std::string_view text) : number_(number), text_(text), rest_(text) {
    readable_ = !text.starts_with('!');
    if (!readable_) rest_->remove_prefix(1);
  }

  bool readable() const { return readable_; }

  /// Reads the next part, if there is one.
  /// @param wanted  the expected part, for the error message.
  /// @param read  returns nothing for an invalid text.
  template <typename Read>
  void next(int& value, const std::string& wanted, Read read) {
    if (!rest_) return;
    const std::size_t colon = rest_->find(':');
    const std::string_view part = rest_->substr(0, colon);
    const std::optional<int> known = read(part);
    if (!known) refuse(wanted, part);
    value = *known;
    if (colon == rest_->npos) {
      rest_.reset();
    } else {
      rest_->remove_prefix(colon + 1);
    }
  }

  void end(const std::string& form) const {
    if (rest_) refuse("nothing behind " + form, *rest_);
  }

 private:
  [[noreturn]] void refuse(const std::string& wanted, std::string_view part) const {
    throw std::invalid_argument("track " + std::to_string(number_) + ", " + quoted(text_) + ": " + wanted +
                                " is wanted, not " + quoted(part));
  }

  std::size_t number_;
  std::string_view text_;
  std::optional<std::string_view> rest_;
  bool readable_;
};

/// Which tracks a reader takes: those of a service, those of the secondary TV stack, or all that `textOf` writes.
enum class Accept { service, isp, all };

std::optional<int> readPid(std::string_view text, Accept accept) {
  const auto pid = text::numberIn<int>(text);
  const bool isPid = pid && *pid >= 0 && *pid <= std::numeric_limits<std::uint16_t>::max();
  return isPid || accept == Accept::all ? pid : std::nullopt;
}

std::optional<int> readKind(std::string_view text, Accept accept) {
  const auto kind = subtitleKindNamed(text);
  if (accept == Accept::all) return kind ? kind : text::numberIn<int>(text);
  return accept == Accept::service && kind == KIND_TELETEXT_SUBTITLE ? std::nullopt : kind;
}

const char* kindsOf(Accept accept) {
  return accept == Accept::service ? "a kind (dvb or teletext)" : "a kind (dvb, teletext or teletext-subtitle)";
}

std::optional<int> readLanguage(std::string_view text) {
  const auto named = languageNamed(text);
  return named ? named : text::numberIn<int>(text);
}

std::optional<int> readCoding(std::string_view text) {
  const auto named = codingNamed(text);
  return named ? named : text::numberIn<int>(text);
}

std::string anyNumber() {
  return text::describe(text::rangeOf<int>());
}

template <typename Track>
void readFront(Piece& piece, Accept accept, Track& track) {
  track.readable = piece.readable();
  piece.next(track.pid, "a PID from 0 to 65535", [=](std::string_view text) { return readPid(text, accept); });
  piece.next(track.lang, "a language (three letters, und or " + anyNumber() + ")", readLanguage);
}

AudioTrack readTrack(Piece piece, Accept accept, AudioTrack track) {
  readFront(piece, accept, track);
  piece.next(track.decodeType, "a coding (unknown, mpeg, ac3, eac3, aac or " + anyNumber() + ")", readCoding);
  piece.next(track.audioMode, anyNumber() + " as mode", text::numberIn<int>);
  piece.next(track.audioType, anyNumber() + " as type", text::numberIn<int>);
  piece.end("PID:LANG:CODING:MODE:TYPE");
  return track;
}

SubtitleTrack readTrack(Piece piece, Accept accept, SubtitleTrack track) {
  readFront(piece, accept, track);
  piece.next(track.type, kindsOf(accept), [=](std::string_view text) { return readKind(text, accept); });
  piece.end("PID:LANG:KIND");
  return track;
}

template <typename Track>
std::vector<Track> readTracks(std::string_view text, Accept accept) {
  std::vector<Track> tracks;
  eachPiece(text, [&](std::size_t number, std::string_view piece) {
    tracks.push_back(readTrack(Piece(number, piece), accept, Track()));
  });
  return tracks;
}

[[noreturn]] void refuseGroup(std::size_t number, std::string_view piece, const std::string& reason) {
  throw std::invalid_argument("favourite " + std::to_string(number) + ", " + quoted(piece) + ": " + reason);
}

}  // namespace

std::optional<int> codingNamed(std::string_view name) {
  return placeOf(name, codings);
}
std::string nameOfCoding(int coding) {
  return nameOf(coding, codings);
}
std::optional<int> subtitleKindNamed(std::string_view name) {
  return placeOf(name, kinds);
}
std::string nameOfSubtitleKind(int kind) {
  return nameOf(kind, kinds);
}

std::string textOf(const std::vector<AudioTrack>& tracks) {
  return joined(tracks, [](const AudioTrack& track) {
    return frontOf(track) + nameOfCoding(track.decodeType) + ":" + std::to_string(track.audioMode) + ":" +
           std::to_string(track.audioType);
  });
}

std::vector<AudioTrack> readAudioTracks(std::string_view text) {
  return readTracks<AudioTrack>(text, Accept::service);
}
std::vector<AudioTrack> readAllAudioTracks(std::string_view text) {
  return readTracks<AudioTrack>(text, Accept::all);
}

std::string textOf(const std::vector<SubtitleTrack>& tracks) {
  return joined(tracks, [](const SubtitleTrack& track) { return frontOf(track) + nameOfSubtitleKind(track.type); });
}

std::vector<SubtitleTrack> readSubtitleTracks(std::string_view text) {
  return readTracks<SubtitleTrack>(text, Accept::service);
}
std::vector<SubtitleTrack> readIspSubtitles(std::string_view text) {
  auto tracks = readTracks<SubtitleTrack>(text, Accept::isp);
  orderByKind(tracks);
  return tracks;
}
std::vector<SubtitleTrack> readAllSubtitleTracks(std::string_view text) {
  return readTracks<SubtitleTrack>(text, Accept::all);
}

std::string textOf(const std::map<std::uint8_t, bool>& favourites) {
  return joined(favourites, [](const auto& favourite) {
    return std::to_string(favourite.first) + (favourite.second ? "=1" : "=0");
  });
}

std::map<std::uint8_t, bool> readFavourites(std::string_view text) {
  std::map<std::uint8_t, bool> favourites;
  eachPiece(text, [&](std::size_t number, std::string_view piece) {
    const std::size_t sign = piece.find('=');
    const auto group = text::numberIn<std::uint8_t>(piece.substr(0, sign));
    const std::string_view member = sign == piece.npos ? std::string_view() : piece.substr(sign + 1);
    if (!group || (member != "0" && member != "1")) {
      refuseGroup(number, piece, "a group from 0 to 255 with =1 or =0 behind it is wanted");
    }
    if (!favourites.emplace(*group, member == "1").second) {
      refuseGroup(number, piece, "the group stands there already");
    }
  });
  return favourites;
}

void orderByKind(std::vector<SubtitleTrack>& tracks) {
  std::stable_sort(tracks.begin(), tracks.end(),
                   [](const SubtitleTrack& a, const SubtitleTrack& b) { return a.type < b.type; });
}

}  // namespace virtualtv
