// SPDX-License-Identifier: MIT
// The tables that describe services: names, kinds, channel numbers, and current events.
#include <algorithm>
#include <array>
#include <string_view>

#include "broadcast/Tables.h"

namespace virtualtv::broadcast {

namespace {

/// A text preceded by its length.
std::string readText(Bits& bits) {
  return textOf(bits.take(bits.get(8)));
}

std::optional<ServiceKind> kindOfAmericanType(unsigned type) {
  switch (type) {
    case 1:
    case 2:
      return ServiceKind::television;
    case 3:
      return ServiceKind::radio;
    case 4:
      return ServiceKind::data;
    default:
      return std::nullopt;
  }
}

/// Modulation of an American table.
Modulation americanModulation(unsigned mode) {
  constexpr std::array modulations{MODULATION_UNKNOWN, MODULATION_UNKNOWN, MODULATION_QAM_64,
                                   MODULATION_QAM_256, MODULATION_VSB_8,   MODULATION_VSB_16};
  return mode < modulations.size() ? modulations[mode] : MODULATION_UNKNOWN;
}

/// Cable networks may have one-part numbers, whose bits are spread over both parts. Joins them.
void joinParts(ChannelNumber& number) {
  constexpr int onePart = 0x3F0;
  if ((number.major & onePart) != onePart) return;
  number.major = (number.major & 0xF) << 10 | number.minor;
  number.minor = 0;
}

/// Converts a UTF-16 name, without its padding zeros, to the marked form of European broadcasts.
std::string markedName(Bytes units) {
  std::size_t size = units.size() - units.size() % 2;
  while (size >= 2 && units[size - 1] == 0 && units[size - 2] == 0) size -= 2;
  return size == 0 ? std::string() : '\x11' + textOf(units.first(size));
}

/// The first of a long name's languages; empty if that is compressed.
std::string longName(Bytes body) {
  constexpr unsigned pairs = 0x3F;
  Bits bits(body);
  if (bits.get(8) == 0) return {};
  bits.take(3);  // the language
  std::string name{'\x11'};
  for (unsigned left = bits.get(8); left > 0; --left) {
    const bool isCompressed = bits.get(8) != 0;
    const unsigned mode = bits.get(8);
    const Bytes part = bits.take(bits.get(8));
    if (!bits.isSound() || isCompressed || mode > pairs) return {};
    if (mode == pairs) {
      name += textOf(part);
      continue;
    }
    for (const std::uint8_t low : part) (name += static_cast<char>(mode)) += static_cast<char>(low);
  }
  return name.size() > 1 ? name : std::string();
}

Channel readChannel(Bits& bits) {
  constexpr std::size_t shortName = 14;
  Channel channel;
  channel.name = markedName(bits.take(shortName));
  bits.skip(4);
  channel.number.major = bits.number(10);
  channel.number.minor = bits.number(10);
  channel.modulation = americanModulation(bits.get(8));
  bits.skip(32);  // an obsolete frequency field
  channel.stream = bits.number(16);
  channel.program = bits.number(16);
  bits.skip(2);
  channel.isScrambled = bits.get(1) != 0;
  channel.number.isVisible = bits.get(1) == 0;
  bits.skip(6);
  channel.kind = kindOfAmericanType(bits.get(6));
  bits.skip(16);  // its source id
  return channel;
}

std::optional<int> readTimeOfDay(Bits& bits) {
  const auto hours = bits.decimal(2);
  const auto minutes = bits.decimal(2);
  const auto seconds = bits.decimal(2);
  if (!hours || !minutes || !seconds || *minutes > 59 || *seconds > 59) return std::nullopt;
  return *hours * 3600 + *minutes * 60 + *seconds;
}

/// Reads a day since 1858 and a time. All ones mean that they are unknown.
std::optional<std::int64_t> readStart(Bits& bits) {
  constexpr std::int64_t dayOf1970 = 40587;
  constexpr std::int64_t secondsOfDay = 86400;
  const std::int64_t day = bits.number(16);
  const auto time = readTimeOfDay(bits);
  if (!time || *time >= secondsOfDay) return std::nullopt;
  return (day - dayOf1970) * secondsOfDay + *time;
}

Event readEvent(Bits& bits, bool& isSound) {
  constexpr unsigned shortEvent = 0x4D;
  Event event;
  bits.skip(16);  // id of the event
  event.start = readStart(bits);
  event.duration = readTimeOfDay(bits);
  bits.skip(4);
  isSound &= eachDescriptor(bits.take(bits.get(12)), [&](const Descriptor& descriptor) {
    if (descriptor.tag != shortEvent || !event.name.empty()) return;
    Bits texts(descriptor.body);
    texts.take(3);  // the language
    event.name = readText(texts);
    event.text = readText(texts);
    isSound &= texts.isSound();
  });
  return event;
}

}  // namespace

Descriptions readDescriptions(const Section& section) {
  constexpr unsigned service = 0x48;
  Descriptions descriptions;
  Bits bits(section.body);
  descriptions.stream = {bits.number(16), section.extension};
  bits.skip(8);
  while (bits.left() >= 5) {
    Description description;
    description.program = bits.number(16);
    bits.skip(8 + 3);
    description.isScrambled = bits.get(1) != 0;
    descriptions.isSound &= eachDescriptor(bits.take(bits.get(12)), [&](const Descriptor& descriptor) {
      if (descriptor.tag != service) return;
      Bits body(descriptor.body);
      description.kind = kindOfServiceType(body.get(8));
      description.provider = readText(body);
      description.name = readText(body);
      descriptions.isSound &= body.isSound();
    });
    descriptions.services.push_back(std::move(description));
  }
  descriptions.isSound &= bits.isSound() && bits.left() == 0;
  return descriptions;
}

Channels readChannels(const Section& section) {
  constexpr std::size_t fewestBytes = 32;
  constexpr unsigned extendedName = 0xA0;
  Channels channels;
  Bits bits(section.body);
  bits.skip(8);
  for (unsigned left = bits.get(8); left > 0; --left) {
    if (bits.left() < fewestBytes) {
      channels.isSound = false;
      break;
    }
    Channel channel = readChannel(bits);
    bits.skip(6);
    channels.isSound &= eachDescriptor(bits.take(bits.get(10)), [&](const Descriptor& descriptor) {
      if (descriptor.tag != extendedName) return;
      if (std::string name = longName(descriptor.body); !name.empty()) channel.name = std::move(name);
    });
    if (section.table == CHANNELS_CABLE) joinParts(channel.number);
    channels.channels.push_back(std::move(channel));
  }
  channels.isSound &= bits.isSound();
  return channels;
}

Events readEvents(const Section& section) {
  Events events;
  Bits bits(section.body);
  events.service.program = section.extension;
  events.service.stream.stream = bits.number(16);
  events.service.stream.network = bits.number(16);
  bits.skip(16);
  if (!bits.isSound()) {
    events.isSound = false;
  } else if (bits.left() > 0) {
    events.event = readEvent(bits, events.isSound);
    events.isSound &= bits.isSound();
  }
  return events;
}

}  // namespace virtualtv::broadcast
