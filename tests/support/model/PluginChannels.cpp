// The plug-in's channels: looking them up, their fields, tuning.
#include <limits>
#include <map>
#include <stdexcept>

#include "support/model/Numbers.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

constexpr std::uint64_t noId = ~std::uint64_t{0};

std::uint64_t idOf(const Service& service) {
  return number(service, Data::SERVICE_ID).value_or(noId);
}

/// What every tune ends in. On the TV source the window is tuned; from elsewhere it is switched to TV, which may fail
/// unseen, and the answer is about the settings key.
int tuneTo(const Command& command, std::uint64_t id) {
  const ServiceKey key = keyOf(command.set, id);
  if (currentSource(command) == tvSource) return tune(command.set, command.engine.window, key) ? 1 : 0;
  switchSource(command.set, command.engine.window, tvSource, key);
  const auto stored = readInt(command.set, sourceKey(command));
  if (!stored) return 0;
  if (*stored == tvSource) return 1;
  return record(command, tvSource, *stored) ? 1 : 0;
}

int tuneToService(const Command& command, ServiceKey key) {
  const Service* const service = at(command.set, key);
  return service == nullptr ? 0 : tuneTo(command, idOf(*service));
}

/// The channel that a command of a family asks about; null when there is none.
const Service* channelOf(const Command& command, const std::string& family) {
  if (family == "GetCurrentChannel") return at(command.set, command.window().service);
  if (family == "GetStartChannel") return at(command.set, keyOf(command.set, command.set.state.startServiceId));
  const int index = command.decimal(0);
  if (index < 0 || static_cast<std::size_t>(index) >= command.engine.found.size()) return nullptr;
  return &command.engine.found[static_cast<std::size_t>(index)];
}

const std::map<std::string, int> numberFields{
    {"Major", Data::MAJOR},
    {"Minor", Data::MINOR},
    {"OriginNetID", Data::ORIGINAL_NETWORK_ID},
    {"ProgramNumber", Data::PROGRAM_NUMBER},
    {"PTC", Data::PTC},
    {"TransportStreamID", Data::TRANSPORT_STREAM_ID},
};

Reply numberOf(const Service& channel, const std::string& family, int field) {
  const int missing = family == "GetStartChannel" ? -1 : std::numeric_limits<std::uint16_t>::max();
  const auto held = number(channel, field);
  return held ? static_cast<int>(*held) : missing;
}

Reply typeOf(const Service& channel) {
  return channelTypeToPl(static_cast<int>(number(channel, Data::CHANNEL_TYPE).value_or(noId)));
}

/// As much of a name as a reply takes: it ends at a surrogate, since names are of single units, at a terminator, and
/// after as many units as fit beside the byte order mark.
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

Reply nameOf(const Service& channel, const Command& command) {
  const auto name = channel.texts.find(Data::CHANNEL_NAME);
  const bool unnamed = name == channel.texts.end() || name->second.empty();
  if (unnamed && command.name == "GetChannel_Name") return -1;
  return unnamed ? std::u16string() : replied(name->second);
}

}  // namespace

Reply getTvMode(const Command& command) {
  return modeToPl(command.window().mode);
}

Reply setTvMode(const Command& command) {
  const auto mode = command.number(0);
  if (!mode) return -1;
  const virtualtv::TvState& state = command.set.state;
  return setMode(command.set, command.engine.window, modeToTc(*mode, state.region, state.country)) ? 1 : -1;
}

/// The tuner is the main window's, whichever the engine has selected.
Reply getSignalStrength(const Command& command) {
  return signalStrength(command.set, WindowId::main).value_or(-1);
}

Reply findChannel(const Command& command) {
  command.engine.found.clear();
  const int type = command.decimal(0);
  const virtualtv::TvState& state = command.set.state;
  auto conditions = listOf(modeToTc(command.decimal(1), state.region, state.country));
  if (!conditions) return 0;
  if (type != 0) conditions->push_back(equals(Data::CHANNEL_TYPE, channelTypeToTc(type)));
  for (const ServiceKey key : listed(command.set, *conditions)) command.engine.found.push_back(*at(command.set, key));
  return command.engine.found.empty() ? 0 : 1;
}

Reply getChannelSize(const Command& command) {
  return static_cast<int>(command.engine.found.size());
}

Reply getField(const Command& command) {
  const std::size_t line = command.name.find('_');
  const std::string family = command.name.substr(0, line);
  const std::string field = command.name.substr(line + 1);
  const Service* const channel = channelOf(command, family);
  if (channel == nullptr) return -1;
  if (field == "Name" || field == "ServiceName") return nameOf(*channel, command);
  if (field == "Type") return typeOf(*channel);
  return numberOf(*channel, family, numberFields.at(field));
}

Reply getStartChannelServiceId(const Command& command) {
  return std::to_string(command.set.state.startServiceId);
}

namespace {

Reply idAtIndex(const Command& command) {
  const auto index = command.number(0);
  if (!index) return std::string();
  const Service* const channel = channelOf(command, "GetChannel");
  if (channel == nullptr) return -1;
  return std::to_string(idOf(*channel));
}

Reply idOfNumbers(const Command& command, int major, int minor, int type) {
  constexpr int tied = 9;  // the channel type that is looked for on the window's antenna only
  Conditions conditions{equals(Data::MAJOR, major), equals(Data::MINOR, minor)};
  const int tc = channelTypeToTc(type);
  if (tc >= 1 && tc <= 9) conditions.push_back(equals(Data::CHANNEL_TYPE, tc));
  if (tc == tied) conditions.push_back(equals(Data::ANTENNA_MODE, command.window().mode.antenna));
  const Service* const service = at(command.set, firstById(command.set, conditions));
  return service == nullptr ? std::string() : std::to_string(idOf(*service));
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

Reply setChannel(const Command& command) {
  const auto major = static_cast<std::uint16_t>(command.decimal(0));
  const auto minor = static_cast<std::uint16_t>(command.decimal(1));
  return tuneToService(command, best(command.set, command.engine.window, major, minor));
}

Reply setChannelByPtc(const Command& command) {
  return tuneToService(command, firstById(command.set, {equals(Data::PTC, command.decimal(0))}));
}

Reply setChannelBySeek(const Command& command) {
  const int seek = command.decimal(0);
  const auto conditions = listOf(command.window().mode);
  if (!conditions) return 0;
  const Service* const current = at(command.set, command.window().service);
  if (current == nullptr) return -1;
  if (seek != 3 && seek != 4) return 0;
  const Direction direction = seek == 3 ? Direction::forwards : Direction::backwards;
  const Service* const target = at(command.set, step(command.set, *conditions, idOf(*current), direction));
  return target == nullptr ? -1 : tuneTo(command, idOf(*target));
}

Reply setChannelByServiceId(const Command& command) {
  return tuneTo(command, command.identifier(0));
}

/// The major number is looked for among the channel types, the channel type is looked for nowhere.
Reply setChannelDirect(const Command& command) {
  const auto ptc = command.number(0);
  const auto major = command.number(1);
  const auto minor = command.number(2);
  if (!ptc || !major || !minor) return 1;
  return tuneToService(command, first(command.set, {equals(Data::PTC, *ptc), equals(Data::CHANNEL_TYPE, *major),
                                                    equals(Data::MINOR, *minor)}));
}

}  // namespace model
