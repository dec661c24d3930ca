// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "tvservice/TVServiceTypes.h"

namespace virtualtv {

/// The kind of a service.
enum class ServiceKind {
  television,  ///< with a picture
  radio,       ///< sound without a picture
  data,        ///< neither
};

/// The channel types (field `CHANNEL_TYPE`) of this set. They lie in 1..9, the range in which a lookup by number and
/// type compares the type. Each corresponds to one of the types that web pages use. The lookup adds the antenna of the
/// current TV mode to the conditions for type 9 only. Television is therefore one type on every antenna, while radio
/// and data have a type for each antenna.
enum ChannelType : int {
  CHANNEL_ANALOGUE_TERRESTRIAL = 1,  ///< never set by a channel list, only by hand
  CHANNEL_ANALOGUE_CABLE = 2,        ///< likewise
  CHANNEL_RADIO_TERRESTRIAL = 3,
  CHANNEL_RADIO_CABLE = 4,
  CHANNEL_RADIO_SATELLITE = 5,
  CHANNEL_DATA_TERRESTRIAL = 6,
  CHANNEL_DATA_CABLE = 7,
  CHANNEL_DATA_SATELLITE = 8,
  CHANNEL_TELEVISION = 9,
};

/// The channel type of a digital service.
/// @param antenna  terrestrial, cable or satellite; any other counts as terrestrial.
constexpr ChannelType channelType(EAntennaMode antenna, ServiceKind kind) {
  if (kind == ServiceKind::television) return CHANNEL_TELEVISION;
  const bool radio = kind == ServiceKind::radio;
  switch (antenna) {
    case ANTENNA_CABLE:
      return radio ? CHANNEL_RADIO_CABLE : CHANNEL_DATA_CABLE;
    case ANTENNA_SATELLITE:
      return radio ? CHANNEL_RADIO_SATELLITE : CHANNEL_DATA_SATELLITE;
    default:
      return radio ? CHANNEL_RADIO_TERRESTRIAL : CHANNEL_DATA_TERRESTRIAL;
  }
}

/// The kind of a service with this channel type. Returns nothing when the number is not a channel type.
constexpr std::optional<ServiceKind> kindOf(std::uint64_t channelType) {
  if (channelType < CHANNEL_ANALOGUE_TERRESTRIAL || channelType > CHANNEL_TELEVISION) return std::nullopt;
  if (channelType < CHANNEL_RADIO_TERRESTRIAL || channelType == CHANNEL_TELEVISION) return ServiceKind::television;
  return channelType < CHANNEL_DATA_TERRESTRIAL ? ServiceKind::radio : ServiceKind::data;
}

/// The kind of a service with this service type of European broadcasts. Returns nothing for an unassigned type. Mosaics
/// count as television.
constexpr std::optional<ServiceKind> kindOfServiceType(std::uint64_t type) {
  switch (type) {
    case 0x01:
    case 0x04:
    case 0x05:
    case 0x06:
    case 0x0B:
    case 0x11:
      return ServiceKind::television;
    case 0x02:
    case 0x07:
    case 0x0A:
      return ServiceKind::radio;
    case 0x03:
    case 0x08:
    case 0x0C:
    case 0x0D:
    case 0x0E:
    case 0x0F:
    case 0x10:
      return ServiceKind::data;
    default:
      if (type >= 0x16 && type <= 0x20) return ServiceKind::television;
      return std::nullopt;
  }
}

}  // namespace virtualtv
