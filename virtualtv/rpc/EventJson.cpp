// SPDX-License-Identifier: MIT
#include "rpc/EventJson.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "rpc/ReplyJson.h"
#include "services/FieldNames.h"
#include "services/ListText.h"
#include "services/ServiceStore.h"
#include "set/StateJson.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

using device::CommandRun;

// Values before and after a change.

/// The arguments of `.service` that do the same.
Json::Value valueOf(const ListEdit& edit) {
  const std::string deed = edit.number ? "move " + std::to_string(*edit.number) : "remove";
  return "#" + std::to_string(edit.service) + " " + deed;
}

Json::Value valueOf(const WindowSource& source) {
  Json::Value json;
  json["state"] = source.state;
  json["number"] = source.source;
  json["previous"] = source.previous;
  return json;
}
Json::Value valueOf(const TvMode& mode) {
  return jsonOf(mode);
}
Json::Value valueOf(const Plane& plane) {
  return planeOf(plane, std::nullopt);
}
Json::Value valueOf(const TracksInUse& tracks) {
  Json::Value json;
  json["audio"] = tracks.audio;
  json["subtitle"] = tracks.subtitle;
  return json;
}
Json::Value valueOf(const Input& input) {
  return jsonOf(input);
}
Json::Value valueOf(const SecondaryStack& isp) {
  return jsonOf(isp);
}
Json::Value valueOf(const std::string& text) {
  return text::wellFormed(text);
}
Json::Value valueOf(const Setting& setting) {
  return std::visit(
      [](const auto& held) {
        if constexpr (std::is_same_v<decltype(held), const int&>) {
          return Json::Value(held);
        } else {
          return valueOf(held);
        }
      },
      setting);
}
Json::Value valueOf(const std::optional<Setting>& setting) {
  return setting ? valueOf(*setting) : Json::Value();
}
Json::Value valueOf(const FieldValue& value) {
  if (const auto* number = std::get_if<std::uint64_t>(&value)) return std::to_string(*number);
  if (const auto* units = std::get_if<std::u16string>(&value)) return text::toUtf8(*units);
  return {};
}
Json::Value valueOf(const std::vector<AudioTrack>& tracks) {
  return textOf(tracks);
}
Json::Value valueOf(const std::vector<SubtitleTrack>& tracks) {
  return textOf(tracks);
}
Json::Value valueOf(const std::map<std::uint8_t, bool>& groups) {
  return textOf(groups);
}
Json::Value valueOf(std::size_t count) {
  return Json::UInt64{count};
}

/// The JSON that identifies the service with a key; null when there is none.
Json::Value serviceOf(device::Device& device, ServiceKey key) {
  if (key == 0 || !device.isOn()) return {};
  const auto service = device.tv().services().read(key);
  return service ? jsonOf(key, *service) : Json::Value();
}

/// Writes a happening into an event: one function for each kind.
class Writer {
 public:
  Writer(device::Device& device, Json::Value& event) : device_(device), event_(event) {}

  template <typename Changed>
  void operator()(const Changed& changed) const {
    put(changed);
    if constexpr (requires { changed.window; }) event_["window"] = nameOf(changed.window);
    if constexpr (requires { changed.before; }) {
      event_["before"] = before(changed, changed.before);
      event_["after"] = before(changed, changed.after);
    }
  }

  void operator()(const Change& change) const { std::visit(*this, change); }

