// SPDX-License-Identifier: MIT
#include "device/Session.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <utility>

namespace virtualtv::device {

namespace {

constexpr char mark = ':';  // separates the names of session and engine

/// Sorts happenings into a deed. Several changes of one key become one change, or none.
class DeedWriter {
 public:
  void add(const Happening& happening) {
    if (const auto* call = std::get_if<seam::Call>(&happening.what)) deed_.calls.push_back(*call);
    if (const auto* line = std::get_if<framework::LogLine>(&happening.what)) deed_.log.push_back(*line);
    const auto* change = std::get_if<Change>(&happening.what);
    const auto* key = change == nullptr ? nullptr : std::get_if<SettingChanged>(change);
    if (key != nullptr) keys_.try_emplace(key->key, *key).first->second.after = key->after;
  }
  Deed take() {
    for (auto& [name, key] : keys_) {
      if (key.before != key.after) deed_.keys.push_back(std::move(key));
    }
    return std::move(deed_);
  }

 private:
  Deed deed_;
  std::map<std::string, SettingChanged> keys_;
};

}  // namespace

Session::Session(Device& device, std::string name) : device_(device), name_(std::move(name)) {}

Session::~Session() {
  closeEngines("session ended");
}

std::string Session::key(const std::string& engine) const {
  if (name_.empty() && engine.find(mark) == std::string::npos) return framework::engineKey(engine);
  return framework::engineKey(name_ + mark + engine);
}

std::optional<std::string> Session::engineOf(const std::string& key) const {
  const std::size_t longestFront = name_.size() + 2;  // the mark, and the character that the framework puts before a
                                                      // '#'
  for (std::size_t start = 0; start <= std::min(key.size(), longestFront); ++start) {
    if (std::string engine = key.substr(start); this->key(engine) == key) return engine;
  }
  return std::nullopt;
}

std::vector<std::string> Session::openEngines() {
  std::vector<std::string> names;
  for (const auto& [engine, application] : applications_) {
    if (device_.host().isOpen(key(engine))) names.push_back(engine);
  }
  return names;
}

void Session::use(const std::string& engine) {
  const std::string before = std::exchange(engine_, engine);
  try {
    openEngine(key(engine_));
  } catch (...) {
    engine_ = before;
    throw;
  }
}

void Session::reopen() {
  const std::string key = this->key(engine_);
  device_.host().close(key, "reopened");
  openEngine(key);
}

bool Session::close(const std::string& engine) {
  return device_.host().close(key(engine));
}

void Session::setApplication(const Application& application) {
  applications_[engine_] = application;
  const std::string name = key(engine_);
  if (!device_.host().setClient(name, {0, application.appId, application.widgetId, ""})) return;
  device_.tell(ApplicationGiven{name, application.appId, application.widgetId});
}

bool Session::execute(const std::vector<std::string>& words, bool list, std::string& ret) {
  if (words.empty()) throw std::invalid_argument("a command is wanted");
  if (!list && words.size() > 1 + mostParameters) {
    throw TooManyParameters(words[0] + ": " + std::to_string(words.size() - 1) + " parameters, at most " +
                            std::to_string(mostParameters) + " are passed");
  }
  const std::string key = this->key(engine_);
  if (!device_.isHeard()) return run(key, words, list, ret);
  using Clock = std::chrono::steady_clock;
  const std::uint64_t clock = device_.tv().state().clock;
  const Clock::time_point start = Clock::now();
  CommandRun command{.session = name_, .engine = engine_, .words = words, .list = list};
  const std::uint64_t number = device_.begin();
  const std::uint64_t runBefore = commands_;
  const auto tell = [&] {
    command.took = Clock::now() - start;
    command.delay = device_.tv().state().clock - clock;
    command.caller = {key, device_.host().commands(key)};
    device_.tell(std::move(command));
    if (device_.history() != nullptr && commands_ != runBefore) lastCommand_ = number;
  };
  try {
    command.accepted = run(key, words, list, ret);
  } catch (...) {
    tell();
    throw;
  }
  command.reply = ret;
  const bool accepted = *command.accepted;
  tell();
  return accepted;
}

bool Session::run(const std::string& key, const std::vector<std::string>& words, bool list, std::string& ret) {
  openEngine(key);
  ++commands_;
  return device_.host().execute(key, [&](kel::CEmpEngineBase& engine) {
    if (list) return engine.ExecuteWithParamList(ret, words[0], kel::ParamList({words.begin() + 1, words.end()}));
    std::array<std::string, mostParameters> p;
    std::copy(words.begin() + 1, words.end(), p.begin());
    return engine.Execute(ret, words[0], p[0], p[1], p[2], p[3]);
  });
}

void Session::closeEngines(const std::string& why) {
  for (const std::string& engine : openEngines()) device_.host().close(key(engine), why);
}

void Session::forget() {
  engine_ = firstEngine;
  applications_.clear();
  lastCommand_ = 0;
}

Deed Session::observe(const std::function<void()>& step, std::exception_ptr& thrown) {
  const std::shared_ptr<Feed> feed = device_.subscribe({.events = true, .calls = true, .logLevel = allLevels});
  const std::uint64_t before = commands_;
  try {
    step();
  } catch (...) {
    thrown = std::current_exception();
  }
  device_.unsubscribe(feed);
  DeedWriter writer;
  for (const auto& happening : feed->take().happenings) writer.add(*happening);
  Deed deed = writer.take();
  deed.ran = commands_ != before;
  deed.engine = engine_;
  deed.command = device_.host().commands(key(engine_));
  return deed;
}

std::optional<Session::Recalled> Session::recall(std::uint64_t command) const {
  const History* const history = device_.history();
  Recalled recalled;
  DeedWriter writer;
  const auto take = [&](const Happening& happening) {
    writer.add(happening);
    const auto* const run = std::get_if<CommandRun>(&happening.what);
    if (run == nullptr) return;
    recalled = {run->words, run->list, writer.take()};
    recalled.deed.engine = run->engine;
    recalled.deed.command = run->caller.command;
    recalled.deed.ran = true;
  };
  if (history == nullptr || !history->replay(command, take)) return std::nullopt;
  return recalled;
}

/// Opens the engine in use, unless it is open, and adds it to `applications_`, where `openEngines` looks for engines.
void Session::openEngine(const std::string& key) {
  device_.tv();
  if (device_.host().isOpen(key)) return;
  if (openEngines().size() >= mostEngines_) {
    throw std::invalid_argument("the session has " + std::to_string(mostEngines_) + " engines open, as many as may be");
  }
  const Application& application = applications_[engine_];
  if (!device_.host().open(key, {0, application.appId, application.widgetId, ""})) {
    throw std::runtime_error("engine '" + engine_ + "' could not be opened");
  }
}

}  // namespace virtualtv::device
