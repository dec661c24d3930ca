#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "broadcast/Tables.h"
#include "import/Import.h"

namespace virtualtv::broadcast {

/// A service that a broadcast carries or tells of. Its texts are UTF-8, empty where they are not told.
struct FoundService {
  int program = 0;
  StreamId stream;
  std::string name;
  std::string provider;
  std::string network;
  std::optional<ServiceKind> kind;
  std::optional<ChannelNumber> number;
  Delivery delivery;
  bool isScrambled = false;
  bool isCarried = false;  ///< in this stream; others are only told of, and have no tracks
  std::size_t file = 0;    ///< the stream that told its tracks, counted from 1; 0 for none
  int video = 0;           ///< PID of its picture there; 0 where there is none
  int videoType = 0;       ///< stream type of that
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  std::optional<Event> present;
  std::optional<Event> following;
};

/// What is in broadcasts.
struct Scan {
  std::uint64_t packets = 0;
  std::vector<FoundService> services;  ///< those that are carried first, each lot in the order of their numbers
  import::Problems problems;           ///< `at` is `packet N`, with the file behind it where that was named
};

/// The services as the set keeps them, in their order. Those without a number are numbered behind the others, and what
/// the set has no fields for is in the attached document.
std::vector<Service> servicesOf(const Scan& scan);

}  // namespace virtualtv::broadcast
