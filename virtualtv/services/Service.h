// SPDX-License-Identifier: MIT
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
  HIDDEN = 1001,        ///< non-zero: the service appears in no list, and is reached by number or id only
  SERVICE_MODE = 1002,  ///< the operator's list that contains the service, 0 for none
  // The picture format, where it differs from the default of the channel type.
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

/// Values of `SubtitleTrack::type`. Services have no teletext subtitle pages. The secondary TV stack may have all three
/// kinds.
enum SubtitleKind : int { KIND_DVB = 0, KIND_TELETEXT = 1, KIND_TELETEXT_SUBTITLE = 2 };

/// The track at a position, counted from 0. Null when there is no track, or when it can't be read.
template <typename Track>
const Track* readableAt(const std::vector<Track>& tracks, std::int64_t position) {
  if (position < 0 || std::cmp_greater_equal(position, tracks.size())) return nullptr;
  const Track& track = tracks[static_cast<std::size_t>(position)];
  return track.readable ? &track : nullptr;
}

/// The key of a service in the service database. Keys start at 1; 0 means no service. A key belongs to the same service
/// until all services are replaced. The key of a removed service is reused only once the greatest key was assigned.
using ServiceKey = std::int64_t;

/// The value of a service field: absent, a number (a negative one as its two's complement), or a text of 16-bit units.
using FieldValue = std::variant<std::monostate, std::uint64_t, std::u16string>;

/// The recording of a broadcast from which a service plays.
struct Footage {
  std::string path;        ///< any bytes; absolute, or relative to the directory that clients of a server can use
  int video = 0;           ///< PID of the video stream
  int type = 0;            ///< stream type of the video in the program map, see `streamOfH264`
  bool isTrusted = false;  ///< the path comes from the user who runs the program, not from a client or a document

  bool operator==(const Footage&) const = default;
};

/// The stream type of H.264 video, which browsers play without transcoding.
inline constexpr int streamOfH264 = 0x1B;

/// One service as the set stores it. A field in neither map is absent. Plain data.
struct Service {
  std::map<int, std::uint64_t> numbers;  ///< by field id; negative numbers as two's complement
  std::map<int, std::u16string> texts;   ///< by field id, 16-bit units in host order, any values
  std::string group;                     ///< name of the section of the channel list that contained it, UTF-8
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  std::map<std::uint8_t, bool> favourites;  ///< favourite group and membership
  /// The service's entry in the channel list it was imported from, to preserve what the set has no field for. It is the
  /// name of the list's format, a line break, and a list with this service alone. It may hold any bytes, and is empty
  /// when the service came from no list.
  std::string listEntry;
  std::optional<Footage> footage;  ///< the recording that plays while the service is on screen

  bool operator==(const Service&) const = default;
};

/// How an import changed the services of a set.
struct ServiceChanges {
  std::size_t added = 0;
  std::size_t changed = 0;  ///< services whose data differs from before
  std::size_t gone = 0;
  std::size_t moved = 0;  ///< services with the same data under another key

  bool operator==(const ServiceChanges&) const = default;
};

}  // namespace virtualtv
