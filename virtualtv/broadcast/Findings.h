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

/// What the tables of streams tell of services, and what that comes to. Holds a bounded number of everything.
class Findings {
 public:
  /// More services than these are left out, and more transport streams.
  static constexpr std::size_t mostServices = 20'000;
  static constexpr std::size_t mostNumbers = 65'536;

  /// What a section was good for.
  enum class Use {
    all,
    soundPart,  ///< something in it runs over its end
    notAll,     ///< it tells of more than is kept
  };

  /// PIDs of the tables of every stream.
  static const std::vector<int>& tablePids();

  /// Takes what a section tells. A later one counts where two differ.
  /// @param watch  is called with each further PID on which there are tables.
  Use read(int pid, const Section& section, const std::function<void(int)>& watch);

  /// The stream ends; another one may use the same PIDs.
  /// @param isScrambled  whether packets of a PID of the stream were scrambled.
  void endStream(const std::function<bool(int)>& isScrambled);

  /// All services, once the last stream has ended.
  std::vector<FoundService> services() const;

 private:
  /// A program of a stream.
  struct Program {
    int mapPid = -1;           ///< where its map is told; -1 in streams that have ended
    bool isScrambled = false;  ///< packets of it were
    std::optional<ProgramMap> map;
    std::size_t file = 0;  ///< the stream that the map is from
  };

  /// A service as its broadcaster describes it.
  struct Described {
    Description description;
    bool isActual = false;  ///< told by the stream that carries it
    Modulation modulation = MODULATION_UNKNOWN;
    EAntennaMode antenna = ANTENNA_TERRESTRIAL;
  };

  /// What a network says of a transport stream.
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

  Use readProgramsOf(const Section& section, const std::function<void(int)>& watch);
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

  std::size_t file_ = 0;  ///< the present stream, counted from 1
  int networkPid_ = -1;
  int stream_ = -1;                  ///< id of the present transport stream
  std::optional<unsigned> version_;  ///< of its association table
  std::map<ProgramKey, Program> programs_;
  std::map<ServiceName, Described> described_;
  std::map<ServiceName, ChannelNumber> numbers_;
  std::map<StreamId, SentStream> streams_;
  std::map<ServiceName, OnAir> events_;
  std::optional<EAntennaMode> antenna_;  ///< that a network told last
};

}  // namespace virtualtv::broadcast
