#include "set/Tv.h"

#include <stdexcept>
#include <utility>

#include "seam/Seam.h"
#include "set/EmbeddedSet.h"
#include "set/Keeping.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

Tv* theSet = nullptr;

/// The settings keys that the platform itself has written by the time that the plug-in starts.
void writePlatformKeys(SettingsStore& settings) {
  settings.set("db/boot/last_service", std::string("tv-service"));
}

}  // namespace

Tv::Tv(Storage& storage) : storage_(storage), state_(embeddedSet().state) {
  if (theSet != nullptr) throw std::logic_error("a process has one set at a time");
  const auto kept = storage_.parts().state.all();
  if (kept.empty()) {
    loadEmbedded();
  } else {
    restore(kept, state_);
  }
  theSet = this;
  seam::Seam::instance().onDelay([this](std::uint64_t milliseconds) { pass(milliseconds); });
  announce(Event::Kind::started, WindowId::main);
}

Tv::~Tv() {
  seam::Seam::instance().onDelay({});
  theSet = nullptr;
}

Tv& Tv::current() {
  if (theSet == nullptr) throw std::logic_error("there is no set");
  return *theSet;
}

ServiceStore& Tv::services() {
  return storage_.parts().services;
}
SettingsStore& Tv::settings() {
  return storage_.parts().settings;
}

void Tv::watch(std::function<void(const Event&)> watcher) {
  watchers_.push_back(std::move(watcher));
}

void Tv::tune(WindowId window, ServiceKey service) {
  TvState next = state_;
  if (next[window].service != service) next[window].previousService = next[window].service;
  next[window].service = service;
  commit(Event::Kind::tuned, window, std::move(next));
}

void Tv::setMode(WindowId window, TvMode mode) {
  TvState next = state_;
  next[window].mode = mode;
  commit(Event::Kind::modeChanged, window, std::move(next));
}

void Tv::import(const std::vector<Service>& services, bool add) {
  if (services.empty()) throw std::invalid_argument("there are no services to import");
  Transaction transaction(storage_.parts().database, "import services");
  if (add) {
    this->services().merge(services);
  } else {
    this->services().replaceAll(services);
  }
  const Service& first = services.front();
  TvState next = state_;
  next.startServiceId = first.numbers.at(TCServiceData::SERVICE_ID);
  next.startSource = SOURCE_TV;
  const TvMode mode{static_cast<int>(first.numbers.at(TCServiceData::ANTENNA_MODE)), 0};
  for (const WindowId window : windowIds) {
    next[window].mode = mode;
    if (add) continue;
    next[window].service = 0;
    next[window].previousService = 0;
  }
  WindowState& main = next[WindowId::main];
  if (add) main.previousService = main.service;
  main.service = this->services().keyOf(next.startServiceId).value_or(0);
  storage_.parts().state.setAll(keptOf(next));
  transaction.commit();
  state_ = std::move(next);
  announce(Event::Kind::servicesChanged, WindowId::main);
}

void Tv::loadEmbedded() {
  Storage::Parts& parts = storage_.parts();
  const SetDescription& set = embeddedSet();
  Transaction transaction(parts.database, "set up the embedded set");
  for (const auto& [key, value] : parts.settings.list()) parts.settings.unset(key);
  writePlatformKeys(parts.settings);
  parts.services.replaceAll(set.services);
  TvState next = set.state;
  next[WindowId::main].service = parts.services.keyOf(set.currentId).value_or(0);
  next[WindowId::main].previousService = parts.services.keyOf(set.previousId).value_or(0);
  parts.state.setAll(keptOf(next));
  transaction.commit();
  state_ = std::move(next);
}

void Tv::reset() {
  loadEmbedded();
  announce(Event::Kind::servicesChanged, WindowId::main);
}

void Tv::adjust(WindowId window, const std::function<void(TvState&)>& change) {
  TvState next = state_;
  change(next);
  commit(Event::Kind::adjusted, window, std::move(next));
}

void Tv::pass(std::uint64_t milliseconds) {
  state_.clock += milliseconds;
}

std::vector<std::string> Tv::takeComplaints() {
  return std::exchange(complaints_, {});
}
void Tv::complain(std::string line) {
  complaints_.push_back(std::move(line));
}

void Tv::commit(Event::Kind kind, WindowId window, TvState next) {
  storage_.parts().state.setAll(keptOf(next));
  state_ = std::move(next);
  announce(kind, window);
}

void Tv::announce(Event::Kind kind, WindowId window) {
  const Event event{kind, window, ++revision_};
  for (const auto& watcher : watchers_) watcher(event);
}

}  // namespace virtualtv
