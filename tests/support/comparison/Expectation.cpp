// SPDX-License-Identifier: MIT
#include "support/comparison/Expectation.h"

#include <map>
#include <set>

#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "set/Tv.h"
#include "shell/Lines.h"
#include "shell/Show.h"
#include "store/SettingsStore.h"

namespace comparison {

namespace {

using virtualtv::Tv;

/// Lines that ask for values, each with its expected output.
using Answers = std::map<std::string, std::string>;

void addKnob(Answers& answers, Tv& tv, const std::string& name) {
  answers[".get " + name] = virtualtv::shell::oneLine(name + " = " + virtualtv::getKnob(tv, name));
}

Answers answersOf(Tv& tv, const model::Set& set, const Parts& parts) {
  Answers answers;
  if (parts.state) {
    for (const std::string& name : virtualtv::knobNames(tv)) addKnob(answers, tv, name);
  }
  if (parts.services) {
    for (const auto& [key, service] : set.services) {
      for (const char* const field : {"audio", "subtitles", "favourites"}) {
        addKnob(answers, tv, "service.#" + std::to_string(key) + "." + field);
      }
    }
  }
  return answers;
}

void turnToModel(Tv& tv, const model::Set& set, const Parts& parts) {
  if (parts.state) {
    tv.adjust([&](virtualtv::TvState& state) { state = set.state; });
  }
  if (!parts.services) return;
  for (const auto& [key, service] : set.services) {
    tv.setAudioTracks(key, service.audio);
    tv.setSubtitleTracks(key, service.subtitles);
    tv.setFavouritesOf(key, service.favourites);
  }
}

/// The knob lines to run, and their expected output according to the model.
std::string knobLines(Pair& pair, const Parts& parts, bool asksAll) {
  const model::Set& set = pair.world().set;
  const Answers actual = answersOf(pair.tv(), set, parts);
  turnToModel(pair.tv(), set, parts);
  std::string lines;
  for (const auto& [input, answer] : answersOf(pair.tv(), set, parts)) {
    if (asksAll || actual.at(input) != answer) lines += "> " + input + "\n" + answer + "\n";
  }
  return lines;
}

std::string keyLine(const std::map<std::string, model::Setting>& settings, const std::string& key) {
  const auto found = settings.find(key);
  return found == settings.end() ? "unset" : virtualtv::shell::show(found->second);
}

std::string keyLines(Pair& pair, bool asksAll) {
  const auto actual = pair.tv().settings().list();
  const auto& expected = pair.world().set.settings;
  std::set<std::string> keys;
  for (const auto& [key, value] : actual) keys.insert(key);
  for (const auto& [key, value] : expected) keys.insert(key);
  std::string lines;
  for (const std::string& key : keys) {
    const std::string answer = keyLine(expected, key);
    if (asksAll || answer != keyLine(actual, key)) lines += "> .vconf get " + key + "\n" + answer + "\n";
  }
  return lines;
}

std::string traceOf(const model::Made& made) {
  return "call " + virtualtv::shell::oneLine(virtualtv::seam::line(callOf(made))) + "\n";
}

}  // namespace

std::string expectationOf(Pair& pair, const std::string& line, const Parts& parts, bool asksAll) {
  std::string text = parts.calls ? "> .trace on\n" : "";
  text += "> " + line + "\n";
  if (pair.expected()) text += shown(*pair.expected()) + "\n";
  if (parts.calls) {
    for (const model::Made& made : pair.world().calls.made) text += traceOf(made);
    text += "> .trace off\n";
  }
  return text + knobLines(pair, parts, asksAll) + (parts.settings ? keyLines(pair, asksAll) : "");
}

}  // namespace comparison
