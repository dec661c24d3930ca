// SPDX-License-Identifier: MIT
// The table of a network: its name, how its transport streams are sent, and the numbers of their services.
#include <algorithm>
#include <array>

#include "broadcast/Tables.h"
#include "import/ListBuilder.h"
#include "import/Streams.h"

namespace virtualtv::broadcast {

namespace {

enum NetworkTag : unsigned {
  NETWORK_NAME = 0x40,
  SATELLITE_DELIVERY = 0x43,
  CABLE_DELIVERY = 0x44,
  TERRESTRIAL_DELIVERY = 0x5A,
  PRIVATE_DATA_SPECIFIER = 0x5F,
  EXTENSION = 0x7F,
  LOGICAL_CHANNELS = 0x83,
  CHANNEL_LISTS = 0x87,
  SIMULCAST_CHANNELS = 0x88,
};

/// The specifier of networks with 14-bit instead of 10-bit channel numbers, and with channel lists.
constexpr std::uint32_t nordic = 0x00000029;

template <std::size_t size>
Modulation modulationAt(const std::array<Modulation, size>& modulations, unsigned number) {
  return number < size ? modulations[number] : MODULATION_UNKNOWN;
}

/// Converts tens of hertz to kHz. Returns 0 for a frequency that no channel can have.
int groundFrequency(std::uint64_t tensOfHertz) {
  return import::isGroundFrequency(tensOfHertz * 10) ? static_cast<int>((tensOfHertz + 50) / 100) : 0;
}

Delivery readTerrestrial(Bits bits) {
  constexpr std::array<int, 4> bandwidths{8000, 7000, 6000, 5000};
  constexpr std::array modulations{MODULATION_QPSK, MODULATION_QAM_16, MODULATION_QAM_64};
  Delivery delivery;
  delivery.frequency = groundFrequency(bits.get(32));
  const unsigned bandwidth = bits.get(3);
  if (bandwidth < bandwidths.size()) delivery.bandwidth = bandwidths[bandwidth];
  bits.skip(5);
  delivery.modulation = modulationAt(modulations, bits.get(2));
  return delivery;
}

/// A second-generation stream may be sent in several cells; only the frequency of the first cell is used.
Delivery readSecondTerrestrial(Bits bits) {
  constexpr std::array<int, 6> bandwidths{8000, 7000, 6000, 5000, 10000, 1712};
  Delivery delivery;
  bits.skip(8 + 16 + 2);
  const unsigned bandwidth = bits.get(4);
  if (!bits.isSound()) return delivery;
  if (bandwidth < bandwidths.size()) delivery.bandwidth = bandwidths[bandwidth];
  bits.skip(2 + 3 + 3 + 1);
  const bool isSliced = bits.get(1) != 0;
  bits.skip(16 + (isSliced ? 8 : 0));
  const std::uint32_t frequency = bits.get(32);
  if (bits.isSound()) delivery.frequency = groundFrequency(frequency);
  return delivery;
}

Delivery readCable(Bits bits) {
  constexpr std::array modulations{MODULATION_UNKNOWN, MODULATION_QAM_16,  MODULATION_QAM_32,
                                   MODULATION_QAM_64,  MODULATION_QAM_128, MODULATION_QAM_256};
  Delivery delivery;
  delivery.antenna = ANTENNA_CABLE;
  delivery.frequency = groundFrequency(static_cast<std::uint64_t>(bits.decimal(8).value_or(0)) * 10);
  bits.skip(12 + 4);
  delivery.modulation = modulationAt(modulations, bits.get(8));
  delivery.symbolRate = (bits.decimal(7).value_or(0) + 5) / 10;
  return delivery;
}

Delivery readSatellite(Bits bits) {
  constexpr std::array modulations{MODULATION_UNKNOWN, MODULATION_QPSK, MODULATION_PSK_8, MODULATION_QAM_16};
  Delivery delivery;
  delivery.antenna = ANTENNA_SATELLITE;
  const int frequency = bits.decimal(8).value_or(0) * 10;
  if (import::isSatelliteFrequency(static_cast<std::uint64_t>(frequency))) delivery.frequency = frequency;
  const int tenths = bits.decimal(4).value_or(0);
  const bool isEast = bits.get(1) != 0;
  if (bits.isSound() && tenths <= 1800) delivery.position = import::orbitalSource(tenths, !isEast);
  delivery.polarisation = "HVLR"[bits.get(2)];
  bits.skip(2);
  const bool isSecondGeneration = bits.get(1) != 0;
  delivery.modulation = modulationAt(modulations, bits.get(2));
  if (isSecondGeneration && delivery.modulation == MODULATION_QPSK) delivery.modulation = MODULATION_QPSK_S2;
  delivery.symbolRate = (bits.decimal(7).value_or(0) + 5) / 10;
  return delivery;
}

std::optional<Delivery> readDelivery(const Descriptor& descriptor) {
  constexpr unsigned secondTerrestrial = 0x04;
  Bits bits(descriptor.body);
  switch (descriptor.tag) {
    case TERRESTRIAL_DELIVERY:
      return readTerrestrial(bits);
    case CABLE_DELIVERY:
      return readCable(bits);
    case SATELLITE_DELIVERY:
      return readSatellite(bits);
    case EXTENSION:
      if (bits.get(8) == secondTerrestrial) return readSecondTerrestrial(bits);
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

using ChannelNumbers = std::map<int, ChannelNumber>;  ///< by program

constexpr unsigned usualWidth = 10;   // bits of a number
constexpr unsigned nordicWidth = 14;  // in Nordic networks

/// The number 0 means that the service has no number.
void readNumbers(Bits bits, unsigned width, ChannelNumbers& numbers) {
  while (bits.left() >= 4) {
    const int program = bits.number(16);
    ChannelNumber number;
    number.isVisible = bits.get(1) != 0;
    bits.skip(15 - width);
    number.major = bits.number(width);
    if (number.major != 0) numbers[program] = number;
  }
}

/// Reads the lists for several regions or countries; only the first counts.
void readFirstList(Bits bits, ChannelNumbers& numbers) {
  bits.skip(8);
  bits.take(bits.get(8));  // the list's name
  bits.skip(24);           // the list's country
  readNumbers(Bits(bits.take(bits.get(8))), usualWidth, numbers);
}

NetworkStream readStream(Bits& bits, bool& isSound) {
  NetworkStream stream;
  stream.id.stream = bits.number(16);
  stream.id.network = bits.number(16);
  bits.skip(4);
  std::uint32_t owner = 0;
  ChannelNumbers listed;
  ChannelNumbers simulcast;
  isSound &= eachDescriptor(bits.take(bits.get(12)), [&](const Descriptor& descriptor) {
    Bits body(descriptor.body);
    if (descriptor.tag == PRIVATE_DATA_SPECIFIER) owner = body.get(32);
    if (descriptor.tag == LOGICAL_CHANNELS)
      readNumbers(body, owner == nordic ? nordicWidth : usualWidth, stream.numbers);
    if (descriptor.tag == SIMULCAST_CHANNELS && owner != nordic) readNumbers(body, usualWidth, simulcast);
    if (descriptor.tag == CHANNEL_LISTS && owner == nordic && listed.empty()) readFirstList(body, listed);
    if (!stream.delivery) stream.delivery = readDelivery(descriptor);
  });
  // `merge` keeps existing entries: a number of a list takes precedence over one of the simulcast, and that over a
  // plain one.
  listed.merge(simulcast);
  listed.merge(stream.numbers);
  stream.numbers = std::move(listed);
  return stream;
}

}  // namespace

Network readNetwork(const Section& section) {
  Network network;
  Bits bits(section.body);
  bits.skip(4);
  network.isSound = eachDescriptor(bits.take(bits.get(12)), [&](const Descriptor& descriptor) {
    if (descriptor.tag == NETWORK_NAME) network.name = textOf(descriptor.body);
  });
  bits.skip(4);
  Bits streams(bits.take(bits.get(12)));
  while (streams.left() >= 6) network.streams.push_back(readStream(streams, network.isSound));
  network.isSound &= bits.isSound() && bits.left() == 0 && streams.isSound() && streams.left() == 0;
  return network;
}

}  // namespace virtualtv::broadcast
