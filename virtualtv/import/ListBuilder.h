// SPDX-License-Identifier: MIT
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

/// The greatest channel number; 65535 means that there is no number. Services beyond it get no number.
constexpr std::uint64_t greatestChannelNumber = 65534;

/// What a list says about one service, in the units of the set. Values missing in the list keep their defaults.
struct Entry {
  std::string_view name;   ///< unchanged from the list
  std::string_view group;  ///< unchanged from the list; `ListBuilder` sets it
  /// A list with this service alone, as in the original list. The set stores it, to preserve the data that it has no
  /// field for.
  std::string text;
  EAntennaMode antenna = ANTENNA_TERRESTRIAL;
  Raster raster = Raster::european;
  int frequency = 0;      ///< kHz
  int bandwidth = 0;      ///< kHz, of terrestrial channels
  char polarisation = 0;  ///< 'H', 'V', 'L' or 'R', of satellite transponders
  Modulation modulation = MODULATION_UNKNOWN;
  int symbolRate = 0;          ///< ksym/s
  std::optional<int> source;   ///< source id: see `orbitalSource`; for other antennas the network
  std::optional<int> network;  ///< original network id
  std::optional<int> transportStream;
  int program = 0;                        ///< 0 for none; the id then uses the PID of the audio instead
  std::optional<std::uint64_t> identity;  ///< replaces stream and program in the id, for lists without these
  std::optional<ServiceKind> kind;        ///< kind given by the list; otherwise derived from the streams
  int video = 0;                          ///< PID of the picture; 0 for none
  bool hidden = false;
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;
  bool favourite = false;              ///< a member of favourite group 1
  std::optional<std::uint64_t> major;  ///< channel number; the next free one if the list gives none
  int minor = 0;                       ///< minor number, if the list gives a major number
};

/// The kind of the service of an entry.
ServiceKind kindOf(const Entry& entry);

/// The source id of an orbital position: tenths of a degree counted eastward, 0 to 3599, so that 19.2 degrees east is
/// 192 and 28.5 degrees west 3315.
/// @param tenths  0 to 1800.
int orbitalSource(int tenths, bool west);

/// Builds the services of a list: assigns numbers and unique ids, decodes the names and finds the physical channels.
/// The last two depend on the whole list. The names passed to it must outlive it.
class ListBuilder {
 public:
  /// @param format  of the list; outlives it. @param encoding  see `read`.
  /// @throws std::invalid_argument when there is no such encoding.
  ListBuilder(const Format& format, const std::string& encoding);

  /// The services that follow belong to this group.
  void startGroup(std::string_view name);

  /// Gives the next service this channel number, and later ones the numbers that follow. @return false, and nothing
  /// changed, when the number is less than `nextNumber`.
  bool continueFrom(std::uint64_t number);

  /// The channel number of the next service.
  std::uint64_t nextNumber() const;

  void add(Entry entry);

  /// Adds a complete service, in a list of complete services only. @return false, and nothing added, when an earlier
  /// service has the same id.
  bool addWhole(Service service);

  /// The entries passed to `add`.
  const std::vector<Entry>& entries() const { return entries_; }

  /// Completes and returns the services, leaving the list empty.
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
  std::vector<Service> services_;  ///< services from `addWhole`
  std::unordered_map<std::uint64_t, std::uint64_t> variants_;
  std::unordered_set<std::uint64_t> ids_;
  std::uint64_t nextNumber_ = 1;
};

}  // namespace virtualtv::import
