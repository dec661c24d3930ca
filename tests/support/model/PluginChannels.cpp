// SPDX-License-Identifier: MIT
// The plug-in's channels: looking them up, their fields, the TV mode.
#include <map>

#include "support/model/Numbers.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

constexpr int regionWithOneMode = 17;

void fetchAll(TCCriteriaHelper& criteria, std::initializer_list<int> fields) {
  for (const int field : fields) criteria.Fetch(field);
}

/// The default service mode of an antenna; -1 when it is unknown.
int defaultServiceMode(const Command& command) {
  return attempt(-1, [&] {
    int region = 0;
    if (command.tv.region(region) != 0) return -1;
    if (region == regionWithOneMode) return 2;
    int country = 0;
    return command.tv.country(country) == 0 ? serviceModeOf(country) : -1;
  });
}

std::optional<TCServiceData> askCurrent(const Command& command) {
  const Interface navigation = command.engine.active.navigation;
  TCCriteriaHelper criteria;
  fetchAll(criteria, {12, 16, 41, 15, 18, 1, 2, 6, 37, 4, 13, 14, 22, 110});
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  TCServiceData service;
  if (command.tv.getTvMode(navigation, mode) < 1) return std::nullopt;
  if (command.tv.getCurrentService(navigation, mode, criteria, service) < 1) return std::nullopt;
  return service;
}

std::optional<TCServiceData> findById(const Command& command, unsigned long long id,
                                      std::initializer_list<int> fields) {
  TCCriteriaHelper criteria;
  fetchAll(criteria, fields);
  criteria.Where(Data::SERVICE_ID, id);
  TCServiceData service;
  if (command.tv.findService(command.engine.service, criteria, service) < 1) return std::nullopt;
  return service;
}

std::optional<TCServiceData> askPrevious(const Command& command) {
  const Interface navigation = command.engine.active.navigation;
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  unsigned long long id = noId;
  if (command.tv.getTvMode(navigation, mode) < 1) return std::nullopt;
  if (command.tv.getPreviousServiceId(navigation, mode, id) < 1) return std::nullopt;
  return findById(command, id, {12, 16, 41, 15, 18, 1, 2, 6, 37, 4, 13, 14});
}

std::optional<TCServiceData> askStart(const Command& command) {
  unsigned long long id = noId;
  int source = -1;
  if (command.tv.getStartService(command.engine.active.navigation, id, source) < 1) return std::nullopt;
  if (!needService(command)) return std::nullopt;
  return findById(command, id, {16, 13, 14, 1, 12});
}

/// Fills the found list. @return true when the set has such channels.
bool find(const Command& command) {
  const int type = command.decimal(0);
  const TSTvMode mode = modeOf(command, command.decimal(1));
  TCCriteriaHelper criteria;
  if (command.tv.getNavigationCriteria(mode, criteria) == 0) return false;
  if (type != 0) criteria.Where(Data::CHANNEL_TYPE, channelTypeToTc(type));
  fetchAll(criteria, {12, 16, 41, 15, 18, 1, 2, 6, 37, 4, 13, 14, 110});
  if (!command.engine.main.navigation) return false;
  const int answered = listServices(command, command.engine.main.navigation, criteria, command.engine.found);
  return answered > 0 && !command.engine.found.empty();
}

const std::map<std::string, int> numberFields{
    {"Major", Data::MAJOR},
    {"Minor", Data::MINOR},
    {"OriginNetID", Data::ORIGINAL_NETWORK_ID},
    {"ProgramNumber", Data::PROGRAM_NUMBER},
    {"PTC", Data::PTC},
    {"TransportStreamID", Data::TRANSPORT_STREAM_ID},
};

/// Reads a number of a channel: of the start channel unchanged, of other channels as 16 bits.
Reply numberOf(const Command& command, const TCServiceData& channel, int field) {
  if (command.name.starts_with("GetStartChannel")) return fieldOf<int>(channel, field);
  return int{fieldOf<unsigned short>(channel, field)};
}

/// The part of a name that a reply holds. It ends before a surrogate, since names consist of single units, at a
/// terminator, and where the buffer with the byte order mark is full.
std::u16string replied(const std::u16string& name) {
  constexpr std::size_t room = 512 / 2 - 1;
  std::size_t length = 0;
  while (length < name.size() && length < room) {
    const char16_t unit = name[length];
    if (unit == 0 || (unit >= 0xD800 && unit <= 0xDFFF)) break;
    ++length;
  }
  return name.substr(0, length);
}

Reply nameOf(const Command& command, const TCServiceData& channel) {
  const std::u16string name = textOf(channel, Data::CHANNEL_NAME);
  if (name.empty() && command.name == "GetChannel_Name") return -1;
  return replied(name);
}

std::optional<TCServiceData> channelOf(const Command& command) {
  if (command.name.starts_with("GetCurrentChannel")) return currentChannel(command);
  if (command.name.starts_with("GetStartChannel")) return startChannel(command);
  const TCServiceData* const found = foundChannel(command);
  return found == nullptr ? std::nullopt : std::optional(*found);
}

}  // namespace

TSTvMode modeOf(const Command& command, int mode) {
  const virtualtv::TvMode told = modeToTc(mode, [&] { return defaultServiceMode(command); });
  return {static_cast<EAntennaMode>(told.antenna), static_cast<EServiceMode>(told.service)};
}