 private:
  /// The members of a change other than its window and values.
  template <typename Changed>
  void put(const Changed& changed) const {
    if constexpr (requires { changed.service; }) event_["service"] = serviceOf(device_, changed.service);
    if constexpr (requires { changed.fieldId; }) event_["field"] = nameOfField(changed.fieldId);
    if constexpr (requires { changed.key; }) event_["key"] = valueOf(changed.key);
    if constexpr (requires { changed.name; }) event_["name"] = changed.name;
  }
  void put(const InputChanged& changed) const { event_["input"] = changed.after.source; }
  void put(const IspChanged&) const { event_["window"] = "isp"; }
  void put(const AudioTracksChanged& changed) const { putTracks(changed.service, "audio"); }
  void put(const SubtitleTracksChanged& changed) const { putTracks(changed.service, "subtitles"); }
  void put(const ServicesChanged& changed) const {
    event_["added"] = valueOf(changed.services.added);
    event_["changed"] = valueOf(changed.services.changed);
    event_["gone"] = valueOf(changed.services.gone);
    event_["moved"] = valueOf(changed.services.moved);
    event_["edit"] = changed.edit ? valueOf(*changed.edit) : Json::Value();
  }
  void put(const device::SetStarted& started) const { event_["started"] = started.why; }
  void put(const framework::EngineOpened& opened) const {
    event_["what"] = "opened";
    event_["engine"] = valueOf(opened.engine);
    event_["appId"] = valueOf(opened.client.appId);
    event_["widgetId"] = valueOf(opened.client.widgetId);
  }
  void put(const framework::EngineClosed& closed) const {
    event_["what"] = "closed";
    event_["engine"] = valueOf(closed.engine);
    event_["why"] = closed.why;
  }
  void put(const device::FaultSet& fault) const {
    event_["what"] = "set";
    event_["id"] = Json::UInt64{fault.id};
    event_["fault"] = valueOf(fault.fault);
  }
  void put(const device::FaultHit& fault) const {
    event_["what"] = "hit";
    event_["id"] = Json::UInt64{fault.id};
    event_["hits"] = Json::UInt64{fault.hits};
  }
  void put(const device::FaultGone& fault) const {
    event_["what"] = "gone";
    event_["id"] = Json::UInt64{fault.id};
  }
  void put(const CommandRun& command) const {
    event_["session"] = valueOf(command.session);
    event_["engine"] = valueOf(command.engine);
    event_["name"] = command.words.empty() ? "" : valueOf(command.words.front());
    Json::Value& parameters = event_["parameters"] = Json::arrayValue;
    for (std::size_t at = 1; at < command.words.size(); ++at) parameters.append(valueOf(command.words[at]));
    event_["list"] = command.list;
    event_["reply"] =
        command.accepted ? resultOf(*command.accepted, command.reply, longestReply) : Json::Value(Json::nullValue);
    event_["duration"] = std::chrono::duration<double, std::milli>(command.took).count();
    event_["delay"] = Json::UInt64{command.delay};
  }
  void put(const seam::Call& call) const {
    event_["call"] = valueOf(seam::line(call));
    event_["operation"] = std::string(call.operation->name);
    event_["fault"] = call.fault;
  }
  void put(const framework::LogLine&) const {}
  void put(const device::Act&) const {}  // acts are not subscribed to

  void putTracks(ServiceKey service, const char* kind) const {
    event_["service"] = serviceOf(device_, service);
    event_["kind"] = kind;
  }

  template <typename Changed, typename Value>
  Json::Value before(const Changed&, const Value& value) const {
    return valueOf(value);
  }
  Json::Value before(const ScreenChanged&, const WindowScreen& screen) const {
    Json::Value json;
    json["service"] = serviceOf(device_, screen.service);
    json["previous"] = serviceOf(device_, screen.previous);
    return json;
  }

  device::Device& device_;
  Json::Value& event_;
};

struct TopicOf {
  std::string_view operator()(const Change& change) const { return std::visit(*this, change); }
  std::string_view operator()(const SourceChanged&) const { return "source"; }
  std::string_view operator()(const IspChanged&) const { return "source"; }
  std::string_view operator()(const ScreenChanged&) const { return "service"; }
  std::string_view operator()(const ModeChanged&) const { return "mode"; }
  std::string_view operator()(const PlaneChanged&) const { return "plane"; }
  std::string_view operator()(const TracksChanged&) const { return "tracks"; }
  std::string_view operator()(const AudioTracksChanged&) const { return "tracks"; }
  std::string_view operator()(const SubtitleTracksChanged&) const { return "tracks"; }
  std::string_view operator()(const InputChanged&) const { return "inputs"; }
  std::string_view operator()(const KnobChanged&) const { return "knob"; }
  std::string_view operator()(const SettingChanged&) const { return "settings"; }
  std::string_view operator()(const FieldChanged&) const { return "services"; }
  std::string_view operator()(const FavouritesChanged&) const { return "favourites"; }
  std::string_view operator()(const ServicesChanged&) const { return "services"; }
  std::string_view operator()(const device::SetStarted&) const { return "services"; }
  std::string_view operator()(const framework::EngineOpened&) const { return "engine"; }
  std::string_view operator()(const framework::EngineClosed&) const { return "engine"; }
  std::string_view operator()(const device::FaultSet&) const { return "fault"; }
  std::string_view operator()(const device::FaultHit&) const { return "fault"; }
  std::string_view operator()(const device::FaultGone&) const { return "fault"; }
  std::string_view operator()(const CommandRun&) const { return "command"; }
  std::string_view operator()(const seam::Call&) const { return "call"; }
  std::string_view operator()(const framework::LogLine&) const { return "log"; }
  std::string_view operator()(const device::Act&) const { return ""; }
};

