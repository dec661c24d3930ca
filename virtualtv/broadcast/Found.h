// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "broadcast/Tables.h"
#include "import/Import.h"

namespace virtualtv::broadcast {

/// A service that a broadcast carries or mentions. Its texts are UTF-8, and empty when unknown.
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
  bool isCarried = false;  ///< carried by a scanned stream; other services are only mentioned and have no tracks
  std::size_t file = 0;    ///< number of the stream with its tracks, counted from 1; 0 for none
  int video = 0;           ///< PID of its video there; 0 for none
  int videoType = 0;       ///< stream type of the video
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  std::optional<Event> present;
  std::optional<Event> following;
};

/// The content of broadcasts.
struct Scan {
  std::uint64_t packets = 0;
  std::vector<FoundService> services;  ///< carried services first, then the others, both sorted by number
  import::Problems problems;           ///< `at` is `packet N`, followed by the file if it was named
};

/// Converts a scan to services of the set, in the same order. Services without a number get numbers after all others.
/// Data that the set has no fields for goes into the attached document.
std::vector<Service> servicesOf(const Scan& scan);

}  // namespace virtualtv::broadcast
