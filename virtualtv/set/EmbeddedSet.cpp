// SPDX-License-Identifier: MIT
#include "set/EmbeddedSet.h"

#include <json/json.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include "services/ListText.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv {

namespace embedded {
extern const std::string_view defaultSet;
extern const std::string_view defaultServices;
}  // namespace embedded

namespace {

/// Members of a service that are plain numbers, and their fields.
struct Member {
  const char* name;
  int fieldId;
};

constexpr std::array numbers{
    Member{"type", TCServiceData::CHANNEL_TYPE},
    Member{"ptc", TCServiceData::PTC},
    Member{"frequency", TCServiceData::FREQUENCY},
    Member{"modulation", TCServiceData::MODULATION},
    Member{"symbolRate", TCServiceData::SYMBOL_RATE},
    Member{"major", TCServiceData::MAJOR},
    Member{"minor", TCServiceData::MINOR},
    Member{"programNumber", TCServiceData::PROGRAM_NUMBER},
    Member{"transportStreamId", TCServiceData::TRANSPORT_STREAM_ID},
    Member{"originalNetworkId", TCServiceData::ORIGINAL_NETWORK_ID},
    Member{"sourceId", TCServiceData::SOURCE_ID},
    Member{"lock", TCServiceData::LOCK},
    Member{"hidden", HIDDEN},
    Member{"antenna", TCServiceData::ANTENNA_MODE},
    Member{"serviceMode", SERVICE_MODE},
};

/// Members of a picture that are plain numbers, and their fields in a service.
constexpr std::array pictureNumbers{Member{"width", PICTURE_WIDTH}, Member{"height", PICTURE_HEIGHT},
                                    Member{"rate", FRAME_RATE}, Member{"activeFormat", ACTIVE_FORMAT}};

[[noreturn]] void refuseSet(const std::string& reason) {
  throw std::invalid_argument("set description: " + reason);
}

std::uint64_t idOf(const Json::Value& text) {
  const std::string digits = text.asString();
  const auto id = text::numberIn<std::uint64_t>(digits);
  if (!id) refuseSet("'" + digits + "' is no service id");
  return *id;
}

LanguageCode languageOf(const Json::Value& name) {
  const auto code = languageNamed(name.asString());
  if (!code) refuseSet("language '" + name.asString() + "'");
  return *code;
}

int codingOf(const Json::Value& name) {
  const auto coding = codingNamed(name.asString());
  if (!coding) refuseSet("audio coding '" + name.asString() + "'");
  return *coding;
}

int kindOf(const Json::Value& name) {
  const auto kind = subtitleKindNamed(name.asString());
  if (!kind) refuseSet("subtitle type '" + name.asString() + "'");
  return *kind;
}

AudioTrack audioOf(const Json::Value& track) {
  return {.pid = track["pid"].asInt(),
          .lang = languageOf(track["lang"]),
          .decodeType = codingOf(track["coding"]),
          .audioMode = track["mode"].asInt(),
          .audioType = track["type"].asInt()};
}

SubtitleTrack subtitleOf(const Json::Value& track) {
  return {.pid = track["pid"].asInt(), .lang = languageOf(track["lang"]), .type = kindOf(track["type"])};
}

/// Tracks of a service or of the secondary TV stack.
template <typename Tracks>
void readTracks(const Json::Value& member, Tracks& tracks) {
  for (const Json::Value& track : member["audio"]) tracks.audio.push_back(audioOf(track));
  for (const Json::Value& track : member["subtitles"]) tracks.subtitles.push_back(subtitleOf(track));
}

Shape shapeOf(const Json::Value& picture) {
  const std::string shape = picture.get("shape", "16:9").asString();
  if (shape != "16:9" && shape != "4:3") refuseSet("picture shape '" + shape + "'");
  return shape == "4:3" ? Shape::narrow : Shape::wide;
}

/// The picture of an input.
Picture pictureOf(const Json::Value& member) {
  const Picture usual;
  return {.width = member.get("width", usual.width).asInt(),
          .height = member.get("height", usual.height).asInt(),
          .rate = member.get("rate", usual.rate).asInt(),
          .shape = shapeOf(member),
          .activeFormat = member.get("activeFormat", usual.activeFormat).asInt()};
}

/// Stores in the service what the description says of its picture.
void readPicture(const Json::Value& member, Service& service) {
  for (const Member& number : pictureNumbers) {
    if (member.isMember(number.name)) service.numbers[number.fieldId] = member[number.name].asUInt64();
  }
  if (member.isMember("shape")) service.numbers[PICTURE_SHAPE] = shapeOf(member) == Shape::narrow ? 1 : 0;
}

std::u16string attachedText(const Json::Value& attached) {
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  writer["emitUTF8"] = true;
  return text::toUnits(Json::writeString(writer, attached));
}

Service serviceOf(const Json::Value& member) {
  Service service;
  if (member.isMember("id")) service.numbers[TCServiceData::SERVICE_ID] = idOf(member["id"]);
  for (const Member& number : numbers) {
    if (member.isMember(number.name)) service.numbers[number.fieldId] = member[number.name].asUInt64();
  }
  readPicture(member["picture"], service);
  if (member.isMember("name")) {
    service.texts[TCServiceData::CHANNEL_NAME] = text::toUnits(member["name"].asString());
  }
  if (member.isMember("attached")) {
    service.texts[TCServiceData::SERVICE_FIELD_110] = attachedText(member["attached"]);
  }
  service.group = member["group"].asString();
  readTracks(member, service);
  for (const std::string& group : member["favourites"].getMemberNames()) {
    service.favourites[static_cast<std::uint8_t>(std::stoi(group))] = member["favourites"][group].asBool();
  }
  return service;
}

void readState(const Json::Value& root, SetDescription& set) {
  TvState& state = set.state;
  for (const Json::Value& input : root["inputs"]) {
    state.inputs.push_back({.source = input["source"].asInt(),
                            .name = input["name"].asString(),
                            .plugged = input["plugged"].asBool(),
                            .picture = pictureOf(input["picture"])});
  }
  readTracks(root["isp"], state.isp);
  orderByKind(state.isp.subtitles);
  state.region = root["region"].asInt();
  state.country = root["country"].asInt();
  state.startServiceId = idOf(root["start"]["service"]);
  state.startSource = root["start"]["source"].asInt();
  set.currentId = idOf(root["current"]["service"]);
  set.previousId = idOf(root["previous"]["service"]);
  const TvMode mode{root["tvMode"]["antenna"].asInt(), root["tvMode"]["service"].asInt()};
  for (const WindowId window : windowIds) state[window].mode = mode;
  WindowState& main = state[WindowId::main];
  main.source = root["current"]["source"].asInt();
  main.previousSource = root["previous"]["source"].asInt();
  main.sourceState = SOURCE_STATE_SHOWN;
}

/// Parses a document and calls `read` with its root.
template <typename Read>
void readDocument(std::string_view document, Read read) {
  Json::Value root;
  std::string errors;
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  if (!reader->parse(document.data(), document.data() + document.size(), &root, &errors)) refuseSet(errors);
  try {
    read(root);
  } catch (const Json::Exception& exception) {
    refuseSet(exception.what());
  }
}

}  // namespace

SetDescription readSet(std::string_view document) {
  SetDescription set;
  readDocument(document, [&](const Json::Value& root) { readState(root, set); });
  return set;
}

std::vector<Service> readServices(std::string_view document) {
  std::vector<Service> services;
  readDocument(document, [&](const Json::Value& root) {
    for (const Json::Value& member : root) services.push_back(serviceOf(member));
  });
  return services;
}

const SetDescription& embeddedSet() {
  static const SetDescription set = readSet(embedded::defaultSet);
  return set;
}

std::vector<Service> embeddedServices() {
  return readServices(embedded::defaultServices);
}

}  // namespace virtualtv
