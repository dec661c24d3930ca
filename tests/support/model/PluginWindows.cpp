// SPDX-License-Identifier: MIT
// The plug-in's life, its interfaces and its windows.
#include "support/model/Plugin.h"

namespace model {

namespace {

constexpr int mainProfile = 1;
constexpr int pipProfile = 101;

const Operation& serviceFactory = op("TVServiceAPI::CreateService");
const Operation& navigationFactory = op("TVServiceAPI::CreateServiceNavigation");
const Operation& sourceFactory = op("TVServiceAPI::CreateSourceControl");
const Operation& videoFactory = op("TVServiceAPI::CreateVideoControl");
const Operation& avFactory = op("TVServiceAPI::CreateAVControl");
const Operation& auxFactory = op("TVServiceAPI::ServiceDataAux");
const Operation& dataFactory = op("TVServiceAPI::CreateDataControl");
const Operation& tunerFactory = op("TVServiceAPI::CreateTunerControl");

bool isMain(const Command& command) {
  return command.engine.window == 0;
}

int profileOf(const Command& command) {
  return isMain(command) ? mainProfile : pipProfile;
}

Interface tryToMake(const Platform& tv, const Operation& factory, std::optional<int> profile = std::nullopt) {
  return attempt(Interface(), [&] { return make(tv.calls, factory, profile); });
}

bool need(const Command& command, Interface& active, const Operation& factory) {
  if (!active) active = tryToMake(command.tv, factory, profileOf(command));
  return bool(active);
}

void useKeys(Engine& engine, bool main) {
  engine.sourceKey = main ? "db/emp/mainsource" : "db/emp/pipsource";
  engine.previousKey = main ? "db/emp/previousmainsource" : "db/emp/previouspipsource";
}

Proxies& ownProxies(const Command& command) {
  return isMain(command) ? command.engine.main : command.engine.pip;
}

/// Activates a window's own interface, creating it if it is missing. @return true when there is one. @throws Thrown
bool select(const Command& command, Interface Proxies::*proxy, const Operation& factory) {
  Interface& own = ownProxies(command).*proxy;
  if (!own) own = make(command.tv.calls, factory, profileOf(command));
  if (own) command.engine.active.*proxy = own;
  return bool(own);
}

/// Activates the data control. It is created for the main window even for picture-in-picture. An ordinary failure to
/// create it is ignored; an exception is not.
bool selectData(const Command& command) {
  Interface& own = ownProxies(command).data;
  command.engine.active.data = own;
  if (own) return true;
  own = make(command.tv.calls, dataFactory, mainProfile);
  command.engine.active.data = own;
  return true;
}

bool selectWindow(const Command& command) {
  return select(command, &Proxies::navigation, navigationFactory) && selectSource(command) &&
         select(command, &Proxies::video, videoFactory) && select(command, &Proxies::av, avFactory) &&
         select(command, &Proxies::aux, auxFactory) && selectData(command);
}

}  // namespace

Engine open(const Platform& tv, const std::string& appId, const std::string& widgetId) {
  Engine engine;
  engine.service = tryToMake(tv, serviceFactory);
  engine.main.source = tryToMake(tv, sourceFactory, mainProfile);
  engine.main.navigation = tryToMake(tv, navigationFactory, mainProfile);
  engine.main.av = tryToMake(tv, avFactory, mainProfile);
  engine.main.aux = tryToMake(tv, auxFactory, mainProfile);
  engine.active = engine.main;
  engine.active.video = tryToMake(tv, videoFactory, mainProfile);  // not stored for the window, like the data control
  engine.tuner = tryToMake(tv, tunerFactory, mainProfile);
  engine.active.data = tryToMake(tv, dataFactory, mainProfile);
  useKeys(engine, true);
  const Proxies& made = engine.active;
  if (engine.service && made.source && made.navigation && made.av && made.aux && made.video && engine.tuner &&
      made.data) {
    engine.window = 0;
    seedSources({tv, engine, {}, {}});
  }
  engine.appId = appId;  // set last
  engine.widgetId = widgetId;
  return engine;
}

/// Both the engine and the worker release the manager.
void close(const Platform& tv) {
  for (int times = 0; times < 2; ++times) {
    attempt(false, [&] {
      tv.destroyInstance();
      return true;
    });
  }
}

bool needService(const Command& command) {
  if (!command.engine.service) command.engine.service = tryToMake(command.tv, serviceFactory);
  return bool(command.engine.service);
}
bool needNavigation(const Command& command) {
  return need(command, command.engine.active.navigation, navigationFactory);
}
bool needSource(const Command& command) {
  return need(command, command.engine.active.source, sourceFactory);
}
bool needVideo(const Command& command) {
  return need(command, command.engine.active.video, videoFactory);
}
bool needAv(const Command& command) {
  return need(command, command.engine.active.av, avFactory);
}
bool needAux(const Command& command) {
  return need(command, command.engine.active.aux, auxFactory);
}
bool needData(const Command& command) {
  return need(command, command.engine.active.data, dataFactory);
}
bool needTuner(const Command& command) {
  return need(command, command.engine.tuner, tunerFactory);
}

bool selectSource(const Command& command) {
  if (!select(command, &Proxies::source, sourceFactory)) return false;
  useKeys(command.engine, isMain(command));
  return true;
}

Reply setWindow(const Command& command) {
  command.engine.window = command.decimal(0);
  return attempt(0, [&] { return selectWindow(command) ? 1 : 0; });
}

}  // namespace model