std::optional<TCServiceData> currentChannel(const Command& command) {
  if (!needNavigation(command)) return std::nullopt;
  return attempt(std::optional<TCServiceData>(), [&] { return askCurrent(command); });
}

std::optional<TCServiceData> previousChannel(const Command& command) {
  if (!needNavigation(command) || !needService(command)) return std::nullopt;
  return attempt(std::optional<TCServiceData>(), [&] { return askPrevious(command); });
}

std::optional<TCServiceData> startChannel(const Command& command) {
  if (!needNavigation(command)) return std::nullopt;
  return attempt(std::optional<TCServiceData>(), [&] { return askStart(command); });
}

int listServices(const Command& command, Interface navigation, const TCCriteriaHelper& criteria,
                 std::vector<TCServiceData>& services) {
  Records records;
  const int answered = command.tv.getServiceList(navigation, criteria, records);
  for (const auto& record : records) {
    if (record) services.push_back(*record);
  }
  return answered;
}

const TCServiceData* foundChannel(const Command& command) {
  const int index = command.decimal(0);
  if (index < 0 || static_cast<std::size_t>(index) >= command.engine.found.size()) return nullptr;
  return &command.engine.found[static_cast<std::size_t>(index)];
}

std::u16string textOf(const TCServiceData& record, int field) {
  std::vector<unsigned short> units(static_cast<std::size_t>(record.GetLength(field)));
  record.Get(field, units.data());
  std::u16string text;
  for (const unsigned short unit : units) text += static_cast<char16_t>((unit & 0xFF) << 8 | unit >> 8);
  return text;
}

unsigned long long idOf(const TCServiceData& record) {
  return fieldOf<unsigned long long>(record, Data::SERVICE_ID);
}

Reply getTvMode(const Command& command) {
  if (!needNavigation(command)) return -1;
  return attempt(-1, [&] {
    TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
    if (command.tv.getTvMode(command.engine.active.navigation, mode) < 1) return -1;
    return modeToPl({mode.antennaMode, mode.serviceMode});
  });
}

Reply setTvMode(const Command& command) {
  const auto number = command.number(0);
  if (!number) return -1;
  if (!needNavigation(command)) return 0;
  return attempt(-1, [&] {
    const TSTvMode mode = modeOf(command, *number);
    const std::string appId = application(command);
    return command.tv.setTvMode(command.engine.active.navigation, mode, appId) > 0 ? 1 : -1;
  });
}

Reply findChannel(const Command& command) {
  if (!needNavigation(command)) return -1;
  command.engine.found.clear();
  return attempt(0, [&] { return find(command) ? 1 : 0; });
}

Reply getChannelSize(const Command& command) {
  return static_cast<int>(command.engine.found.size());
}

Reply getField(const Command& command) {
  const auto channel = channelOf(command);
  if (!channel) return -1;
  const std::string field = command.name.substr(command.name.find('_') + 1);
  if (field == "Name" || field == "ServiceName") return nameOf(command, *channel);
  if (field == "Type") return channelTypeToPl(fieldOf<int>(*channel, Data::CHANNEL_TYPE));
  return numberOf(command, *channel, numberFields.at(field));
}

Reply getStartChannelServiceId(const Command& command) {
  if (!needNavigation(command)) return std::string();
  return attempt(std::string(), [&] {
    unsigned long long id = noId;
    int source = -1;
    const bool told = command.tv.getStartService(command.engine.active.navigation, id, source) > 0;
    return told ? std::to_string(id) : std::string();
  });
}

namespace {

Reply idAtIndex(const Command& command) {
  if (!command.number(0)) return std::string();
  const TCServiceData* const channel = foundChannel(command);
  if (channel == nullptr) return -1;
  return std::to_string(idOf(*channel));
}

/// Adds the condition for a type from 1 to 9; for 9, also the condition for the window's antenna, if that is known.
void addType(const Command& command, int type, TCCriteriaHelper& criteria) {
  constexpr int tied = 9;
  if (type < 1 || type > 9) return;
  criteria.Where(Data::CHANNEL_TYPE, type);
  const Interface navigation = command.engine.active.navigation;
  if (type != tied || !navigation) return;
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  if (command.tv.getTvMode(navigation, mode) > 0) criteria.Where(Data::ANTENNA_MODE, mode.antennaMode);
}

Reply idOfNumbers(const Command& command, int major, int minor, int type) {
  if (!needService(command)) return -1;
  return attempt(std::string(), [&] {
    TCCriteriaHelper criteria;
    fetchAll(criteria, {12, 13, 14});
    criteria.OrderBy(Data::SERVICE_ID, SORT_ASCENDING);
    criteria.Where(Data::MAJOR, major);
    criteria.Where(Data::MINOR, minor);
    addType(command, channelTypeToTc(type), criteria);
    TCServiceData service;
    const bool found = command.tv.findService(command.engine.service, criteria, service) > 0;
    return found ? std::to_string(idOf(service)) : std::string();
  });
}

}  // namespace

Reply getChannelServiceId(const Command& command) {
  if (command.parameters[1].empty() && command.parameters[2].empty()) return idAtIndex(command);
  const auto major = command.number(0);
  const auto minor = command.number(1);
  const auto type = command.number(2);
  if (!major || !minor || !type) return std::string();
  return idOfNumbers(command, *major, *minor, *type);
}

}  // namespace model
