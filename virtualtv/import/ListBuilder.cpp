// SPDX-License-Identifier: MIT
#include "import/ListBuilder.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "import/Words.h"
#include "text/Units.h"

namespace virtualtv::import {

namespace {

std::u16string substituteFor(const Service& service) {
  const auto program = service.numbers.find(TCServiceData::PROGRAM_NUMBER);
  return text::toUnits("Service" + (program == service.numbers.end() ? "" : " " + std::to_string(program->second)));
}

constexpr std::uint64_t mask = (std::uint64_t{1} << 48U) - 1;  // the bits for stream and program in a service id

std::uint64_t bits(int value) {
  return static_cast<std::uint64_t>(value);
}

/// The part of a service id that identifies the transport stream: its ids, or its frequency if no id is known.
std::uint64_t streamBits(const Entry& entry) {
  const std::uint64_t ids = bits(entry.network.value_or(0)) << 16U | bits(entry.transportStream.value_or(0));
  return ids != 0 ? ids : bits(entry.frequency);
}

/// The part of a service id that identifies the program: its number, or the PID of its audio if it has no number.
std::uint64_t programBits(const Entry& entry) {
  if (entry.program != 0 || entry.audio.empty()) return bits(entry.program);
  return bits(entry.audio.front().pid);
}

/// The id of the n-th service with the same antenna, stream and program. The 12 bits above the 48 of stream and program
/// count such services. If they do not suffice, the ids of other programs are used.
std::uint64_t variant(std::uint64_t antenna, std::uint64_t program, std::uint64_t n) {
  return antenna << 60U | (n & 0xFFFU) << 48U | ((program + (n >> 12U)) & mask);
}

int megahertz(int kilohertz) {
  return (kilohertz + 500) / 1000;
}

}  // namespace

ServiceKind kindOf(const Entry& entry) {
  if (entry.kind) return *entry.kind;
  if (entry.video != 0) return ServiceKind::television;
  return entry.audio.empty() ? ServiceKind::data : ServiceKind::radio;
}

int orbitalSource(int tenths, bool west) {
  return west && tenths > 0 ? 3600 - tenths : tenths;
}

ListBuilder::ListBuilder(const Format& format, const std::string& encoding) : format_(format), decoder_(encoding) {}

void ListBuilder::startGroup(std::string_view name) {
  if (name != group_) decoder_.learn(name);
  group_ = name;
}

bool ListBuilder::continueFrom(std::uint64_t number) {
  if (number < nextNumber_) return false;
  nextNumber_ = number;
  return true;
}

std::uint64_t ListBuilder::nextNumber() const {
  return nextNumber_;
}

std::uint64_t ListBuilder::serviceId(const Entry& entry) {
  const std::uint64_t antenna = bits(entry.antenna) + 1;
  const std::uint64_t program = entry.identity.value_or(streamBits(entry) << 16U | programBits(entry)) & mask;
  std::uint64_t& n = variants_[antenna << 60U | program];
  std::uint64_t id = variant(antenna, program, n++);
  while (!ids_.insert(id).second) id = variant(antenna, program, n++);
  return id;
}

/// Sets fields in the order of their ids, so that each is appended at the end.
void ListBuilder::setNumbers(Service& service, const Entry& entry) {
  const auto put = [&](int field, std::uint64_t value) {
    service.numbers.emplace_hint(service.numbers.end(), field, value);
  };
  const auto set = [&](int field, std::optional<int> value) {
    if (value) put(field, bits(*value));
  };
  const auto setKnown = [&](int field, int value) {
    if (value != 0) put(field, bits(value));
  };
  set(TCServiceData::CHANNEL_TYPE, channelType(entry.antenna, kindOf(entry)));
  setKnown(TCServiceData::FREQUENCY, entry.frequency);
  set(TCServiceData::MODULATION, entry.modulation);
  setKnown(TCServiceData::SYMBOL_RATE, entry.symbolRate);
  put(TCServiceData::SERVICE_ID, serviceId(entry));
  if (entry.major) {
    put(TCServiceData::MAJOR, *entry.major);
    put(TCServiceData::MINOR, bits(entry.minor));
  }
  setKnown(TCServiceData::PROGRAM_NUMBER, entry.program);
  set(TCServiceData::TRANSPORT_STREAM_ID, entry.transportStream);
  put(TCServiceData::LOCK, 0);
  set(TCServiceData::SOURCE_ID, entry.source);
  set(TCServiceData::ORIGINAL_NETWORK_ID, entry.network);
  set(TCServiceData::ANTENNA_MODE, entry.antenna);
  put(HIDDEN, entry.hidden ? 1 : 0);
  put(SERVICE_MODE, 0);
}

void ListBuilder::add(Entry entry) {
  decoder_.learn(entry.name);
  entry.group = group_;
  if (!entry.major && nextNumber_ <= greatestChannelNumber) entry.major = nextNumber_++;
  entries_.push_back(std::move(entry));
}

bool ListBuilder::addWhole(Service service) {
  if (!ids_.insert(service.numbers.at(TCServiceData::SERVICE_ID)).second) return false;
  services_.push_back(std::move(service));
  return true;
}

/// Satellite transponders are numbered in the order of frequency, polarisation and orbital position. Terrestrial
/// channels have their number in the raster. Cable channels, and terrestrial channels that are not in the raster, have
/// their frequency in MHz.
void ListBuilder::setPhysicalChannels(std::vector<Service>& services) const {
  const auto transponder = [](const Entry& one) {
    return std::tuple(one.frequency, one.polarisation, one.source.value_or(-1));
  };
  std::map<std::tuple<int, char, int>, int> ordinals;
  bool australian = false;
  for (const Entry& one : entries_) {
    if (one.antenna == ANTENNA_SATELLITE) ordinals[transponder(one)] = 0;
    australian |= one.antenna == ANTENNA_TERRESTRIAL && isAustralianUhf(one.frequency, one.bandwidth);
  }
  int last = 0;
  for (auto& [key, ordinal] : ordinals) ordinal = ++last;

  const auto channel = [&](const Entry& one) {
    if (one.antenna == ANTENNA_SATELLITE) return ordinals[transponder(one)];
    if (one.antenna == ANTENNA_CABLE) return megahertz(one.frequency);
    const bool moved = australian && one.raster == Raster::european && one.bandwidth == 7000;
    const Raster raster = moved ? Raster::australian : one.raster;
    return rasterChannel(raster, one.frequency, one.bandwidth).value_or(megahertz(one.frequency));
  };
  for (std::size_t at = 0; at < services.size(); ++at) {
    const int number = channel(entries_[at]);
    if (entries_[at].frequency != 0 && bits(number) <= greatestChannelNumber) {
      services[at].numbers[TCServiceData::PTC] = bits(number);
    }
  }
}

std::u16string ListBuilder::decoded(std::string_view name) {
  std::u16string units = decoder_.decode(name);
  std::replace(units.begin(), units.end(), format_.colon, u':');
  return units;
}

/// The text of an entry as UTF-8, after the name of the format. ASCII lines stay unchanged, including blanks; other
/// lines are decoded like names.
std::string ListBuilder::kept(std::string_view text) {
  std::string kept(format_.name);
  while (!text.empty()) {
    const std::string_view line = cut(text, '\n');
    const bool plain =
        std::all_of(line.begin(), line.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    kept.append("\n").append(plain ? line : text::toUtf8(decoder_.decode(line)));
  }
  return kept;
}

void ListBuilder::setNames(std::vector<Service>& services) {
  std::string_view group;
  std::string groupName;
  for (std::size_t at = 0; at < services.size(); ++at) {
    if (entries_[at].group != group) groupName = text::toUtf8(decoded(entries_[at].group));
    group = entries_[at].group;
    services[at].group = groupName;
    std::u16string name = decoded(entries_[at].name);
    services[at].texts[TCServiceData::CHANNEL_NAME] = name.empty() ? substituteFor(services[at]) : std::move(name);
    if (!entries_[at].text.empty()) services[at].listEntry = kept(entries_[at].text);
  }
}

std::vector<Service> ListBuilder::finish() {
  if (entries_.empty()) return std::exchange(services_, {});
  std::vector<Service> services(entries_.size());
  for (std::size_t at = 0; at < services.size(); ++at) {
    const Entry& entry = entries_[at];
    setNumbers(services[at], entry);
    if (entry.favourite) services[at].favourites[1] = true;
  }
  setPhysicalChannels(services);
  setNames(services);
  for (std::size_t at = 0; at < services.size(); ++at) {
    services[at].audio = std::move(entries_[at].audio);
    services[at].subtitles = std::move(entries_[at].subtitles);
  }
  entries_.clear();
  return services;
}

}  // namespace virtualtv::import
