// SPDX-License-Identifier: MIT
#include "set/StateJson.h"

#include <bit>
#include <cstdint>
#include <string>

#include "services/Language.h"
#include "services/ListText.h"
#include "set/Picture.h"
#include "text/Units.h"

namespace virtualtv {

// Pictures, inputs and planes.

Json::Value jsonOf(const Picture& picture) {
  Json::Value json;
  json["width"] = picture.width;
  json["height"] = picture.height;
  json["rate"] = picture.rate;
  json["shape"] = picture.shape == Shape::wide ? "16:9" : "4:3";
  json["activeFormat"] = picture.activeFormat;
  return json;
}

Json::Value jsonOf(const Input& input) {
  Json::Value json;
  json["source"] = input.source;
  json["name"] = input.name;
  json["plugged"] = input.plugged;
  json["picture"] = jsonOf(input.picture);
  return json;
}

Json::Value jsonOf(const Rect& rect) {
  Json::Value json;
  json["x"] = rect.x;
  json["y"] = rect.y;
  json["width"] = rect.width;
  json["height"] = rect.height;
  return json;
}

namespace {

/// Converts a rectangle of the base screen to the space of applications, which is half as wide and half as high.
Rect inAppSpace(const Rect& rect) {
  const auto half = [](int length) { return static_cast<int>((std::int64_t{length} + 1) / 2); };
  return {half(rect.x), half(rect.y), half(rect.width), half(rect.height)};
}

}  // namespace

Json::Value planeOf(const Plane& plane, const std::optional<Picture>& picture) {
  Json::Value json;
  const auto put = [&](const char* name, const Rect& rect) {
    json["base"][name] = jsonOf(rect);
    json["app"][name] = jsonOf(inAppSpace(rect));
  };
  for (const char* const space : {"base", "app"}) json[space]["active"] = Json::nullValue;
  put("rect", plane.rect);
  put("display", drawnAt(plane));
  if (picture) put("active", activeArea(plane, *picture));
  json["crop"] = orNull(plane.crop, [](const Crop& crop) { return jsonOf(crop.crop); });
  json["order"] = plane.order;
  json["muted"] = plane.muted;
  return json;
}

// Tracks.

namespace {

template <typename Track>
Json::Value frontOf(const Track& track) {
  Json::Value json;
  json["pid"] = track.pid;
  json["lang"] = nameOfLanguage(track.lang);
  json["readable"] = track.readable;
  return json;
}

Json::Value jsonOf(const AudioTrack& track) {
  Json::Value json = frontOf(track);
  json["coding"] = nameOfCoding(track.decodeType);
  json["mode"] = track.audioMode;
  json["type"] = track.audioType;
  return json;
}

Json::Value jsonOf(const SubtitleTrack& track) {
  Json::Value json = frontOf(track);
  json["type"] = nameOfSubtitleKind(track.type);
  return json;
}

template <typename Item>
Json::Value listOf(const std::vector<Item>& items) {
  Json::Value json(Json::arrayValue);
  for (const Item& item : items) json.append(jsonOf(item));
  return json;
}

}  // namespace

Json::Value jsonOf(const std::vector<Input>& inputs) {
  return listOf(inputs);
}
Json::Value jsonOf(const std::vector<AudioTrack>& tracks) {
  return listOf(tracks);
}
Json::Value jsonOf(const std::vector<SubtitleTrack>& tracks) {
  return listOf(tracks);
}

Json::Value tracksOf(const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles,
                     const TracksInUse& inUse) {
  Json::Value json;
  json["audio"] = jsonOf(audio);
  json["audioInUse"] = inUse.audio;
  json["subtitles"] = jsonOf(subtitles);
  json["subtitleInUse"] = inUse.subtitle;
  return json;
}

// Services.

namespace {

Json::Value numberOf(const Service& service, int fieldId) {
  const auto number = service.numbers.find(fieldId);
  return number == service.numbers.end() ? Json::Value() : Json::Value(std::bit_cast<Json::Int64>(number->second));
}

Json::Value jsonOf(const Footage& footage) {
  Json::Value json;
  json["path"] = text::toUtf8(text::toUnits(footage.path));  // the path may hold any bytes
  json["video"] = footage.video;
  json["type"] = footage.type;
  return json;
}

}  // namespace

Json::Value jsonOf(ServiceKey key, const Service& service) {
  Json::Value json;
  json["key"] = Json::Int64{key};
  const auto id = service.numbers.find(TCServiceData::SERVICE_ID);
  json["id"] = id == service.numbers.end() ? Json::Value() : Json::Value(std::to_string(id->second));
  const auto name = service.texts.find(TCServiceData::CHANNEL_NAME);
  json["name"] = name == service.texts.end() ? Json::Value() : Json::Value(text::toUtf8(name->second));
  json["major"] = numberOf(service, TCServiceData::MAJOR);
  json["minor"] = numberOf(service, TCServiceData::MINOR);
  if (service.footage) json["recording"] = jsonOf(*service.footage);
  return json;
}

Json::Value jsonOf(const TvMode& mode) {
  Json::Value json;
  json["antenna"] = mode.antenna;
  json["service"] = mode.service;
  return json;
}

Json::Value jsonOf(const SecondaryStack& isp) {
  Json::Value json;
  json["present"] = isp.present;
  json["shown"] = isp.shown;
  json["picture"]["width"] = isp.width;
  json["picture"]["height"] = isp.height;
  json["tracks"] = tracksOf(isp.audio, isp.subtitles, isp.inUse);
  return json;
}

}  // namespace virtualtv
