#include "import/ServiceList.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "text/Units.h"

namespace virtualtv::import {

namespace {

std::u16string substituteFor(const Service& service) {
  return text::toUnits("Service " + std::to_string(service.numbers.at(TCServiceData::PROGRAM_NUMBER)));
}

ServiceKind kindOf(const Entry& entry) {
  if (entry.picture) return ServiceKind::television;
  return entry.audio.empty() ? ServiceKind::data : ServiceKind::radio;
}

std::uint64_t bits(int value) {
  return static_cast<std::uint64_t>(value);
}

/// The part of a service id that tells the transport stream; its frequency stands in where no id is known.
std::uint64_t streamBits(const Entry& entry) {
  const std::uint64_t ids = bits(entry.network.value_or(0)) << 16U | bits(entry.transportStream.value_or(0));
  return ids != 0 ? ids : bits(entry.frequency);
}

/// The id of the n-th service with the same antenna, stream and program: 12 bits above the 48 of stream and program
/// count them; whatever is beyond that moves on to the ids of other programs.
std::uint64_t variant(std::uint64_t antenna, std::uint64_t program, std::uint64_t n) {
  constexpr std::uint64_t mask = (std::uint64_t{1} << 48U) - 1;
  return antenna << 60U | (n & 0xFFFU) << 48U | ((program + (n >> 12U)) & mask);
}

int megahertz(int kilohertz) {
  return (kilohertz + 500) / 1000;
}

}  // namespace

int orbitalSource(int tenths, bool west) {
  return west && tenths > 0 ? 3600 - tenths : tenths;
}

ServiceList::ServiceList(const std::string& encoding, char16_t colon) : decoder_(encoding), colon_(colon) {}

void ServiceList::startGroup(std::string_view name) {
  decoder_.learn(name);
  group_ = name;
}

bool ServiceList::continueFrom(std::uint64_t number) {
  if (number < nextNumber_) return false;
  nextNumber_ = number;
  return true;
}

std::uint64_t ServiceList::nextNumber() const {
  return nextNumber_;
}

std::uint64_t ServiceList::serviceId(const Entry& entry) {
  const std::uint64_t antenna = bits(entry.antenna) + 1;
  const std::uint64_t program = streamBits(entry) << 16U | bits(entry.program);
  std::uint64_t& n = variants_[antenna << 60U | program];
  std::uint64_t id = variant(antenna, program, n++);
  while (!ids_.insert(id).second) id = variant(antenna, program, n++);
  return id;
}

void ServiceList::setNumbers(Service& service, const Entry& entry) {
  const auto set = [&](int field, std::optional<int> value) {
    if (value) service.numbers[field] = bits(*value);
  };
  const auto setKnown = [&](int field, int value) {
    if (value != 0) service.numbers[field] = bits(value);
  };
  service.numbers[TCServiceData::SERVICE_ID] = serviceId(entry);
  set(TCServiceData::CHANNEL_TYPE, channelType(entry.antenna, kindOf(entry)));
  setKnown(TCServiceData::FREQUENCY, entry.frequency);
  set(TCServiceData::MODULATION, entry.modulation);
  setKnown(TCServiceData::SYMBOL_RATE, entry.symbolRate);
  set(TCServiceData::PROGRAM_NUMBER, entry.program);
  set(TCServiceData::TRANSPORT_STREAM_ID, entry.transportStream);
  set(TCServiceData::ORIGINAL_NETWORK_ID, entry.network);
  set(TCServiceData::SOURCE_ID, entry.source);
  set(TCServiceData::LOCK, 0);
  set(TCServiceData::ANTENNA_MODE, entry.antenna);
  set(HIDDEN, 0);
  set(SERVICE_MODE, 0);
  if (nextNumber_ <= greatestChannelNumber) {
    service.numbers[TCServiceData::MAJOR] = nextNumber_++;
    service.numbers[TCServiceData::MINOR] = 0;
  }
}

void ServiceList::add(Entry entry) {
  Service& service = services_.emplace_back();
  setNumbers(service, entry);
  decoder_.learn(entry.name);
  names_.push_back({entry.name, group_});
  multiplexes_.push_back(
      {entry.antenna, entry.raster, entry.frequency, entry.bandwidth, entry.polarisation, entry.source.value_or(-1)});
  service.audio = std::move(entry.audio);
  service.subtitles = std::move(entry.subtitles);
}

/// Satellite transponders count by frequency, then by polarisation; on several satellites by position after that.
/// Terrestrial channels have the number of their raster. Cable channels, and terrestrial ones beside the raster, have
/// their frequency in MHz.
void ServiceList::setPhysicalChannels() {
  const auto transponder = [](const Multiplex& one) { return std::tuple(one.frequency, one.polarisation, one.source); };
  std::map<std::tuple<int, char, int>, int> ordinals;
  bool australian = false;
  for (const Multiplex& one : multiplexes_) {
    if (one.antenna == ANTENNA_SATELLITE) ordinals[transponder(one)] = 0;
    australian |= one.antenna == ANTENNA_TERRESTRIAL && isAustralianUhf(one.frequency, one.bandwidth);
  }
  int last = 0;
  for (auto& [key, ordinal] : ordinals) ordinal = ++last;

  const auto channel = [&](const Multiplex& one) {
    if (one.antenna == ANTENNA_SATELLITE) return ordinals[transponder(one)];
    if (one.antenna == ANTENNA_CABLE) return megahertz(one.frequency);
    const bool moved = australian && one.raster == Raster::european && one.bandwidth == 7000;
    const Raster raster = moved ? Raster::australian : one.raster;
    return rasterChannel(raster, one.frequency, one.bandwidth).value_or(megahertz(one.frequency));
  };
  for (std::size_t at = 0; at < services_.size(); ++at) {
    const int number = channel(multiplexes_[at]);
    if (multiplexes_[at].frequency != 0 && bits(number) <= greatestChannelNumber) {
      services_[at].numbers[TCServiceData::PTC] = bits(number);
    }
  }
}

std::u16string ServiceList::decoded(std::string_view name) {
  std::u16string units = decoder_.decode(name);
  std::replace(units.begin(), units.end(), colon_, u':');
  return units;
}

void ServiceList::setNames() {
  std::string_view group;
  std::string groupName;
  for (std::size_t at = 0; at < services_.size(); ++at) {
    if (names_[at].group != group) groupName = text::toUtf8(decoded(names_[at].group));
    group = names_[at].group;
    services_[at].group = groupName;
    std::u16string name = decoded(names_[at].name);
    services_[at].texts[TCServiceData::CHANNEL_NAME] = name.empty() ? substituteFor(services_[at]) : std::move(name);
  }
}

std::vector<Service> ServiceList::finish() {
  setPhysicalChannels();
  multiplexes_.clear();
  setNames();
  names_.clear();
  return std::exchange(services_, {});
}

}  // namespace virtualtv::import
