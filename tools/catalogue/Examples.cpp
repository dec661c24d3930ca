// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <algorithm>
#include <exception>
#include <set>

#include "shell/Transcript.h"

namespace catalogue {

namespace {

using virtualtv::shell::Scene;
using virtualtv::shell::Step;

/// The names that examples must have.
std::set<std::string> namesIn(const Json::Value& catalogue) {
  std::set<std::string> names;
  for (const Json::Value& command : catalogue["commands"]) names.insert(command["name"].asString());
  for (const Json::Value& command : catalogue["listCommands"]) names.insert(command["name"].asString() + withList);
  return names;
}

/// True when a scene runs the command that it is named after, in that form.
bool runsItsCommand(const Scene& scene) {
  const std::size_t list = scene.name.find(withList);
  const std::string input = list == std::string::npos ? "> " + scene.name : ">+ " + scene.name.substr(0, list);
  return std::any_of(scene.steps.begin(), scene.steps.end(),
                     [&](const Step& step) { return step.input == input || step.input.starts_with(input + " "); });
}

std::string textOf(const Scene& scene) {
  return virtualtv::shell::writeTranscript({false, {}, scene.steps});
}

}  // namespace

Examples readExamples(const std::string& file, const std::string& text, const Json::Value& catalogue,
                      Problems& problems) {
  std::set<std::string> missing = namesIn(catalogue);
  const std::set<std::string> known = missing;
  Examples examples;
  try {
    for (const Scene& scene : scenesIn(virtualtv::shell::readTranscript(file, text))) {
      const auto report = [&](const std::string& what) {
        const int line = scene.steps.empty() ? 1 : scene.steps.front().line;
        problems.push_back(file + ":" + std::to_string(line) + ": the example of '" + scene.name + "' " + what);
      };
      if (!known.contains(scene.name)) {
        report("is named after no command");
      } else if (!runsItsCommand(scene)) {
        report("does not run it");
      } else if (!examples.emplace(scene.name, textOf(scene)).second) {
        report("is its second one");
      }
      missing.erase(scene.name);
    }
  } catch (const std::exception& exception) {
    problems.emplace_back(exception.what());
    return {};
  }
  for (const std::string& name : missing) problems.push_back(file + ": '" + name + "' has no example");
  return examples;
}

}  // namespace catalogue
