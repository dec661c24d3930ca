// The plug-in's windows and sources.
#include "support/model/Numbers.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

constexpr const char* mainKey = "db/emp/mainsource";
constexpr const char* previousMainKey = "db/emp/previousmainsource";
constexpr const char* pipKey = "db/emp/pipsource";
constexpr const char* previousPipKey = "db/emp/previouspipsource";
constexpr const char* middlewareKey = "db/kel/current_source_type";

constexpr int lastTvServiceSource = 42;

bool isMain(const Command& command) {
  return command.engine.window == WindowId::main;
}

std::string previousKey(const Command& command) {
  return isMain(command) ? previousMainKey : previousPipKey;
}

bool seeksPrevious(int seek) {
  return seek == 6 || seek == 8 || seek == 9;
}

/// A source of the TV service as web applications count; 0 is the TV, all else that has no number of its own is
/// refused.
std::optional<int> plOf(int tc) {
  const int pl = sourceToPl(tc);
  if (tc == 0 || pl > 1) return pl;
  return std::nullopt;
}

/// The source that the TV service tells for a window.
std::optional<int> told(int tc) {
  return tc < 0 ? std::nullopt : plOf(tc);
}

std::optional<int> sourceOf(const virtualtv::WindowState& window) {
  if (window.sourceState == virtualtv::SOURCE_STATE_NONE) return noSource;
  return told(window.source);
}

/// The window already shows the source: nothing is switched, keys that disagree are repaired.
bool confirm(const Command& command, int source) {
  if (source == noSource) deactivate(command.set, command.engine.window);
  const auto stored = readInt(command.set, sourceKey(command));
  if (!stored || *stored == source) return true;
  return record(command, source, *stored);
}

/// The first service of a major number that has an id.
std::optional<ServiceKey> serviceOfMajor(const Command& command, int major) {
  for (const ServiceKey key : listed(command.set, {equals(Data::MAJOR, major)})) {
    const auto id = number(*at(command.set, key), Data::SERVICE_ID);
    if (id && *id != ~std::uint64_t{0}) return keyOf(command.set, *id);
  }
  return std::nullopt;
}

bool showTvServiceSource(const Command& command, int source, int major) {
  const int tc = sourceToTc(source);
  if (tc == -1) return false;
  if (major < 0) return switchSource(command.set, command.engine.window, tc);
  const auto service = serviceOfMajor(command, major);
  return service && switchSource(command.set, command.engine.window, tc, service);
}

bool leaveTvService(const Command& command, int source) {
  if (source == ispSource && !showIsp(command.set)) return false;
  deactivate(command.set, command.engine.window);
  return true;
}

/// The switch behind all commands. @param major  of the service to show, negative for none.
bool switchTo(const Command& command, int source, int major) {
  const auto current = currentSource(command);
  if (!current) return false;
  if (*current == source) return confirm(command, source);
  const bool ofTvService = source >= 0 && source <= lastTvServiceSource;
  const bool switched = ofTvService ? showTvServiceSource(command, source, major) : leaveTvService(command, source);
  return switched && record(command, source, *current);
}

}  // namespace

std::optional<int> currentSource(const Command& command) {
  return sourceOf(command.window());
}

bool showsIsp(const Set& set) {
  const auto found = set.settings.find("db/boot/last_service");
  return found != set.settings.end() && found->second == Setting("isp-service");
}

std::string sourceKey(const Command& command) {
  return isMain(command) ? mainKey : pipKey;
}

bool record(const Command& command, int source, int previous) {
  write(command.set, previousKey(command), previous);
  if (!isMain(command)) return false;  // only the main window's source is told to the middleware
  write(command.set, middlewareKey, command.engine.widgetId + ":" + std::to_string(source).substr(0, 3));
  write(command.set, mainKey, source);
  return true;
}

Engine open(Set& set, const std::string& widgetId) {
  Engine engine{widgetId, WindowId::main, {}};
  const virtualtv::WindowState& window = set.state[WindowId::main];
  const auto source = sourceOf(window);
  if (!source) return engine;
  write(set, mainKey, *source);
  const auto shown = told(window.source);
  if (!shown) return engine;
  write(set, previousMainKey, *shown);
  write(set, pipKey, tvSource);
  return engine;
}

Reply setWindow(const Command& command) {
  command.engine.window = command.decimal(0) == 0 ? WindowId::main : WindowId::pip;
  return 1;
}

Reply getSource(const Command& command) {
  constexpr int untold = 101;
  if (seeksPrevious(command.number(0).value_or(2))) {
    return readInt(command.set, previousKey(command)).value_or(untold);
  }
  return currentSource(command).value_or(-1);
}

Reply getPreviousSource(const Command& command) {
  return told(command.window().previousSource).value_or(-1);
}

Reply getSourceState(const Command& command) {
  return command.window().sourceState;
}

Reply setSource(const Command& command) {
  auto source = command.number(0);
  if (!source) return -1;
  if (seeksPrevious(command.number(1).value_or(101))) source = readInt(command.set, previousKey(command));
  return source && switchTo(command, *source, -1) ? 1 : 0;
}

Reply setSourceAndTune(const Command& command) {
  const auto source = command.number(0);
  const auto major = command.number(1);
  if (!source || !major) return -1;
  return switchTo(command, *source, *major) ? 1 : 0;
}

Reply setPreviousSource(const Command& command) {
  const auto source = readInt(command.set, previousKey(command));
  return source && switchTo(command, *source, -1) ? 1 : 0;
}

Reply disconnectSource(const Command& command) {
  return switchTo(command, noSource, -1) ? 1 : 0;
}

}  // namespace model
