#include "set/StateDocument.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <string>

#include "services/Language.h"
#include "services/ListText.h"
#include "services/ServiceStore.h"
#include "set/Picture.h"
#include "text/Units.h"

namespace virtualtv {

namespace {

using Data = TCServiceData;

template <typename Value, typename Write>
Json::Value orNull(const std::optional<Value>& value, Write write) {
  return value ? Json::Value(write(*value)) : Json::Value();
}

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

/// A rectangle of the base screen in the space of applications, which is half as wide and half as high.
Rect inAppSpace(const Rect& rect) {
  const auto half = [](int length) { return static_cast<int>((std::int64_t{length} + 1) / 2); };
  return {half(rect.x), half(rect.y), half(rect.width), half(rect.height)};
}

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

Json::Value resolutionOf(const WindowState& window, const std::optional<Picture>& picture) {
  Json::Value json;
  json["auto"] = !window.resolution;
  json["code"] = window.resolution ? Json::Value(*window.resolution) : orNull(picture, resolutionCode);
  return json;
}

// Tracks.

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

Json::Value tracksOf(const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles,
                     const TracksInUse& inUse) {
  Json::Value json;
  json["audio"] = listOf(audio);
  json["audioInUse"] = inUse.audio;
  json["subtitles"] = listOf(subtitles);
  json["subtitleInUse"] = inUse.subtitle;
  return json;
}

// Services.

Json::Value numberOf(const Service& service, int fieldId) {
  const auto number = service.numbers.find(fieldId);
  return number == service.numbers.end() ? Json::Value() : Json::Value(std::bit_cast<Json::Int64>(number->second));
}

Json::Value serviceOf(ServiceKey key, const Service& service) {
  Json::Value json;
  json["key"] = Json::Int64{key};
  const auto id = service.numbers.find(Data::SERVICE_ID);
  json["id"] = id == service.numbers.end() ? Json::Value() : Json::Value(std::to_string(id->second));
  const auto name = service.texts.find(Data::CHANNEL_NAME);
  json["name"] = name == service.texts.end() ? Json::Value() : Json::Value(text::toUtf8(name->second));
  json["major"] = numberOf(service, Data::MAJOR);
  json["minor"] = numberOf(service, Data::MINOR);
  return json;
}

// Windows.

Json::Value sourceOf(const TvState& state, const WindowState& window) {
  Json::Value json;
  json["state"] = window.sourceState;
  json["number"] = window.source;
  json["previous"] = window.previousSource;
  json["name"] = Json::nullValue;
  for (const Input& input : state.inputs) {
    if (input.source == window.source) json["name"] = input.name;
  }
  return json;
}

Json::Value modeOf(const TvMode& mode) {
  Json::Value json;
  json["antenna"] = mode.antenna;
  json["service"] = mode.service;
  return json;
}

Json::Value windowOf(Tv& tv, WindowId id) {
  const WindowState& window = tv.state()[id];
  const auto picture = pictureOn(tv, id);
  const auto service = tv.services().read(window.service);
  const auto previous = tv.services().read(window.previousService);
  Json::Value json;
  json["source"] = sourceOf(tv.state(), window);
  json["service"] = orNull(service, [&](const Service& found) { return serviceOf(window.service, found); });
  json["previousService"] =
      orNull(previous, [&](const Service& found) { return serviceOf(window.previousService, found); });
  const Service none;
  const Service& shown = service ? *service : none;
  json["tracks"] = tracksOf(shown.audio, shown.subtitles, window.inUse);
  json["tvMode"] = modeOf(window.mode);
  json["plane"] = planeOf(window.plane, picture);
  json["picture"] = orNull(picture, [](const Picture& found) { return jsonOf(found); });
  json["resolution"] = resolutionOf(window, picture);
  return json;
}

Json::Value ispOf(const SecondaryStack& isp) {
  Json::Value json;
  json["present"] = isp.present;
  json["shown"] = isp.shown;
  json["picture"]["width"] = isp.width;
  json["picture"]["height"] = isp.height;
  json["tracks"] = tracksOf(isp.audio, isp.subtitles, isp.inUse);
  return json;
}

}  // namespace

Json::Value stateDocument(Tv& tv) {
  const TvState& state = tv.state();
  Json::Value json;
  json["revision"] = Json::UInt64{tv.revision()};
  for (const WindowId id : windowIds) json["windows"][nameOf(id)] = windowOf(tv, id);
  json["inputs"] = listOf(state.inputs);
  json["region"] = state.region;
  json["country"] = state.country;
  json["isp"] = ispOf(state.isp);
  json["tuner"]["fade"] = state.fade;
  json["start"]["service"] = std::to_string(state.startServiceId);
  json["start"]["source"] = state.startSource;
  json["clock"] = Json::UInt64{state.clock};
  json["services"] = Json::UInt64{tv.services().size()};
  return json;
}

}  // namespace virtualtv
