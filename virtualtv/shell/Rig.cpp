#include "shell/Rig.h"

#include <array>
#include <exception>
#include <stdexcept>
#include <utility>

#include "framework/Host.h"
#include "store/StoreError.h"

namespace virtualtv::shell {

namespace {

using framework::LogLine;
using seam::Seam;

constexpr int allLevels = 3;
constexpr std::size_t parameterLimit = 4;

using Settings = std::map<std::string, Setting>;

std::optional<Setting> valueIn(const Settings& settings, const std::string& key) {
  const auto found = settings.find(key);
  return found == settings.end() ? std::nullopt : std::optional(found->second);
}

std::vector<KeyChange> changes(const Settings& before, const Settings& after) {
  std::set<std::string> keys;
  for (const auto& [key, value] : before) keys.insert(key);
  for (const auto& [key, value] : after) keys.insert(key);
  std::vector<KeyChange> changed;
  for (const std::string& key : keys) {
    KeyChange change{key, valueIn(before, key), valueIn(after, key)};
    if (change.before != change.after) changed.push_back(std::move(change));
  }
  return changed;
}

}  // namespace

Rig::Rig(kel::CEmpAppBase& app, Storage& storage) : app_(app), storage_(storage) {
  switchOn();
  framework::setLogLevel(allLevels);
  framework::setLogListener([this](const LogLine& line) {
    log_.push_back(line);
    if (told_ && line.level <= toldLevel_) told_(line);
  });
}

Rig::~Rig() {
  switchOff();
  framework::setLogListener({});
  framework::setLogLevel(-1);
  Seam::instance().reset();
}

Tv& Rig::tv() {
  if (!tv_) throw std::runtime_error("the set is off, it could not be started");
  return *tv_;
}

void Rig::tellLog(int level, std::function<void(const LogLine&)> listener) {
  toldLevel_ = level;
  told_ = std::move(listener);
}

void Rig::use(const std::string& engine) {
  const std::string before = std::exchange(engine_, engine);
  try {
    openEngine();
  } catch (...) {
    engine_ = before;
    throw;
  }
}

void Rig::reopen() {
  if (open_.erase(engine_) > 0) app_.Close(engine_, kel::EmpType::type{});
  openEngine();
}

void Rig::setApplication(const Application& application) {
  applications_[engine_] = application;
  framework::Host::of(app_).setClient(framework::engineKey(engine_), {0, application.appId, application.widgetId, ""});
}

bool Rig::execute(const std::vector<std::string>& words, bool list, std::string& ret) {
  if (words.empty()) throw std::invalid_argument("a command is wanted");
  const std::vector<std::string> parameters(words.begin() + 1, words.end());
  if (!list && parameters.size() > parameterLimit) {
    throw std::invalid_argument(words[0] + ": " + std::to_string(parameters.size()) + " parameters, at most " +
                                std::to_string(parameterLimit) + " are passed");
  }
  openEngine();
  if (list) return app_.ExecuteWithParamList(ret, engine_, words[0], kel::ParamList(parameters));
  std::array<std::string, parameterLimit> p;
  for (std::size_t at = 0; at < parameters.size(); ++at) p[at] = parameters[at];
  return app_.Execute(ret, engine_, words[0], p[0], p[1], p[2], p[3]);
}

void Rig::closeEngines() {
  app_.Destroy();
  open_.clear();
}

void Rig::restart() {
  switchOff();
  switchOn();
}

void Rig::reset() {
  closeEngines();
  tv().reset();
  engine_ = firstEngine;
  applications_.clear();
  restart();
}

Deed Rig::watch(const std::function<void()>& step, std::exception_ptr& thrown) {
  takeCalls();
  log_.clear();
  const Settings before = settings();
  try {
    step();
  } catch (...) {
    thrown = std::current_exception();
  }
  Deed deed;
  deed.engine = engine_;
  deed.command = framework::Host::of(app_).commands(framework::engineKey(engine_));
  deed.calls = takeCalls();
  deed.log = std::exchange(log_, {});
  deed.keys = changes(before, settings());
  return deed;
}

std::vector<std::string> Rig::takeComplaints() {
  std::vector<std::string> complaints = std::exchange(complaints_, {});
  if (tv_) {
    for (std::string& complaint : tv_->takeComplaints()) complaints.push_back(std::move(complaint));
  }
  return complaints;
}

void Rig::switchOn() {
  Seam::instance().reset();
  tv_.emplace(storage_);
  Seam::instance().record(true);
}

void Rig::switchOff() {
  closeEngines();
  calls_ = takeCalls();
  complaints_ = takeComplaints();
  tv_.reset();
}

std::vector<seam::Call> Rig::takeCalls() {
  std::vector<seam::Call> calls = std::exchange(calls_, {});
  for (seam::Call& call : Seam::instance().take()) calls.push_back(std::move(call));
  return calls;
}

void Rig::openEngine() {
  tv();
  if (open_.count(engine_) > 0) return;
  const Application& application = applications_[engine_];
  if (!app_.Open(engine_, application.appId, application.widgetId, "")) {
    throw std::runtime_error("engine '" + engine_ + "' could not be opened");
  }
  open_.insert(engine_);
}

/// What can't be read shows where the plug-in or the user reads it.
std::map<std::string, Setting> Rig::settings() {
  if (!tv_) return {};
  try {
    return tv_->settings().list();
  } catch (const StoreError&) {
    return {};
  }
}

}  // namespace virtualtv::shell
