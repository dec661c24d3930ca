// SPDX-License-Identifier: MIT
#include "support/comparison/Comparison.h"

#include <algorithm>

#include "EmpAppWindow.h"
#include "device/Session.h"
#include "seam/Seam.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "set/Tv.h"
#include "shell/Transcript.h"
#include "store/SettingsStore.h"
#include "support/Assembly.h"
#include "support/comparison/Expectation.h"

namespace comparison {

namespace {

using model::Service;
using model::ServiceKey;
using model::Set;
using model::Words;
using virtualtv::framework::LogLine;

/// True for a line that changes more than the fields of a service.
bool changesServices(const std::string& line) {
  if (line.starts_with("UpdateFavorites")) return true;
  if (!line.starts_with(".set service.")) return false;
  return line.find(".audio ") != std::string::npos || line.find(".subtitles ") != std::string::npos ||
         line.find(".favourites ") != std::string::npos;
}

Set copyOf(virtualtv::Tv& tv) {
  Set set;
  set.state = tv.state();
  set.settings = tv.settings().list();
  for (const ServiceKey key : tv.services().keys()) set.services[key] = *tv.services().read(key);
  return set;
}

std::string difference(const std::string& what, const std::string& expected, const std::string& actual) {
  return what + ", by the model:\n" + expected + what + ", really:\n" + actual;
}

virtualtv::Setting settingOf(const Words& words) {
  if (words.at(3) == "int") return std::stoi(words.at(4));
  return words.at(4);
}

}  // namespace

/// The plug-in, its engines and its set.
class Pair::Plugin {
 public:
  virtualtv::device::Device& device() { return television_.device; }

  /// Returns to the initial state.
  void reset() {
    device().reset();
    client_.forget();
  }

  /// @return the engine's answer; nothing for a line that is not for an engine.
  std::optional<Answer> run(const Words& words) {
    if (words.at(0).front() == '.') {
      speakToSet(words);
      return std::nullopt;
    }
    const bool list = words[0] == "+";
    Answer answer;
    answer.accepted = client_.execute({words.begin() + (list ? 1 : 0), words.end()}, list, answer.encoded);
    return answer;
  }

 private:
  void speakToSet(const Words& words) {
    if (words[0] == ".engine") {
      client_.use(words.at(1));
    } else if (words[0] == ".reopen") {
      client_.reopen();
    } else if (words[0] == ".app") {
      client_.setApplication({words.at(1), words.size() > 2 ? words[2] : ""});
    } else if (words[0] == ".set") {
      virtualtv::setKnob(television_.tv(), words.at(1), words.at(2));
    } else if (words[0] == ".vconf") {
      television_.tv().setSetting(words.at(2), settingOf(words));
    } else if (words.at(1) == "clear") {
      device().clearFaults();
    } else {
      device().addFault(virtualtv::seam::parseFault({words.begin() + 1, words.end()}));
    }
  }

