#include "set/StateDocument.h"

#include <optional>
#include <string>

#include "services/ServiceStore.h"
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

Json::Value windowOf(Tv& tv, WindowId id) {
  const WindowState& window = tv.state()[id];
  const auto picture = pictureOn(tv, id);
  const auto service = tv.services().read(window.service);
  const auto previous = tv.services().read(window.previousService);
  Json::Value json;
  json["source"] = sourceOf(tv.state(), window);
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

Json::Value stateDocument(Tv& tv) {
  const TvState& state = tv.state();
  Json::Value json;
  json["revision"] = Json::UInt64{tv.revision()};
  for (const WindowId id : windowIds) json["windows"][nameOf(id)] = windowOf(tv, id);
  json["inputs"] = jsonOf(state.inputs);
  json["region"] = state.region;
  json["country"] = state.country;
  json["isp"] = jsonOf(state.isp);
  json["tuner"]["fade"] = state.fade;
  json["start"]["service"] = std::to_string(state.startServiceId);
  json["start"]["source"] = state.startSource;
  json["clock"] = Json::UInt64{state.clock};
  json["services"] = Json::UInt64{tv.services().size()};
  return json;
}

}  // namespace virtualtv
