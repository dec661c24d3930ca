// SPDX-License-Identifier: MIT
// The plug-in's tuning.
#include <json/json.h>

#include "support/model/Documents.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

/// An empty id means that no application is known.
bool tuneDirectly(const Command& command, unsigned long long id, const std::string& appId) {
  const Interface navigation = command.engine.active.navigation;
  return navigation && command.tv.tuneService(navigation, id, appId) > 0;
}

/// Tunes a window that shows the TV source. Otherwise switches it to TV; a failure of that switch goes unnoticed, and
/// the answer depends on the settings key.
bool tuneFor(const Command& command, unsigned long long id, const std::string& appId) {
  if (currentSource(command) == tvSource) return tuneDirectly(command, id, appId);
  command.tv.setSource(command.engine.active.source, tvSource, id, appId);
  int stored = -1;
  if (command.tv.getInt(command.engine.sourceKey, stored) != 0) return false;
  return stored == tvSource || record(command, tvSource, stored);
}

int tuneTo(const Command& command, const TCServiceData& service) {
  return tuneFor(command, idOf(service), application(command)) ? 1 : 0;
}

bool needAll(const Command& command) {
  return needService(command) && needSource(command) && needNavigation(command);
}

/// Tunes to the service that criteria find.
int tuneToFound(const Command& command, const TCCriteriaHelper& criteria) {
  TCServiceData service;
  if (command.tv.findService(command.engine.service, criteria, service) < 1) return 0;
  return tuneTo(command, service);
}

/// Steps to the next or the previous service in the list of the TV mode, and tunes to it.
int seek(const Command& command) {
  const Interface navigation = command.engine.active.navigation;
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  if (command.tv.getTvMode(navigation, mode) < 1) return 0;
  TCCriteriaHelper criteria;
  if (command.tv.getNavigationCriteria(mode, criteria) == 0) return 0;
  for (const int field : {Data::CHANNEL_TYPE, Data::SERVICE_ID, Data::LOCK}) criteria.Fetch(field);
  TCServiceData service;
  if (attempt(0, [&] { return command.tv.getCurrentService(navigation, mode, criteria, service); }) < 1) return -1;
  const std::string appId = application(command);
  const int way = command.decimal(0);
  if (way != 3 && way != 4) return 0;
  const Direction direction = way == 3 ? Direction::forwards : Direction::backwards;
  const unsigned long long current = idOf(service);
  if (attempt(0, [&] { return command.tv.seekService(navigation, criteria, current, direction, service); }) < 1) {
    return -1;
  }
  return tuneFor(command, idOf(service), appId) ? 1 : 0;
}

// A description of a satellite's transponder and service.

int numberIn(const Json::Value& description, const char* key) {
  return description.get(key, 1).asInt();
}

int lowHalf(int number) {
  return static_cast<std::uint16_t>(number);
}

/// The part of a description that is read before the satellite manager is requested.
struct Wanted {
  int type, modulation, symbolRate, program, ptc, progNum, minor;
};

Wanted wantedIn(const Json::Value& description) {
  return {numberIn(description, "TYPE"),
          numberIn(description, "ModulationType"),
          numberIn(description, "SymbolRate"),
          numberIn(description, "ProgramNumber"),
          numberIn(description, "PTC"),
          numberIn(description, "ProgNum"),
          numberIn(description, "MINOR_NUMBER_ONE_PART")};
}

TSTransponder transponderIn(const Json::Value& description, const Wanted& wanted) {
  const std::string satellite = description.get("SatelliteId", 1).asString();
  const int frequency = numberIn(description, "Frequency");
  const int polarisation = numberIn(description, "Polarization");
  return {65535,
          static_cast<ESatelliteId>(std::strtol(satellite.c_str(), nullptr, 16)),
          frequency,
          static_cast<std::uint16_t>(static_cast<unsigned>(wanted.symbolRate) * 1000),
          static_cast<EDVBSPolarisation>(polarisation),
          static_cast<EDVBFECInner>(-1)};
}

