// SPDX-License-Identifier: MIT
#include "broadcast/Findings.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include "import/Charset.h"
#include "text/Units.h"

namespace virtualtv::broadcast {

namespace {

enum TablePid : int {
  PROGRAMS_PID = 0x00,
  NETWORK_PID = 0x10,
  SERVICES_PID = 0x11,
  EVENTS_PID = 0x12,
  AMERICAN_PID = 0x1FFB,
};

/// The entry of a map, added if there is room; null when there is none.
template <typename Map>
typename Map::mapped_type* entry(Map& map, const typename Map::key_type& key, std::size_t most) {
  const auto found = map.find(key);
  if (found != map.end()) return &found->second;
  return map.size() < most ? &map[key] : nullptr;
}

Findings::Use useOf(bool isSound, bool isKept) {
  if (!isKept) return Findings::Use::notAll;
  return isSound ? Findings::Use::all : Findings::Use::soundPart;
}

ServiceKind kindOf(const ProgramMap& map) {
  if (map.hasPicture) return ServiceKind::television;
  return map.audio.empty() ? ServiceKind::data : ServiceKind::radio;
}

/// Sorts carried services first, then by number. Services without a number come last.
bool comesBefore(const FoundService& left, const FoundService& right) {
  constexpr int none = std::numeric_limits<int>::max();
  const auto place = [](const FoundService& service) {
    const ChannelNumber number = service.number.value_or(ChannelNumber{none, none, true});
    return std::tuple(!service.isCarried, number.major, number.minor, service.stream, service.program);
  };
  return place(left) < place(right);
}

/// Decodes the texts of services. All texts together determine the character table.
void decode(std::vector<FoundService>& services) {
  import::TextDecoder decoder{std::string()};
  const auto eachText = [&services](const auto& take) {
    for (FoundService& service : services) {
      for (std::string* text : {&service.name, &service.provider, &service.network}) take(*text);
      for (std::optional<Event>* event : {&service.present, &service.following}) {
        if (!*event) continue;
        take((*event)->name);
        take((*event)->text);
      }
    }
  };
  eachText([&](const std::string& text) { decoder.learn(text); });
  eachText([&](std::string& text) { text = text::toUtf8(decoder.decode(text)); });
}

}  // namespace

const std::vector<int>& Findings::tablePids() {
  static const std::vector<int> pids{PROGRAMS_PID, NETWORK_PID, SERVICES_PID, EVENTS_PID, AMERICAN_PID};
  return pids;
}

Findings::Use Findings::read(int pid, const Section& section, const std::function<void(int)>& onTablePid) {
  const auto on = [&](int wanted, auto operation) { return pid == wanted ? (this->*operation)(section) : Use::all; };
  switch (section.table) {
    case PROGRAM_ASSOCIATION:
      return pid == PROGRAMS_PID ? readProgramsOf(section, onTablePid) : Use::all;
    case PROGRAM_MAP:
      return readMap(pid, section);
    case NETWORK_ACTUAL:
    case NETWORK_OTHER:
      return on(pid == networkPid_ ? pid : NETWORK_PID, &Findings::readNetworkOf);
    case SERVICES_ACTUAL:
    case SERVICES_OTHER:
      return on(SERVICES_PID, &Findings::readServices);
    case EVENTS_ACTUAL:
    case EVENTS_OTHER:
      return on(EVENTS_PID, &Findings::readEventsOf);
    case CHANNELS_TERRESTRIAL:
    case CHANNELS_CABLE:
      return on(AMERICAN_PID, &Findings::readChannelsOf);
    default:
      return Use::all;
  }
}

/// Keeps programs that a new version of the table lacks, but no longer reads their maps: other programs may now use
/// those PIDs.
Findings::Use Findings::readProgramsOf(const Section& section, const std::function<void(int)>& onTablePid) {
  if (stream_ != section.extension || version_ != section.version) {
    for (auto& [key, program] : programs_) program.mapPid = -1;
  }
  stream_ = section.extension;
  version_ = section.version;
  const Programs told = readPrograms(section);
  bool isKept = true;
  for (const auto& [number, pid] : told.maps) {
    if (number == 0) {
      networkPid_ = pid;
    } else if (Program* program = entry(programs_, {stream_, number}, mostServices)) {
      program->mapPid = pid;
    } else {
      isKept = false;
      continue;
    }
    onTablePid(pid);
  }
  return useOf(told.isSound, isKept);
}

Findings::Use Findings::readMap(int pid, const Section& section) {
  const auto found = programs_.find({stream_, section.extension});
  if (found == programs_.end() || found->second.mapPid != pid) return Use::all;
  found->second.map = readProgramMap(section);
  found->second.file = file_;
  return useOf(found->second.map->isSound, found->second.map->isWhole);
}

Findings::Use Findings::readNetworkOf(const Section& section) {
  const Network network = readNetwork(section);
  bool isKept = true;
  for (const NetworkStream& told : network.streams) {
    SentStream* sent = entry(streams_, told.id, mostServices);
    isKept &= sent != nullptr;
    if (sent != nullptr && told.delivery) sent->delivery = told.delivery;
    if (told.delivery) antenna_ = told.delivery->antenna;
    if (sent != nullptr && !network.name.empty()) sent->network = network.name;
    for (const auto& [program, number] : told.numbers) {
      ChannelNumber* kept = entry(numbers_, {told.id, program}, mostNumbers);
      isKept &= kept != nullptr;
      if (kept != nullptr) *kept = number;
    }
  }
  return useOf(network.isSound, isKept);
}

Findings::Use Findings::readServices(const Section& section) {
  Descriptions told = readDescriptions(section);
  bool isKept = true;
  for (Description& description : told.services) {
    Described* kept = entry(described_, {told.stream, description.program}, mostServices);
    isKept &= kept != nullptr;
    if (kept == nullptr) continue;
    kept->isActual |= section.table == SERVICES_ACTUAL;
    kept->description = std::move(description);
  }
  return useOf(told.isSound, isKept);
}

Findings::Use Findings::readChannelsOf(const Section& section) {
  constexpr int analogue = 0xFFFF;
  Channels told = readChannels(section);
  bool isKept = true;
  for (Channel& channel : told.channels) {
    if (channel.program == 0 || channel.program == analogue) continue;
    const ServiceName name{{-1, channel.stream}, channel.program};
    Described* kept = entry(described_, name, mostServices);
    ChannelNumber* number = entry(numbers_, name, mostNumbers);
    isKept &= kept != nullptr && number != nullptr;
    if (kept == nullptr || number == nullptr) continue;
    *number = channel.number;
    kept->description = {channel.program, channel.isScrambled, channel.kind, {}, std::move(channel.name)};
    kept->isActual = true;
    kept->modulation = channel.modulation;
    kept->antenna = section.table == CHANNELS_CABLE ? ANTENNA_CABLE : ANTENNA_TERRESTRIAL;
  }
  return useOf(told.isSound, isKept);
}

Findings::Use Findings::readEventsOf(const Section& section) {
  Events told = readEvents(section);
  OnAir* onAir = entry(events_, told.service, mostServices);
  if (onAir == nullptr) return Use::notAll;
  if (section.number == 0) onAir->present = std::move(told.event);
  if (section.number == 1) onAir->following = std::move(told.event);
  return useOf(told.isSound, true);
}

void Findings::endStream(const std::function<bool(int)>& isScrambled) {
  for (auto& [key, program] : programs_) {
    if (program.mapPid >= 0 && program.map) {
      program.isScrambled |= std::any_of(program.map->pids.begin(), program.map->pids.end(), isScrambled);
    }
    program.mapPid = -1;
  }
  ++file_;
  networkPid_ = -1;
  stream_ = -1;
  version_.reset();
}

/// Assigns a description to each program: that of the stream that carries it, or else any description with the same
/// ids.
Findings::Owners Findings::owners() const {
  Owners owners;
  for (const auto& [name, described] : described_) {
    const auto [found, isNew] = owners.try_emplace({name.stream.stream, name.program}, name);
    if (!isNew && described.isActual && !described_.at(found->second).isActual) found->second = name;
  }
  return owners;
}

/// The networks of streams according to network tables. For streams without described services there is no other
/// source.
std::map<int, StreamId> Findings::idsOfStreams() const {
  std::map<int, StreamId> ids;
  for (const auto& [id, sent] : streams_) ids.try_emplace(id.stream, id);
  return ids;
}

/// How a stream is sent. If no table says, its antenna is the one that a network has given last.
Delivery Findings::deliveryOf(const ServiceName& name) const {
  const auto sent = streams_.find(name.stream);
  if (sent != streams_.end() && sent->second.delivery) return *sent->second.delivery;
  Delivery delivery;
  const auto described = described_.find(name);
  if (described != described_.end()) {
    delivery.antenna = described->second.antenna;
    delivery.modulation = described->second.modulation;
  }
  if (antenna_) delivery.antenna = *antenna_;
  return delivery;
}

FoundService Findings::describe(const ServiceName& name) const {
  FoundService service;
  service.program = name.program;
  service.stream = name.stream;
  service.delivery = deliveryOf(name);
  if (const auto described = described_.find(name); described != described_.end()) {
    const Description& description = described->second.description;
    service.name = description.name;
    service.provider = description.provider;
    service.kind = description.kind;
    service.isScrambled = description.isScrambled;
  }
  if (const auto number = numbers_.find(name); number != numbers_.end()) service.number = number->second;
  if (const auto sent = streams_.find(name.stream); sent != streams_.end()) service.network = sent->second.network;
  if (const auto onAir = events_.find(name); onAir != events_.end()) {
    service.present = onAir->second.present;
    service.following = onAir->second.following;
  }
  return service;
}

/// A broadcaster may name a conditional access system for a program that is currently unencrypted. So this counts only
/// when nothing else is known.
void Findings::addTracks(const Program& program, FoundService& service) const {
  service.isCarried = true;
  service.isScrambled |= program.isScrambled;
  if (!program.map) return;
  const bool isDescribed = described_.contains({service.stream, service.program});
  if (!isDescribed) service.isScrambled |= program.map->isProtected;
  if (!service.kind) service.kind = kindOf(*program.map);
  service.file = program.file;
  service.video = program.map->video;
  service.videoType = program.map->videoType;
  service.audio = program.map->audio;
  service.subtitles = program.map->subtitles;
}

std::vector<FoundService> Findings::services() const {
  std::vector<FoundService> services;
  const Owners owners = this->owners();
  const std::map<int, StreamId> ids = idsOfStreams();
  const auto nameOf = [&](const ProgramKey& key) -> ServiceName {
    if (const auto owner = owners.find(key); owner != owners.end()) return owner->second;
    const auto id = ids.find(key.first);
    return {id == ids.end() ? StreamId{-1, key.first} : id->second, key.second};
  };
  for (const auto& [key, program] : programs_) {
    services.push_back(describe(nameOf(key)));
    addTracks(program, services.back());
  }
  for (const auto& [name, described] : described_) {
    const ProgramKey key{name.stream.stream, name.program};
    if (programs_.contains(key) && owners.at(key) == name) continue;
    services.push_back(describe(name));
  }
  std::stable_sort(services.begin(), services.end(), comesBefore);
  decode(services);
  return services;
}

}  // namespace virtualtv::broadcast
