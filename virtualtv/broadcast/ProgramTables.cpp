// SPDX-License-Identifier: MIT
// The tables that list the programs of a stream, and the streams of a program.
#include <tuple>

#include "broadcast/Tables.h"
#include "import/Streams.h"
#include "services/Language.h"

namespace virtualtv::broadcast {

namespace {

enum ProgramTag : unsigned {
  REGISTRATION = 0x05,
  CONDITIONAL_ACCESS = 0x09,
  LANGUAGE = 0x0A,
  TELETEXT = 0x56,
  SUBTITLING = 0x59,
  AC3 = 0x6A,
  ENHANCED_AC3 = 0x7A,
  DTS = 0x7B,
  EXTENSION = 0x7F,
};

enum StreamType : int { PRIVATE_PES = 0x06, ATSC_AC3 = 0x81, ATSC_ENHANCED_AC3 = 0x87 };

/// Values of `AudioTrack::audioType` that come from descriptors other than the language descriptor.
enum AudioType : int { FOR_HEARING_IMPAIRED = 2, FOR_VISUALLY_IMPAIRED = 3 };

/// A language of an audio stream, and its audience.
struct Voice {
  LanguageCode language = 0;
  int type = 0;
};

LanguageCode readLanguage(Bits& bits) {
  return languageNamed(textOf(bits.take(3))).value_or(0);
}

/// One stream of a program map while its descriptors are read.
class Stream {
 public:
  Stream(int type, int pid, ProgramMap& map) : pid_(pid), map_(map), coding_(import::audioCoding(type)) {
    isAudio_ = coding_ != CODING_UNKNOWN;
    if (import::isVideoType(type)) {
      if (!map.hasPicture) std::tie(map.video, map.videoType) = std::tie(pid, type);
      map.hasPicture = true;
    }
    // The stream type of private data means nothing; only its descriptors count.
    if (type == PRIVATE_PES) isAudio_ = false;
  }

  void take(const Descriptor& descriptor) {
    Bits bits(descriptor.body);
    switch (descriptor.tag) {
      case REGISTRATION:
        return takeRegistration(bits);
      case CONDITIONAL_ACCESS:
        map_.isProtected = true;
        return;
      case LANGUAGE:
        while (bits.left() >= 4) voices_.push_back({readLanguage(bits), bits.number(8)});
        return;
      case TELETEXT:
        return takeTeletext(bits);
      case SUBTITLING:
        return takeSubtitles(bits);
      case EXTENSION:
        return takeExtension(bits);
      case DTS:
        isAudio_ = true;
        return;
      default:
        return takeCoding(descriptor.tag, bits);
    }
  }

  void finish() {
    if (!isAudio_) return;
    if (voices_.empty()) voices_.push_back({language_.value_or(0), 0});
    for (const Voice& voice : voices_) {
      if (isFull(map_.audio.size())) return;
      AudioTrack& track = map_.audio.emplace_back();
      track.pid = pid_;
      track.lang = voice.language;
      track.decodeType = coding_;
      track.audioType = voice.type != 0 ? voice.type : type_;
    }
  }

 private:
  /// A descriptor of a coding means that a private stream is audio.
  void takeCoding(unsigned tag, Bits bits) {
    constexpr unsigned aac = 0x7C;
    if (tag != AC3 && tag != ENHANCED_AC3 && tag != aac) return;
    isAudio_ = true;
    coding_ = import::audioCoding(static_cast<int>(tag));
    if (tag == aac) return;
    const bool tellsComponent = bits.get(1) != 0;
    bits.skip(7);
    if (!tellsComponent) return;
    bits.skip(2);
    const unsigned service = bits.get(3);
    if (service == 2) type_ = FOR_VISUALLY_IMPAIRED;
    if (service == 3) type_ = FOR_HEARING_IMPAIRED;
  }

  void takeRegistration(Bits bits) {
    const std::string name = textOf(bits.take(4));
    if (name == "AC-3") coding_ = CODING_AC3;
    if (name == "EAC3") coding_ = CODING_EAC3;
    isAudio_ |= name == "AC-3" || name == "EAC3" || name == "DTS1" || name == "DTS2" || name == "DTS3";
  }

  /// A descriptor of supplementary audio may mark tracks for the visually or hearing impaired.
  void takeExtension(Bits bits) {
    constexpr unsigned supplementary = 0x06;
    if (bits.get(8) != supplementary) return;
    bits.skip(1);
    const unsigned purpose = bits.get(5);
    bits.skip(1);
    const bool tellsLanguage = bits.get(1) != 0;
    if (purpose == 1) type_ = FOR_VISUALLY_IMPAIRED;
    if (purpose == 2) type_ = FOR_HEARING_IMPAIRED;
    if (tellsLanguage && bits.left() >= 3) language_ = readLanguage(bits);
  }

  void takeTeletext(Bits bits) {
    constexpr unsigned subtitles = 2;
    constexpr unsigned subtitlesForHearingImpaired = 5;
    while (bits.left() >= 5) {
      const LanguageCode language = readLanguage(bits);
      const unsigned kind = bits.get(5);
      bits.skip(11);
      if (kind == subtitles || kind == subtitlesForHearingImpaired) addSubtitles(language, KIND_TELETEXT);
    }
  }

  void takeSubtitles(Bits bits) {
    while (bits.left() >= 8) {
      addSubtitles(readLanguage(bits), KIND_DVB);
      bits.take(5);
    }
  }

  bool isFull(std::size_t tracks) {
    if (tracks < ProgramMap::mostTracks) return false;
    map_.isWhole = false;
    return true;
  }

  void addSubtitles(LanguageCode language, SubtitleKind kind) {
    if (isFull(map_.subtitles.size())) return;
    SubtitleTrack& track = map_.subtitles.emplace_back();
    track.pid = pid_;
    track.lang = language;
    track.type = kind;
  }

  int pid_;
  ProgramMap& map_;
  AudioCoding coding_;
  bool isAudio_;
  int type_ = 0;
  std::optional<LanguageCode> language_;  ///< from a descriptor other than the language descriptor
  std::vector<Voice> voices_;
};

}  // namespace

Programs readPrograms(const Section& section) {
  Programs programs;
  Bits bits(section.body);
  while (bits.left() >= 4) {
    const int program = bits.number(16);
    bits.skip(3);
    programs.maps.emplace_back(program, bits.number(13));
  }
  programs.isSound = bits.left() == 0;
  return programs;
}

ProgramMap readProgramMap(const Section& section) {
  ProgramMap map;
  Bits bits(section.body);
  bits.skip(16);  // the PID of the clock
  const auto loop = [&] {
    bits.skip(4);
    return bits.take(bits.get(12));
  };
  map.isSound = eachDescriptor(
      loop(), [&](const Descriptor& descriptor) { map.isProtected |= descriptor.tag == CONDITIONAL_ACCESS; });
  while (bits.left() >= 5) {
    const int type = bits.number(8);
    bits.skip(3);
    const int pid = bits.number(13);
    map.pids.push_back(pid);
    Stream stream(type, pid, map);
    map.isSound &= eachDescriptor(loop(), [&](const Descriptor& descriptor) { stream.take(descriptor); });
    stream.finish();
  }
  map.isSound &= bits.isSound() && bits.left() == 0;
  return map;
}

}  // namespace virtualtv::broadcast
