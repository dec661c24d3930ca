#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "import/Charset.h"
#include "import/Raster.h"
#include "services/ChannelType.h"
#include "services/Modulation.h"
#include "services/Service.h"

namespace virtualtv::import {

/// The greatest number of a channel: 65535 is how a number that is absent reads. Services beyond it have no number.
constexpr std::uint64_t greatestChannelNumber = 65534;

/// What a list tells of one service, in the units of the set. What it does not tell keeps its default.
struct Entry {
  std::string_view name;  ///< as it stands in the list
  EAntennaMode antenna = ANTENNA_TERRESTRIAL;
  Raster raster = Raster::european;
  int frequency = 0;      ///< kHz
  int bandwidth = 0;      ///< kHz, of terrestrial channels
  char polarisation = 0;  ///< 'H', 'V', 'L' or 'R', of satellite transponders
  Modulation modulation = MODULATION_UNKNOWN;
  int symbolRate = 0;          ///< ksym/s
  std::optional<int> source;   ///< where it comes from: see `orbitalSource`, else the network
  std::optional<int> network;  ///< original network id
  std::optional<int> transportStream;
  int program = 0;
  bool picture = false;
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
};

/// The source id of an orbital position: tenths of a degree counted eastward, 0 to 3599, so that 19.2 degrees east is
/// 192 and 28.5 degrees west 3315.
/// @param tenths  0 to 1800.
int orbitalSource(int tenths, bool west);

/// Makes the services of a list: numbers them, gives each an id of its own, reads their names and finds their physical
/// channels, which both depend on the whole list. Names that it is given must outlive it.
class ServiceList {
 public:
  /// @param encoding  see `read`. @param colon  what stands for a colon in names of the list.
  /// @throws std::invalid_argument when there is no such encoding.
  explicit ServiceList(const std::string& encoding, char16_t colon = u':');

  /// The services that follow belong to this group.
  void startGroup(std::string_view name);

  /// The next service gets this channel number, and those after it the next ones.
  /// @return false, and nothing changes, when it is not greater than the numbers given so far.
  bool continueFrom(std::uint64_t number);

  /// Channel number of the service that comes next.
  std::uint64_t nextNumber() const;

  void add(Entry entry);

  /// Completes the services and hands them over, which leaves the list empty.
  std::vector<Service> finish();

 private:
  /// What the physical channel of a service depends on.
  struct Multiplex {
    EAntennaMode antenna;
    Raster raster;
    int frequency;
    int bandwidth;
    char polarisation;
    int source;
  };

  /// Names as they stand in the list.
  struct RawNames {
    std::string_view name;
    std::string_view group;
  };

  std::uint64_t serviceId(const Entry& entry);
  void setNumbers(Service& service, const Entry& entry);
  void setPhysicalChannels();
  void setNames();
  std::u16string decoded(std::string_view name);

  TextDecoder decoder_;
  char16_t colon_;
  std::string_view group_;
  std::vector<Service> services_;
  std::vector<Multiplex> multiplexes_;  ///< one a service, in the same order
  std::vector<RawNames> names_;         ///< likewise
  std::unordered_map<std::uint64_t, std::uint64_t> variants_;
  std::unordered_set<std::uint64_t> ids_;
  std::uint64_t nextNumber_ = 1;
};

}  // namespace virtualtv::import
