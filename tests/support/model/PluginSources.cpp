// SPDX-License-Identifier: MIT
// The plug-in's sources.
#include "support/model/Numbers.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

constexpr const char* mainKey = "db/emp/mainsource";
constexpr const char* previousMainKey = "db/emp/previousmainsource";
constexpr const char* pipKey = "db/emp/pipsource";
constexpr const char* middlewareKey = "db/kel/current_source_type";

constexpr int lastTvServiceSource = 42;
constexpr int untold = -1;

bool seeksPrevious(int seek) {
  return seek == 6 || seek == 8 || seek == 9;
}

/// Converts a source of the TV service to the number for applications; 0 is the TV. Sources without a number are
/// refused.
std::optional<int> plOf(int tc) {
  const int pl = sourceToPl(tc);
  if (tc == 0 || pl > 1) return pl;
  return std::nullopt;
}

/// The source that the TV service reports for a window.
std::optional<int> toldSource(const Command& command) {
  int source = untold;
  if (command.tv.getCurrentSourceInfo(command.engine.active.source, source) < 1) return std::nullopt;
  return plOf(source);
}

std::optional<int> askCurrentSource(const Command& command) {
  int state = untold;
  const int answered = command.tv.getSourceState(command.engine.active.source, state);
  return answered == 1 && state != untold ? toldSource(command) : noSource;
}

/// The previous source as stored in the settings; nothing when reading fails or throws.
/// @param source  the value if the read reports success without writing one.
std::optional<int> recordedBefore(const Command& command, int source = 0) {
  return attempt(std::optional<int>(), [&] {
    const bool read = command.tv.getInt(command.engine.previousKey, source) == 0;
    return read ? std::optional(source) : std::nullopt;
  });
}

/// Notifies the middleware of the main window's source; for picture-in-picture that always fails.
bool tellMiddleware(const Command& command, int source) {
  if (command.engine.sourceKey != mainKey) return false;
  return attempt(false, [&] {
    const std::string widget = command.tv.appInfo(2, command.engine.widgetId);
    return command.tv.setText(middlewareKey, widget + ":" + std::to_string(source).substr(0, 3)) == 0;
  });
}

bool isWritten(const Command& command, const std::string& key, int source) {
  return command.tv.setInt(key, source) == 0;
}

/// Handles a source that the window already shows: nothing is switched, but keys that differ are corrected.
bool confirm(const Command& command, int source) {
  if (source == noSource && command.tv.deactivateSource(command.engine.active.source) < 1) return false;
  int stored = 0;
  if (command.tv.getInt(command.engine.sourceKey, stored) != 0 || stored == source) return true;
  return record(command, source, stored);
}

/// The id of the first service with a major number that has an id.
std::optional<std::uint64_t> serviceOfMajor(const Command& command, int major) {
  const Interface navigation = command.engine.active.navigation;
  if (!navigation) return std::nullopt;
  TCCriteriaHelper criteria;
  criteria.Fetch(Data::SERVICE_ID);
  criteria.Where(Data::MAJOR, major);
  std::vector<TCServiceData> services;
  if (listServices(command, navigation, criteria, services) < 1) return std::nullopt;
  for (const TCServiceData& service : services) {
    if (idOf(service) != noId) return idOf(service);
  }
  return std::nullopt;
}

bool showTvServiceSource(const Command& command, const std::string& appId, int source, int major) {
  const int tc = sourceToTc(source);
  if (tc == -1) return false;
  const Interface control = command.engine.active.source;
  if (major < 0) return command.tv.setSource(control, tc, appId) > 0;
  const auto service = serviceOfMajor(command, major);
  return service && command.tv.setSource(control, tc, *service, appId) > 0;
}

bool showIspSource(const Command& command) {
  return attempt(false, [&] { return command.tv.setSourceIsp() == 1; });
}

bool leaveTvService(const Command& command, int source) {
  if (source == ispSource && !showIspSource(command)) return false;
  return command.tv.deactivateSource(command.engine.active.source) > 0;
}

/// Switches the source, for all commands. @param major  major number of the service to show; negative for none.
bool switchTo(const Command& command, int source, int major) {
  if (!needSource(command)) return false;
  const auto current = currentSource(command);
  if (!current) return false;
  return attempt(false, [&] {
    if (*current == source) return confirm(command, source);
    const std::string appId = application(command);
    const bool ofTvService = source >= 0 && source <= lastTvServiceSource;
    const bool switched =
        ofTvService ? showTvServiceSource(command, appId, source, major) : leaveTvService(command, source);
    return switched && record(command, source, *current);
  });
}

}  // namespace

std::string application(const Command& command) {
  const std::string id = command.tv.appInfo(1, command.engine.appId);
  return id.empty() ? "NoAppId" : id;
}

std::optional<int> currentSource(const Command& command) {
  if (!needSource(command)) return std::nullopt;
  return attempt(std::optional<int>(), [&] { return askCurrentSource(command); });
}

bool showsIsp(const Command& command) {
  return attempt(false, [&] { return command.tv.getText("db/boot/last_service") == "isp-service"; });
}

bool record(const Command& command, int source, int previous) {
  return attempt(false, [&] {
    return isWritten(command, command.engine.previousKey, previous) && tellMiddleware(command, source) &&
           isWritten(command, command.engine.sourceKey, source);
  });
}

bool seedSources(const Command& command) {
  const auto source = currentSource(command);
  if (!source) return false;
  return attempt(false, [&] {
    if (!isWritten(command, mainKey, *source)) return false;
    const auto shown = toldSource(command);
    return shown && isWritten(command, previousMainKey, *shown) && isWritten(command, pipKey, tvSource);
  });
}

Reply getSource(const Command& command) {
  constexpr int preset = 101;
  if (seeksPrevious(command.number(0).value_or(2))) return recordedBefore(command).value_or(preset);
  return currentSource(command).value_or(-1);
}

Reply getPreviousSource(const Command& command) {
  if (!needSource(command)) return -1;
  return attempt(-1, [&] {
    int source = untold;
    if (command.tv.getPreviousSourceInfo(command.engine.active.source, source) < 1) return -1;
    return plOf(source).value_or(-1);
  });
}

Reply getSourceState(const Command& command) {
  if (!needSource(command)) return -1;
  return attempt(-1, [&] {
    int state = untold;
    return command.tv.getSourceState(command.engine.active.source, state) == 1 ? state : -1;
  });
}

Reply setSource(const Command& command) {
  auto source = command.number(0);
  if (!source || !command.engine.active.source) return -1;
  if (seeksPrevious(command.number(1).value_or(101))) source = recordedBefore(command, *source);
  return source && switchTo(command, *source, -1) ? 1 : 0;
}

Reply setSourceAndTune(const Command& command) {
  const auto source = command.number(0);
  const auto major = command.number(1);
  if (!source || !major || !command.engine.active.source) return -1;
  return switchTo(command, *source, *major) ? 1 : 0;
}

Reply setPreviousSource(const Command& command) {
  const auto source = recordedBefore(command);
  return source && switchTo(command, *source, -1) ? 1 : 0;
}

Reply disconnectSource(const Command& command) {
  return switchTo(command, noSource, -1) ? 1 : 0;
}

}  // namespace model