TCCriteriaHelper criteriaOf(const Wanted& wanted) {
  TCCriteriaHelper criteria;
  criteria.Fetch(Data::SERVICE_ID);
  criteria.Where(Data::CHANNEL_TYPE, lowHalf(wanted.type));
  const int modulation = lowHalf(wanted.modulation);
  if (modulation == 16 || modulation == 18) criteria.Where(Data::MODULATION, modulation);
  if (modulation == 5) criteria.Where(Data::MODULATION, 7);
  criteria.Where(Data::SYMBOL_RATE, wanted.symbolRate);
  criteria.Where(Data::PTC, lowHalf(wanted.ptc));
  criteria.Where(Data::PROGRAM_NUMBER, lowHalf(wanted.program));
  criteria.Where(Data::CHANNEL_TYPE, lowHalf(wanted.progNum));
  if (wanted.minor > 0) criteria.Where(Data::MINOR, wanted.minor);
  return criteria;
}

int tuneToDescribed(const Command& command, const Json::Value& description) {
  const Wanted wanted = wantedIn(description);
  const Interface satellite =
      attempt(Interface(), [&] { return make(command.tv.calls, op("TVServiceAPI::CreateSatellite")); });
  if (!satellite) return -1;
  unsigned short unused = 65535;
  command.tv.lookupTransponder(satellite, transponderIn(description, wanted), unused);
  TCServiceData service;
  const Interface services = command.engine.service;
  if (!services || command.tv.findService(services, criteriaOf(wanted), service) < 1) return 0;
  return tuneDirectly(command, idOf(service), "") ? 1 : 0;
}

}  // namespace

Reply setChannel(const Command& command) {
  if (!needAll(command)) return 0;
  return attempt(0, [&] {
    TCCriteriaHelper criteria;
    criteria.Fetch(Data::SERVICE_ID);
    const auto major = static_cast<std::uint16_t>(command.decimal(0));
    const auto minor = static_cast<std::uint16_t>(command.decimal(1));
    if (command.tv.getOptimumCriteria(major, minor, criteria) == 0) return 0;
    TCServiceData service;
    if (command.tv.getOptimumService(command.engine.active.navigation, criteria, service) < 1) return 0;
    return tuneTo(command, service);
  });
}

Reply setChannelByPtc(const Command& command) {
  if (!needAll(command)) return 0;
  return attempt(0, [&] {
    TCCriteriaHelper criteria;
    for (const int field : {12, 41, 18, 2}) criteria.Fetch(field);
    criteria.OrderBy(Data::SERVICE_ID, SORT_ASCENDING);
    criteria.Where(Data::PTC, command.decimal(0));
    return tuneToFound(command, criteria);
  });
}

Reply setChannelBySeek(const Command& command) {
  if (!needService(command) || !needNavigation(command) || !needSource(command)) return 0;
  return attempt(0, [&] { return seek(command); });
}

Reply setChannelByServiceId(const Command& command) {
  if (!needSource(command)) return 0;
  return attempt(0, [&] { return tuneFor(command, command.identifier(0), application(command)) ? 1 : 0; });
}

/// The criteria compare the channel type with the major number. The parameter for the channel type is not used.
Reply setChannelDirect(const Command& command) {
  const auto ptc = command.number(0);
  const auto major = command.number(1);
  const auto minor = command.number(2);
  if (!ptc || !major || !minor) return 1;
  if (!needAll(command)) return 0;
  return attempt(0, [&] {
    TCCriteriaHelper criteria;
    criteria.Fetch(Data::SERVICE_ID);
    criteria.Where(Data::PTC, *ptc);
    criteria.Where(Data::CHANNEL_TYPE, *major);
    criteria.Where(Data::MINOR, *minor);
    return tuneToFound(command, criteria);
  });
}

Reply setChannelBySatellite(const Command& command) {
  const auto type = command.number(1);
  if (!type) return -1;
  const std::string& text = command.parameters[0];
  if (!text.starts_with('{')) return 0;
  return attempt(0, [&] {
    try {
      Json::Value description;
      return parseJson(text, description) && *type == 0 ? tuneToDescribed(command, description) : 0;
    } catch (const Json::Exception&) {  // nested too deep, or a value of the wrong type
      return 0;
    }
  });
}

/// Uses the tuner of the main window, whichever window is selected.
Reply getSignalStrength(const Command& command) {
  if (!needTuner(command)) return 0;
  return attempt(-1, [&] {
    unsigned char strength = 0;
    return command.tv.getSignalStrength(command.engine.tuner, strength) < 1 ? -1 : int{strength};
  });
}

}  // namespace model
