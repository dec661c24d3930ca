// SPDX-License-Identifier: MIT
#include "support/model/World.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "support/model/Tracks.h"
#include "text/Units.h"

namespace model {

namespace {

using Data = TCServiceData;

[[noreturn]] void refuse(const std::string& what) {
  throw std::invalid_argument("the model does not know " + what);
}

Platform platformOf(World& world) {
  return {world.set, world.calls};
}

/// The engine in use, opened if it is not open.
Engine& engineOf(World& world) {
  const auto found = world.engines.find(world.engine);
  if (found != world.engines.end()) return found->second;
  const auto& [app, widget] = world.applications[world.engine];
  return world.engines[world.engine] = open(platformOf(world), app, widget);
}

void closeEngine(World& world) {
  if (world.engines.erase(world.engine) > 0) close(platformOf(world));
}

void setApplication(World& world, const std::string& app, const std::string& widget) {
  world.applications[world.engine] = {app, widget};
  const auto found = world.engines.find(world.engine);
  if (found == world.engines.end()) return;
  found->second.appId = app;
  found->second.widgetId = widget;
}

void setFault(Calls& calls, const Words& words) {
  if (words.at(1) == "clear") {
    calls.faults.clear();
  } else {
    calls.faults.push_back(seam::parseFault({words.begin() + 1, words.end()}));
  }
}

// Knobs.

ServiceKey keyNamed(const std::string& name) {
  return name == "0" ? 0 : std::stoll(name.substr(1));
}

const std::map<std::string, int> fields{
    {"type", Data::CHANNEL_TYPE},
    {"ptc", Data::PTC},
    {"frequency", Data::FREQUENCY},
    {"modulation", Data::MODULATION},
    {"symbol_rate", Data::SYMBOL_RATE},
    {"id", Data::SERVICE_ID},
    {"major", Data::MAJOR},
    {"minor", Data::MINOR},
    {"program_number", Data::PROGRAM_NUMBER},
    {"transport_stream_id", Data::TRANSPORT_STREAM_ID},
    {"lock", Data::LOCK},
    {"original_network_id", Data::ORIGINAL_NETWORK_ID},
    {"antenna", Data::ANTENNA_MODE},
    {"hidden", virtualtv::HIDDEN},
    {"service_mode", virtualtv::SERVICE_MODE},
    {"picture_width", virtualtv::PICTURE_WIDTH},
    {"picture_height", virtualtv::PICTURE_HEIGHT},
    {"frame_rate", virtualtv::FRAME_RATE},
    {"picture_shape", virtualtv::PICTURE_SHAPE},
    {"active_format", virtualtv::ACTIVE_FORMAT},
};

const std::map<std::string, int> texts{{"name", Data::CHANNEL_NAME}, {"attached", Data::SERVICE_FIELD_110}};

/// Reads a plain or a quoted text.
std::u16string unitsOf(const std::string& value) {
  std::string_view rest = value;
  const auto quoted = virtualtv::text::parseQuoted(rest);
  return quoted && rest.empty() ? *quoted : virtualtv::text::toUnits(value);
}

void changeService(Service& service, const std::string& field, const std::string& value) {
  if (field == "audio") {
    service.audio = audioOf(value);
    return;
  }
  if (field == "subtitles") {
    service.subtitles = subtitlesOf(value);
    return;
  }
  if (field == "favourites") {
    service.favourites = favouritesOf(value);
    return;
  }
  if (const auto text = texts.find(field); text != texts.end()) {
    service.texts.erase(text->second);
    if (value != "unset") service.texts[text->second] = unitsOf(value);
    return;
  }
  const auto found = fields.find(field);
  if (found == fields.end()) refuse("the field " + field);
  if (value == "unset") {
    service.numbers.erase(found->second);
  } else if (value.front() == '-') {
    service.numbers[found->second] = static_cast<std::uint64_t>(std::stoll(value));
  } else {
    service.numbers[found->second] = std::stoull(value);
  }
}

void changeWindow(virtualtv::WindowState& window, const std::string& what, const std::string& value) {
  if (what == "source_state") {
    window.sourceState = std::stoi(value);
  } else if (what == "source") {
    window.source = std::stoi(value);
  } else if (what == "previous_source") {
    window.previousSource = std::stoi(value);
  } else if (what == "service") {
    bring(window, keyNamed(value));
  } else if (what == "previous_service") {
    window.previousService = keyNamed(value);
  } else if (what == "mode") {
    window.mode = {std::stoi(value), std::stoi(value.substr(value.find(',') + 1))};
  } else if (what == "audio") {
    window.inUse.audio = std::stoi(value);
  } else if (what == "subtitle") {
    window.inUse.subtitle = std::stoi(value);
  } else if (what == "resolution") {
    window.resolution = value == "auto" ? std::nullopt : std::optional(std::stoi(value));
  } else {
    refuse("the knob WINDOW." + what);
  }
}

void changeInput(Set& set, int source, const std::string& what, const std::string& value) {
  if (what == "plugged") return plug(set, source, value == "on");
  if (what != "picture") refuse("the knob input.SOURCE." + what);
  for (virtualtv::Input& input : set.state.inputs) {
    if (input.source != source) continue;
    input.picture.width = std::stoi(value);
    input.picture.height = std::stoi(value.substr(value.find('x') + 1));
    input.picture.rate = std::stoi(value.substr(value.find('@') + 1));
  }
}

void changeIsp(virtualtv::SecondaryStack& isp, const std::string& what, const std::string& value) {
  if (what == "present") {
    isp.present = value == "on";
  } else if (what == "picture") {
    isp.width = std::stoi(value);
    isp.height = std::stoi(value.substr(value.find('x') + 1));
  } else if (what == "audio") {
    isp.audio = audioOf(value);
  } else if (what == "subtitles") {
    isp.subtitles = ispSubtitlesOf(value);
  } else if (what == "audio_in_use") {
    isp.inUse.audio = std::stoi(value);
  } else if (what == "subtitle_in_use") {
    isp.inUse.subtitle = std::stoi(value);
  } else {
    refuse("the knob isp." + what);
  }
}

void change(Set& set, const std::string& knob, const std::string& value) {
  virtualtv::TvState& state = set.state;
  const Words parts = split(knob, '.');
  if (parts[0] == "service") {
    changeService(set.services.at(keyNamed(parts.at(1))), parts.at(2), value);
  } else if (parts[0] == "input") {
    changeInput(set, std::stoi(parts.at(1)), parts.at(2), value);
  } else if (parts[0] == "main" || parts[0] == "pip") {
    changeWindow(state[parts[0] == "main" ? WindowId::main : WindowId::pip], parts.at(1), value);
  } else if (parts[0] == "isp") {
    changeIsp(state.isp, parts.at(1), value);
  } else if (knob == "region") {
    state.region = std::stoi(value);
  } else if (knob == "country") {
    state.country = std::stoi(value);
  } else if (knob == "tuner.fade") {
    state.fade = std::stoi(value);
  } else if (knob == "start.service") {
    state.startServiceId = std::stoull(value);
  } else {
    refuse("the knob " + knob);
  }
}

Setting settingOf(const Words& words) {
  if (words.at(3) == "int") return std::stoi(words.at(4));
  return words.at(4);
}

void speakToSet(World& world, const Words& words) {
  if (words[0] == ".engine") {
    world.engine = words.at(1);
    engineOf(world);
  } else if (words[0] == ".reopen") {
    closeEngine(world);
    engineOf(world);
  } else if (words[0] == ".app") {
    setApplication(world, words.at(1), words.size() > 2 ? words[2] : "");
  } else if (words[0] == ".fault") {
    setFault(world.calls, words);
  } else if (words[0] == ".set") {
    change(world.set, words.at(1), words.at(2));
  } else if (words[0] == ".vconf" && words.at(1) == "set") {
    world.set.settings[words.at(2)] = settingOf(words);
  } else {
    refuse("the line " + words[0]);
  }
}

}  // namespace

std::optional<Reply> run(World& world, const Words& words) {
  world.calls.made.clear();
  if (words.at(0).front() == '.') {
    speakToSet(world, words);
    return std::nullopt;
  }
  const bool list = words[0] == "+";
  const std::size_t name = list ? 1 : 0;
  Words parameters(words.begin() + static_cast<std::ptrdiff_t>(name) + 1, words.end());
  parameters.resize(list ? 9 : 4);
  const Command command{platformOf(world), engineOf(world), words.at(name), parameters};
  return list ? answerList(command) : answer(command);
}

}  // namespace model
