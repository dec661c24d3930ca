// SPDX-License-Identifier: MIT
#include "set/Knobs.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "seam/Operations.h"
#include "set/KnobParts.h"
#include "text/UnknownName.h"

namespace virtualtv {

namespace {

using knobparts::Parts;
using knobparts::refuse;

std::vector<Knob> allKnobs() {
  std::vector<Knob> all;
  for (const auto& table : {knobparts::setKnobs(), knobparts::ispKnobs(), knobparts::windowKnobs(),
                            knobparts::pictureKnobs(), knobparts::serviceKnobs()}) {
    all.insert(all.end(), table.begin(), table.end());
  }
  return all;
}

bool isPlace(std::string_view part) {
  return part.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == part.npos;
}

/// Removes and returns the text before the next full stop.
std::string_view takePart(std::string_view& text) {
  const std::size_t stop = text.find('.');
  const std::string_view part = text.substr(0, stop);
  text = stop == text.npos ? std::string_view() : text.substr(stop + 1);
  return part;
}

/// The texts that replace the placeholders of a knob's name; nothing when `name` is the name of another knob.
std::optional<Parts> match(std::string_view knob, std::string_view name) {
  Parts parts;
  while (!knob.empty() && !name.empty()) {
    const std::string_view wanted = takePart(knob);
    const std::string_view given = takePart(name);
    if (isPlace(wanted) && !given.empty()) {
      parts.emplace_back(given);
    } else if (wanted != given) {
      return std::nullopt;
    }
  }
  if (!knob.empty() || !name.empty()) return std::nullopt;
  return parts;
}

bool isKnob(const std::string& name) {
  const std::span<const Knob> all = knobs();
  return std::any_of(all.begin(), all.end(), [&](const Knob& knob) { return match(knob.name, name).has_value(); });
}

template <typename Use>
auto withKnob(const std::string& name, Use use) {
  for (const Knob& knob : knobs()) {
    if (const auto parts = match(knob.name, name)) return use(knob, *parts);
  }
  throw text::UnknownName("there is no knob '" + name + "'", "knobs");
}

}  // namespace

std::span<const Knob> knobs() {
  static const std::vector<Knob> all = allKnobs();
  return all;
}

std::vector<std::string> knobNames(Tv& tv) {
  std::vector<std::string> names;
  for (const Knob& knob : knobs()) {
    std::string_view rest = knob.name;
    const std::string_view first = takePart(rest);
    if (first == "WINDOW") {
      for (const WindowId window : windowIds) names.push_back(nameOf(window) + ("." + std::string(rest)));
    } else if (first == "input") {
      takePart(rest);
      for (const Input& input : tv.state().inputs) {
        names.push_back("input." + std::to_string(input.source) + "." + std::string(rest));
      }
    } else if (rest.empty() || !isPlace(rest.substr(0, rest.find('.')))) {
      names.emplace_back(knob.name);
    }
  }
  return names;
}

std::vector<std::string> knobsOf(Tv& tv, const std::string& group) {
  std::vector<std::string> names;
  std::string_view id = group;
  if (takePart(id) == "service" && !id.empty() && id.find('.') == id.npos) {
    for (const std::string& part : knobparts::partsOfService(tv, std::string(id))) names.push_back(group + "." + part);
  } else if (group == "latency") {
    for (const seam::Operation& operation : seam::operations) names.push_back("latency." + std::string(operation.name));
  } else {
    for (std::string& name : knobNames(tv)) {
      if (name.starts_with(group + ".")) names.push_back(std::move(name));
    }
  }
  return names;
}

std::string getKnob(Tv& tv, const std::string& name) {
  return withKnob(name, [&](const Knob& knob, const Parts& parts) { return knob.get(tv, parts); });
}

bool canBeSet(const std::string& name) {
  return withKnob(name, [](const Knob& knob, const Parts&) { return knob.set != nullptr; });
}

void setKnob(Tv& tv, const std::string& name, const std::string& value) {
  if (!isKnob(name) && !knobsOf(tv, name).empty()) throw GroupOfKnobs(name);
  withKnob(name, [&](const Knob& knob, const Parts& parts) {
    if (knob.set == nullptr) refuse("'" + name + "' can only be read");
    knob.set(tv, parts, value);
  });
}

}  // namespace virtualtv
