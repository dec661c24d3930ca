#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "import/Charset.h"
#include "import/Import.h"
#include "import/Raster.h"
#include "services/ChannelType.h"
#include "services/Modulation.h"
#include "services/Service.h"

namespace virtualtv::import {

/// The greatest number of a channel: 65535 is how a number that is absent reads. Services beyond it have no number.
constexpr std::uint64_t greatestChannelNumber = 65534;

/// What a list tells of one service, in the units of the set. What it does not tell keeps its default.
struct Entry {
  std::string_view name;   ///< as it stands in the list
  std::string_view group;  ///< likewise; `ServiceList` sets it
  /// What the list says of the service, as a list with this one alone. The set keeps it for what it has no field for.
  std::string text;
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
  int program = 0;                        ///< 0 where there is none; the PID of the audio stands in for it in the id
  std::optional<std::uint64_t> identity;  ///< stands for stream and program in the id, in lists that know neither
  std::optional<ServiceKind> kind;        ///< where the list tells it; else the streams do
  int video = 0;                          ///< PID of the picture; 0 for none
  bool hidden = false;
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  bool favourite = false;              ///< a member of favourite group 1
  std::optional<std::uint64_t> major;  ///< channel number; the next one where the list tells none
  int minor = 0;                       ///< behind a major number that the list tells
};

/// What the service of an entry brings.
ServiceKind kindOf(const Entry& entry);

/// The source id of an orbital position: tenths of a degree counted eastward, 0 to 3599, so that 19.2 degrees east is
/// 192 and 28.5 degrees west 3315.
/// @param tenths  0 to 1800.
int orbitalSource(int tenths, bool west);

/// Makes the services of a list: numbers them, gives each an id of its own, reads their names and finds their physical
/// channels, which both depend on the whole list. Names that it is given must outlive it.
class ServiceList {
 public:
  /// @param format  of the list; outlives it. @param encoding  see `read`.
  /// @throws std::invalid_argument when there is no such encoding.
  ServiceList(const Format& format, const std::string& encoding);

  /// The services that follow belong to this group.
  void startGroup(std::string_view name);

  /// The next service gets this channel number, and those after it the next ones.
  /// @return false, and nothing changes, when it is not greater than the numbers given so far.
  bool continueFrom(std::uint64_t number);

  /// Channel number of the service that comes next.
  std::uint64_t nextNumber() const;

  void add(Entry entry);

  /// Adds a service that is complete, in a list of such services alone.
  /// @return false, and it is left out, when one before it has its id.
  bool addWhole(Service service);

  /// What `add` added.
  const std::vector<Entry>& entries() const { return entries_; }

  /// Completes the services and hands them over, which leaves the list empty.
  std::vector<Service> finish();

 private:
  std::uint64_t serviceId(const Entry& entry);
  void setNumbers(Service& service, const Entry& entry);
  void setPhysicalChannels(std::vector<Service>& services) const;
  void setNames(std::vector<Service>& services);
  std::u16string decoded(std::string_view name);
  std::string kept(std::string_view text);

  const Format& format_;
  TextDecoder decoder_;
  std::string_view group_;
  std::vector<Entry> entries_;
  std::vector<Service> services_;  ///< those that were complete
  std::unordered_map<std::uint64_t, std::uint64_t> variants_;
  std::unordered_set<std::uint64_t> ids_;
  std::uint64_t nextNumber_ = 1;
};

}  // namespace virtualtv::import
