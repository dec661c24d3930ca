// SPDX-License-Identifier: MIT
#include "set/StateDocument.h"

#include <optional>
#include <string>

#include "set/Picture.h"
#include "set/StateJson.h"

namespace virtualtv {

namespace {

// Windows.

Json::Value resolutionOf(const WindowState& window, const std::optional<Picture>& picture) {
  Json::Value json;
  json["auto"] = !window.resolution;
  json["code"] = window.resolution ? Json::Value(*window.resolution) : orNull(picture, resolutionCode);
  return json;
}

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

Json::Value windowOf(const Past& past, WindowId id) {
  const WindowState& window = past.state()[id];
  const auto service = past.service(window.service);
  const auto previous = past.service(window.previousService);
  const auto picture = pictureOn(past.state(), id, service);
  Json::Value json;
  json["source"] = sourceOf(past.state(), window);
  json["service"] = orNull(service, [&](const Service& found) { return jsonOf(window.service, found); });
  json["previousService"] =
      orNull(previous, [&](const Service& found) { return jsonOf(window.previousService, found); });
  const Service none;
  const Service& shown = service ? *service : none;
  json["tracks"] = tracksOf(shown.audio, shown.subtitles, window.inUse);
  json["tvMode"] = jsonOf(window.mode);
  json["plane"] = planeOf(window.plane, picture);
  json["picture"] = orNull(picture, [](const Picture& found) { return jsonOf(found); });
  json["resolution"] = resolutionOf(window, picture);
  return json;
}

}  // namespace

Json::Value stateDocument(const Tv& tv) {
  return stateDocument(Past(tv), tv.revision());
}

Json::Value stateDocument(const Past& past, std::uint64_t revision) {
  const TvState& state = past.state();
  Json::Value json;
  json["revision"] = Json::UInt64{revision};
  for (const WindowId id : windowIds) json["windows"][nameOf(id)] = windowOf(past, id);
  json["inputs"] = jsonOf(state.inputs);
  json["region"] = state.region;
  json["country"] = state.country;
  json["isp"] = jsonOf(state.isp);
  json["tuner"]["fade"] = state.fade;
  json["start"]["service"] = std::to_string(state.startServiceId);
  json["start"]["source"] = state.startSource;
  json["clock"] = Json::UInt64{state.clock};
  json["services"] = Json::UInt64{past.services()};
  return json;
}

}  // namespace virtualtv
