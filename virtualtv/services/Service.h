#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "services/Language.h"
#include "tvservice/TCServiceData.h"

namespace virtualtv {

/// Field ids that only this set knows, beyond those of `TCServiceData`. Navigation criteria use them.
enum ServiceField : int {
  HIDDEN = 1001,        ///< non-zero: left out of every list, reached by number or id only
  SERVICE_MODE = 1002,  ///< the operator's list that the service belongs to, 0 for none
  // The picture, where it is not what the channel type usually has.
  PICTURE_WIDTH = 1003,
  PICTURE_HEIGHT = 1004,
  FRAME_RATE = 1005,
  PICTURE_SHAPE = 1006,  ///< 0 is 16:9, 1 is 4:3
  ACTIVE_FORMAT = 1007,  ///< the broadcaster's format description, 4 bits
};

struct AudioTrack {
  int pid = 0;
  LanguageCode lang = 0;
  int decodeType = 0;  ///< how it is coded, see `AudioCoding`
  int audioMode = 0;
  int audioType = 0;     ///< ISO 639 audio type: 0 undefined, 1 clean effects, 2 hearing impaired, 3 visual impaired
  bool readable = true;  ///< false: the set counts the track but can't read it

  bool operator==(const AudioTrack&) const = default;
};

/// Values of `AudioTrack::decodeType`.
enum AudioCoding : int { CODING_UNKNOWN = 0, CODING_MPEG = 1, CODING_AC3 = 2, CODING_EAC3 = 3, CODING_AAC = 4 };

struct SubtitleTrack {
  int pid = 0;
  LanguageCode lang = 0;
  int type = 0;  ///< see `SubtitleKind`
  bool readable = true;

  bool operator==(const SubtitleTrack&) const = default;
};

/// Values of `SubtitleTrack::type`. Services have no teletext subtitle pages, the secondary TV stack may have all.
enum SubtitleKind : int { KIND_DVB = 0, KIND_TELETEXT = 1, KIND_TELETEXT_SUBTITLE = 2 };

/// The track at a position, counted from 0; null where there is none, or one that can't be read.
template <typename Track>
const Track* readableAt(const std::vector<Track>& tracks, std::int64_t position) {
  if (position < 0 || std::cmp_greater_equal(position, tracks.size())) return nullptr;
  const Track& track = tracks[static_cast<std::size_t>(position)];
  return track.readable ? &track : nullptr;
}

/// A service in the service database, which counts its keys from 1; 0 for none. A key stays that of its service, and is
/// given to no other, until all services are replaced.
using ServiceKey = std::int64_t;

/// A field of a service: nothing, a number (negative ones as two's complement), or a text of 16-bit units.
using FieldValue = std::variant<std::monostate, std::uint64_t, std::u16string>;

/// A recording of a broadcast that has a service.
struct Footage {
  std::string path;        ///< of the file, absolute or beneath the directory that clients of a server have; any bytes
  int video = 0;           ///< PID of the picture
  int type = 0;            ///< its stream type in the program map, see `streamOfH264`
  bool isTrusted = false;  ///< the one who runs the program named the file, rather than a client or a document

  bool operator==(const Footage&) const = default;
};

/// The stream type of pictures that browsers play as they are.
inline constexpr int streamOfH264 = 0x1B;

/// One service as the set keeps it. A field that is in neither map is absent. Plain data.
struct Service {
  std::map<int, std::uint64_t> numbers;  ///< by field id; negative numbers as two's complement
  std::map<int, std::u16string> texts;   ///< by field id, 16-bit units in host order, any values
  std::string group;                     ///< name of the list section that it was found in, UTF-8
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  std::map<std::uint8_t, bool> favourites;  ///< favourite group and membership
  /// What the channel list said that brought it, for what the set has no field for: the name of the list's format, a
  /// line break, and a list with this service alone. Any bytes; empty where no list brought it.
  std::string listEntry;
  std::optional<Footage> footage;  ///< what plays while it is on screen

  bool operator==(const Service&) const = default;
};

/// What became of the services of a set when those of a list were taken in.
struct ServiceChanges {
  std::size_t added = 0;
  std::size_t changed = 0;  ///< the list tells something else of them than before
  std::size_t gone = 0;
  std::size_t moved = 0;  ///< what they were, under another key

  bool operator==(const ServiceChanges&) const = default;
};

}  // namespace virtualtv