  support::Assembly<kel::CEmpAppWindow> television_;
  virtualtv::device::Session client_{television_.device};
};

Pair::Pair() : plugin_(std::make_unique<Plugin>()), first_(copyOf(tv())) {
  world_.set = first_;
  recorded_ = plugin_->device().subscribe({.calls = true});
}

/// The plug-in still logs during its destruction, after the kept lines are gone.
Pair::~Pair() {
  keepLog(false);
}

virtualtv::Tv& Pair::tv() {
  return plugin_->device().tv();
}

void Pair::keepLog(bool keep) {
  constexpr int everything = 3;
  keepsLog_.end();
  if (keep)
    keepsLog_ = virtualtv::framework::listenToLog(everything, [this](const LogLine& line) { log_.push_back(line); });
}

void Pair::restart() {
  plugin_->reset();
  world_ = {};
  world_.set = first_;
  takeCalls();
}

void Pair::restart(const std::vector<Service>& services) {
  restart();
  tv().import(services, false);
  world_.set = copyOf(tv());
}

void Pair::takeCalls() {
  calls_.clear();
  for (const auto& happening : recorded_->take().happenings) {
    calls_.push_back(std::get<virtualtv::seam::Call>(happening->what));
  }
}

void Pair::turnTo(const Set& set) {
  for (const auto& [key, wanted] : set.services) {
    const Service& present = world_.set.services.at(key);
    if (present.audio != wanted.audio) tv().setAudioTracks(key, wanted.audio);
    if (present.subtitles != wanted.subtitles) tv().setSubtitleTracks(key, wanted.subtitles);
    if (present.favourites != wanted.favourites) tv().setFavouritesOf(key, wanted.favourites);
  }
  for (const auto& [key, value] : world_.set.settings) {
    if (!set.settings.contains(key)) tv().removeSetting(key);
  }
  for (const auto& [key, value] : set.settings) {
    const auto present = world_.set.settings.find(key);
    if (present == world_.set.settings.end() || present->second != value) tv().setSetting(key, value);
  }
  if (world_.set.state != set.state) {
    tv().adjust([&](virtualtv::TvState& state) { state = set.state; });
  }
  world_.set = set;
}

std::string Pair::run(const std::string& line, Depth depth) {
  const Words words = virtualtv::shell::splitWords(line);
  log_.clear();
  differing_ = {};
  answer_ = plugin_->run(words);
  takeCalls();
  world_.calls.notesOutputs = notesOutputs_;
  const auto reply = model::run(world_, words);
  expected_ = reply ? std::optional(answerOf(*reply)) : std::nullopt;
  std::string details;
  if (answer_ != expected_) details += difference("reply", shown(expected_.value()) + "\n", shown(*answer_) + "\n");
  differing_.calls = !areSame(calls_, world_.calls.made);
  if (differing_.calls) details += difference("calls", linesOf(world_.calls.made), linesOf(calls_));
  differing_.state = tv().state() != world_.set.state;
  if (differing_.state) details += difference("state", shown(world_.set.state), shown(tv().state()));
  if (depth != Depth::state) details += compareKept(changesServices(line) ? Depth::services : depth);
  return details;
}

std::string Pair::compareKept(Depth depth) {
  std::string details;
  const auto settings = tv().settings().list();
  differing_.settings = settings != world_.set.settings;
  if (differing_.settings) details += difference("keys", shown(world_.set.settings), shown(settings));
  return depth == Depth::services ? details + compareServices() : details;
}

/// Compares the services except their fields, which knob lines compare.
std::string Pair::compareServices() {
  std::string details;
  for (const auto& [key, expected] : world_.set.services) {
    const Service actual = tv().services().read(key).value();
    const bool agree = actual.audio == expected.audio && actual.subtitles == expected.subtitles &&
                       actual.favourites == expected.favourites;
    if (!agree) details += difference("service #" + std::to_string(key), shown(expected), shown(actual));
  }
  differing_.services = !details.empty();
  return details;
}

model::Set startingSet() {
  virtualtv::Storage storage;
  virtualtv::Tv tv(storage);
  return copyOf(tv);
}

std::optional<Difference> compare(Pair& pair, const Script& script, Replies* replies,
                                  const std::function<void(model::World&)>& spoil) {
  if (spoil) spoil(pair.world());
  pair.noteOutputs(true);
  std::string transcript;
  for (std::size_t line = 0; line < script.size(); ++line) {
    const bool last = line + 1 == script.size();
    const std::string details = pair.run(script[line], last ? Depth::services : Depth::settings);
    if (!details.empty()) {
      return Difference{line, transcript + expectationOf(pair, script[line], pair.differing()), details};
    }
    transcript += expectationOf(pair, script[line], {});
    if (replies == nullptr) continue;
    const std::string reply = pair.expected() ? shown(*pair.expected()) : "";
    (*replies)[script[line].substr(0, script[line].find(' '))].insert(reply);
  }
  return std::nullopt;
}

std::optional<Difference> compare(const Script& script, Replies* replies,
                                  const std::function<void(model::World&)>& spoil) {
  Pair pair;
  return compare(pair, script, replies, spoil);
}

Script shrunk(Script script, const std::function<bool(const Script&)>& fails) {
  for (std::size_t size = std::max<std::size_t>(script.size() / 2, 1); size > 0;) {
    bool dropped = false;
    for (std::size_t end = script.size(); end > 0;) {
      const std::size_t start = end > size ? end - size : 0;
      Script rest(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(start));
      rest.insert(rest.end(), script.begin() + static_cast<std::ptrdiff_t>(end), script.end());
      if (fails(rest)) {
        script = std::move(rest);
        dropped = true;
      }
      end = start;
    }
    if (!dropped || size > 1) size = size == 1 ? 0 : size / 2;
  }
  return script;
}

}  // namespace comparison
