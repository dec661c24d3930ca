// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "broadcast/Bits.h"
#include "broadcast/Sections.h"
#include "import/Raster.h"
#include "services/ChannelType.h"
#include "services/Modulation.h"
#include "services/Service.h"

// Readers for the tables of a broadcast, section by section. A reader uses the intact part of a section; `isSound` says
// whether all of it was intact. Loops or descriptors may claim to be longer than the section.

namespace virtualtv::broadcast {

/// Ids of tables.
enum Table : unsigned {
  PROGRAM_ASSOCIATION = 0x00,
  PROGRAM_MAP = 0x02,
  NETWORK_ACTUAL = 0x40,
  NETWORK_OTHER = 0x41,
  SERVICES_ACTUAL = 0x42,
  SERVICES_OTHER = 0x46,
  EVENTS_ACTUAL = 0x4E,  ///< present and following events; likewise below
  EVENTS_OTHER = 0x4F,
  CHANNELS_TERRESTRIAL = 0xC8,
  CHANNELS_CABLE = 0xC9,
};

/// The identity of a transport stream. The network is -1 when no table gives it.
struct StreamId {
  int network = -1;  ///< original network id
  int stream = -1;   ///< transport stream id

  bool operator<(const StreamId& other) const {
    return std::tie(network, stream) < std::tie(other.network, other.stream);
  }
  bool operator==(const StreamId& other) const {
    return std::tie(network, stream) == std::tie(other.network, other.stream);
  }
};

/// The identity of a service.
struct ServiceName {
  StreamId stream;
  int program = 0;

  bool operator<(const ServiceName& other) const {
    return std::tie(stream, program) < std::tie(other.stream, other.program);
  }
  bool operator==(const ServiceName& other) const {
    return std::tie(stream, program) == std::tie(other.stream, other.program);
  }
};

/// Programs and the PIDs of their maps. Program 0 is the network table.
struct Programs {
  std::vector<std::pair<int, int>> maps;
  bool isSound = true;
};

Programs readPrograms(const Section& section);

/// A program map: the streams of a program. It has no texts.
struct ProgramMap {
  bool isProtected = false;  ///< it names a conditional access system
  bool hasPicture = false;
  int video = 0;          ///< PID of the first video stream; 0 for none
  int videoType = 0;      ///< stream type of the video
  std::vector<int> pids;  ///< PIDs of all streams
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  bool isSound = true;
  bool isWhole = true;  ///< false: it has more tracks than can be stored

  static constexpr std::size_t mostTracks = 64;  ///< limit for each kind of track
};

ProgramMap readProgramMap(const Section& section);

/// A service as its broadcaster describes it.
struct Description {
  int program = 0;
  bool isScrambled = false;
  std::optional<ServiceKind> kind;
  std::string provider;  ///< as broadcast, like the next
  std::string name;
};

struct Descriptions {
  StreamId stream;
  std::vector<Description> services;
  bool isSound = true;
};

Descriptions readDescriptions(const Section& section);

/// How a transport stream is sent, in the units of the set. Unknown values keep their defaults.
struct Delivery {
  EAntennaMode antenna = ANTENNA_TERRESTRIAL;
  import::Raster raster = import::Raster::european;
  int frequency = 0;      ///< kHz
  int bandwidth = 0;      ///< kHz
  char polarisation = 0;  ///< 'H', 'V', 'L' or 'R'
  Modulation modulation = MODULATION_UNKNOWN;
  int symbolRate = 0;           ///< ksym/s
  std::optional<int> position;  ///< position of the satellite, see `import::orbitalSource`
};

/// The channel number that viewers know.
struct ChannelNumber {
  int major = 0;
  int minor = 0;
  bool isVisible = true;
};

struct NetworkStream {
  StreamId id;
  std::optional<Delivery> delivery;
  std::map<int, ChannelNumber> numbers;  ///< by program
};

struct Network {
  std::string name;  ///< as broadcast
  std::vector<NetworkStream> streams;
  bool isSound = true;
};

Network readNetwork(const Section& section);

/// A channel of an American table.
struct Channel {
  int stream = 0;
  int program = 0;
  std::string name;  ///< marked as 16-bit text in the way of European broadcasts
  ChannelNumber number;
  std::optional<ServiceKind> kind;
  bool isScrambled = false;
  Modulation modulation = MODULATION_UNKNOWN;
};

struct Channels {
  std::vector<Channel> channels;
  bool isSound = true;
};

Channels readChannels(const Section& section);

/// An event: a broadcast program.
struct Event {
  std::string name;  ///< as broadcast, like the next
  std::string text;
  std::optional<std::int64_t> start;  ///< seconds since 1970, UTC
  std::optional<int> duration;        ///< seconds
};

struct Events {
  ServiceName service;
  std::optional<Event> event;
  bool isSound = true;
};

/// Reads the first event of a section. Section 0 has the present event, section 1 the following one.
Events readEvents(const Section& section);

}  // namespace virtualtv::broadcast