/// The JSON of a log message, truncated. @param longest  in bytes.
Json::Value messageOf(const framework::LogLine& line, std::size_t longest) {
  const std::string message = line.message.text();
  Json::Value told;
  told["level"] = line.level;
  told["text"] = valueOf(std::string(text::utf8Front(message.substr(0, longest))));
  if (message.size() > longest) told["length"] = Json::UInt64{message.size()};
  return told;
}

void putLog(const Event& log, Json::Value& json) {
  const std::size_t count = log.happenings.size();
  Json::Value& lines = json["lines"] = Json::arrayValue;
  for (std::size_t at = 0; at < std::min(count, mostMessages); ++at) {
    lines.append(messageOf(std::get<framework::LogLine>(log.happenings[at]->what), longestMessage));
  }
  json["omitted"] = Json::UInt64{count - std::min(count, mostMessages)};
}

/// Since 1970.
Json::Int64 millisecondsOf(std::chrono::system_clock::time_point time) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

}  // namespace

std::string_view topicOf(const device::Happening& happening) {
  return std::visit(TopicOf(), happening.what);
}

bool haveTime(std::string_view topic) {
  return topic != "call" && topic != "log";
}

std::uint64_t commandOf(const device::Happening& happening) {
  const bool isEnd = std::holds_alternative<CommandRun>(happening.what);
  return isEnd || happening.caller.command != 0 ? happening.command : 0;
}

Json::Value jsonOf(device::Device& device, const Event& event) {
  Json::Value json;
  json["number"] = Json::UInt64{event.number};
  json["topic"] = std::string(event.topic);
  json["revision"] = Json::UInt64{event.revision};
  if (haveTime(event.topic)) json["time"] = millisecondsOf(event.time);
  if (event.command != 0) json["command"] = Json::UInt64{event.command};
  if (event.what != nullptr) {
    json["session"] = event.session;
    json["what"] = event.what;
  } else if (event.topic == "log") {
    putLog(event, json);
  } else {
    std::visit(Writer(device, json), event.happenings.front()->what);
  }
  return json;
}

Json::Value emptyCause() {
  Json::Value why;
  for (const char* const part : {"calls", "keys", "log"}) why[part] = Json::arrayValue;
  return why;
}

void putCause(device::Device& device, const device::Happening& happening, Json::Value& why) {
  const auto& what = happening.what;
  if (const auto* command = std::get_if<CommandRun>(&what)) {
    Writer(device, why)(*command);
    if (command->accepted) why["reply"] = resultOf(*command->accepted, command->reply);
    return;
  }
  const bool isOpening = commandOf(happening) == 0;
  if (isOpening && !why.isMember("opening")) why["opening"] = emptyCause();
  Json::Value& cause = isOpening ? why["opening"] : why;
  if (const auto* call = std::get_if<seam::Call>(&what)) cause["calls"].append(valueOf(seam::line(*call)));
  if (const auto* line = std::get_if<framework::LogLine>(&what)) {
    cause["log"].append(messageOf(*line, std::string::npos));
  }
  const auto* const change = std::get_if<Change>(&what);
  if (change == nullptr || !std::holds_alternative<SettingChanged>(*change)) return;
  Writer(device, cause["keys"].append(Json::objectValue))(*change);
}

}  // namespace virtualtv::rpc
