// SPDX-License-Identifier: MIT
#include "rpc/Events.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "json/Write.h"
#include "rpc/EventJson.h"

namespace virtualtv::rpc {

namespace {

constexpr std::size_t usualSize = 512;  ///< memory of an event without long texts, with containers, in bytes

std::size_t sizeOf(const Event& event) {
  std::size_t size = usualSize;
  for (const auto& happening : event.happenings) size += device::sizeOf(*happening);
  return size;
}

}  // namespace

Events::Events(device::Device& device, std::function<void(Event&)> tell) : device_(device), tell_(std::move(tell)) {
  wants_.events = true;
  listen();
}

Events::~Events() {
  device_.unsubscribe(feed_);
}

/// Replacing the feed would lose waiting happenings, so call this only when nothing waits.
void Events::listen() {
  if (feed_) device_.unsubscribe(feed_);
  feed_ = device_.subscribe(wants_);
}

void Events::onWake(std::function<void()> wake) {
  wants_.wake = std::move(wake);
  listen();
}

void Events::hear(const TopicNames& topics) {
  const bool calls = wants_.calls || topics.contains("call");
  const int level = topics.contains("log") ? device::allLevels : wants_.logLevel;
  if (calls == wants_.calls && level == wants_.logLevel) return;
  tell(collect());
  wants_.calls = calls;
  wants_.logLevel = level;
  listen();
}

Events::Ran Events::collect() {
  Ran ran;
  for (const auto& happening : feed_->take().happenings) {
    if (const auto* command = std::get_if<device::CommandRun>(&happening->what)) {
      tellOfLog();
      ran.delay += command->delay;
      ran.commands.push_back(eventOf(happening));
    } else if (std::holds_alternative<framework::LogLine>(happening->what)) {
      addLogLine(happening);
    } else {
      add(eventOf(happening));
    }
  }
  tellOfLog();
  return ran;
}

void Events::tell(Ran ran) {
  for (Event& command : ran.commands) add(std::move(command));
}

void Events::tellOfSession(const std::string& session, const char* what) {
  Event event;
  event.topic = "session";
  event.revision = device_.revision();
  event.session = session;
  event.what = what;
  add(std::move(event));
}

Event Events::eventOf(const std::shared_ptr<const device::Happening>& happening) {
  Event event;
  event.topic = topicOf(*happening);
  event.revision = happening->revision;
  event.command = commandOf(*happening);
  event.time = happening->time;
  event.happenings.push_back(happening);
  return event;
}

void Events::addLogLine(const std::shared_ptr<const device::Happening>& happening) {
  const std::uint64_t command = commandOf(*happening);
  if (!log_.happenings.empty() && log_.command != command) tellOfLog();
  log_.happenings.push_back(happening);
  log_.topic = "log";
  log_.command = command;
  log_.revision = happening->revision;
}

void Events::tellOfLog() {
  if (!log_.happenings.empty()) add(std::exchange(log_, {}));
}

/// The events of a command and of its log messages are added late, after events with later revisions. Raising their
/// revision keeps revisions from decreasing.
void Events::add(Event event) {
  event.number = ++number_;
  revision_ = event.revision = std::max(event.revision, revision_);
  const std::size_t size = sizeOf(event);
  held_.emplace_back(std::move(event), size);
  bytes_ += size;
  tell_(held_.back().first);
  while (held_.size() > mostHeld || (bytes_ > mostBytes && held_.size() > 1)) {
    bytes_ -= held_.front().second;
    held_.pop_front();
  }
}

bool Events::holdsAfter(std::uint64_t number) const {
  return number <= number_ && (number == number_ || held_.front().first.number <= number + 1);
}

void Events::replay(std::uint64_t after, const std::function<void(Event&)>& take) {
  for (auto& [event, size] : held_) {
    if (event.number > after) take(event);
  }
}

std::shared_ptr<const std::string> Events::textOf(Event& event) const {
  if (event.text) return event.text;
  std::string text = R"({"jsonrpc":"2.0","method":"event","params":)";
  json::append(text, jsonOf(device_, event));
  event.text = std::make_shared<const std::string>(text += '}');
  return event.text;
}

}  // namespace virtualtv::rpc
