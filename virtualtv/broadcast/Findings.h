// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "broadcast/Found.h"
#include "broadcast/Tables.h"

namespace virtualtv::broadcast {

/// Collects what the tables of streams say about services, and derives the services. All its memory is bounded.
class Findings {
 public:
  /// Limits for services and transport streams. Further ones are dropped.
  static constexpr std::size_t mostServices = 20'000;
  static constexpr std::size_t mostNumbers = 65'536;

  /// How much of a section was used.
  enum class Use {
    all,
    soundPart,  ///< only what comes before a part that runs over the section's end
    notAll,     ///< it has more entries than can be stored
  };

  /// PIDs of the tables of every stream.
  static const std::vector<int>& tablePids();

  /// Reads a section. If two sections differ, the later one counts. @param onTablePid  called with each further PID
  /// that carries tables.
  Use read(int pid, const Section& section, const std::function<void(int)>& onTablePid);

  /// Ends the stream; the next one may use the same PIDs. @param isScrambled  returns whether packets of a PID of the
  /// stream were scrambled.
  void endStream(const std::function<bool(int)>& isScrambled);

  /// All services, once the last stream has ended.
  std::vector<FoundService> services() const;

 private:
  /// A program of a stream.
  struct Program {
    int mapPid = -1;           ///< PID of its map; -1 in streams that have ended
    bool isScrambled = false;  ///< packets of the program were scrambled
    std::optional<ProgramMap> map;
    std::size_t file = 0;  ///< the stream that the map is from
  };

  /// A service as its broadcaster describes it.
  struct Described {
    Description description;
    bool isActual = false;  ///< described by the stream that carries it
    Modulation modulation = MODULATION_UNKNOWN;
    EAntennaMode antenna = ANTENNA_TERRESTRIAL;
  };

  /// A transport stream as a network describes it.
  struct SentStream {
    std::optional<Delivery> delivery;
    std::string network;
  };

  struct OnAir {
    std::optional<Event> present;
    std::optional<Event> following;
  };

  using ProgramKey = std::pair<int, int>;  ///< id of the transport stream, program
  using Owners = std::map<ProgramKey, ServiceName>;

  Use readProgramsOf(const Section& section, const std::function<void(int)>& onTablePid);
  Use readMap(int pid, const Section& section);
  Use readNetworkOf(const Section& section);
  Use readServices(const Section& section);
  Use readChannelsOf(const Section& section);
  Use readEventsOf(const Section& section);

  Owners owners() const;
  std::map<int, StreamId> idsOfStreams() const;
  FoundService describe(const ServiceName& name) const;
  Delivery deliveryOf(const ServiceName& name) const;
  void addTracks(const Program& program, FoundService& service) const;

  std::size_t file_ = 0;  ///< number of the current stream, counted from 1
  int networkPid_ = -1;
  int stream_ = -1;                  ///< id of the current transport stream
  std::optional<unsigned> version_;  ///< of its association table
  std::map<ProgramKey, Program> programs_;
  std::map<ServiceName, Described> described_;
  std::map<ServiceName, ChannelNumber> numbers_;
  std::map<StreamId, SentStream> streams_;
  std::map<ServiceName, OnAir> events_;
  std::optional<EAntennaMode> antenna_;  ///< antenna last given by a network
};

}  // namespace virtualtv::broadcast
