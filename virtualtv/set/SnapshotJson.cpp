// SPDX-License-Identifier: MIT
#include "set/SnapshotJson.h"

#include <limits>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <variant>

#include "json/JsonPart.h"
#include "json/Read.h"
#include "json/Texts.h"
#include "services/ListText.h"
#include "services/ServiceDocument.h"
#include "services/ServiceStore.h"
#include "set/EmbeddedSet.h"
#include "set/Persisted.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv {

namespace {

constexpr const char* noSnapshot = "not a snapshot of a set";
constexpr std::size_t deepest = 16;  // snapshots are nested less deeply

// The state.

Json::Value persistedJson(int number) {
  return number;
}
Json::Value persistedJson(bool truth) {
  return truth;
}
Json::Value persistedJson(ServiceKey key) {
  return Json::Int64{key};
}
Json::Value persistedJson(std::uint64_t id) {
  return std::to_string(id);
}
template <typename Track>
Json::Value persistedJson(const std::vector<Track>& tracks) {
  return textOf(tracks);
}

template <typename Number>
void read(const JsonPart& part, const Persisted& place, Number& number) {
  number = static_cast<Number>(part.number(place.range<Number>()));
}
void read(const JsonPart& part, const Persisted&, ServiceKey& key) {
  key = part.number({0, ServiceStore::greatestKey});  // 0 for no service
}
void read(const JsonPart& part, const Persisted&, bool& truth) {
  truth = part.truth();
}
void read(const JsonPart& part, const Persisted&, std::uint64_t& id) {
  const auto read = part.isText() ? text::numberIn<std::uint64_t>(part.text()) : std::nullopt;
  if (!read) part.want(text::describe(text::rangeOf<std::uint64_t>()) + " as a text");
  id = *read;
}
void read(const JsonPart& part, const Persisted&, std::vector<AudioTrack>& tracks) {
  tracks = part.check([text = part.text()] { return readAudioTracks(text); });
}
void read(const JsonPart& part, const Persisted&, std::vector<SubtitleTrack>& tracks) {
  tracks = part.check([text = part.text()] { return readIspSubtitles(text); });
}

Json::Value stateOf(const TvState& state) {
  Json::Value json(Json::objectValue);
  visitPersisted(state, [&](const Persisted& place, const auto& value) { json[place.name] = persistedJson(value); });
  return json;
}

TvState stateIn(const JsonPart& part) {
  TvState state = embeddedSet().state;
  std::set<std::string, std::less<>> known;
  visitPersisted(state, [&](const Persisted& place, auto& value) {
    read(part.at(place.name), place, value);
    known.insert(place.name);
  });
  part.eachMember([&](std::string_view name, const JsonPart& member) {
    if (known.find(name) == known.end()) member.refuse("nothing of that name is known");
  });
  return state;
}

/// Requires that the services on the windows exist.
void requireServices(const JsonPart& part, const Snapshot& snapshot) {
  visitPersisted(snapshot.state, [&](const Persisted& place, const auto& value) {
    if constexpr (std::is_same_v<decltype(value), const ServiceKey&>) {
      if (value == 0 || snapshot.services.contains(value)) return;
      part.at(place.name).refuse("there is no service #" + std::to_string(value));
    }
  });
}

// Settings.

Json::Value settingOf(const std::string& key, const Setting& value) {
  Json::Value json;
  json["key"] = json::ofBytes(key);
  const int* const number = std::get_if<int>(&value);
  json["value"] = number == nullptr ? json::ofBytes(std::get<std::string>(value)) : Json::Value(*number);
  return json;
}

Setting settingIn(const JsonPart& part) {
  if (part.isText() || part.isObject()) return json::bytesIn(part);
  return static_cast<int>(part.number(text::rangeOf<int>()));
}

void readSetting(const JsonPart& part, Snapshot& snapshot) {
  part.requireOnly({"key", "value"});
  const JsonPart key = part.at("key");
  if (!snapshot.settings.emplace(json::bytesIn(key), settingIn(part.at("value"))).second) {
    key.refuse("the key stands there already");
  }
}

// Services.

Json::Value serviceOf(ServiceKey key, const Service& service) {
  Json::Value json = serviceDocument(service);
  json["key"] = persistedJson(key);
  return json;
}

void readService(const JsonPart& part, Snapshot& snapshot) {
  const JsonPart key = part.at("key");
  const ServiceKey number = key.number({1, ServiceStore::greatestKey});
  if (!snapshot.services.emplace(number, serviceIn(part)).second) key.refuse("the key stands there already");
}

// The document as text.

/// Writes values, one per line.
class LineWriter {
 public:
  LineWriter() {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    writer_.reset(builder.newStreamWriter());
  }

  void put(std::string_view text) { text_ << text; }
  void putValue(const Json::Value& value) { writer_->write(value, &text_); }
  /// Writes the items of an array or the members of an object, one per line.
  void putLines(const Json::Value& values) {
    const bool named = values.isObject();
    put(named ? "{" : "[");
    const char* before = "\n";
    for (auto value = values.begin(); value != values.end(); ++value) {
      put(std::exchange(before, ",\n"));
      if (named) putValue(value.name());
      if (named) put(": ");
      putValue(*value);
    }
    put(named ? "\n}" : "\n]");
  }
  std::string text() const { return text_.str(); }

 private:
  std::unique_ptr<Json::StreamWriter> writer_;
  std::ostringstream text_;
};

}  // namespace

Json::Value documentOf(const Snapshot& snapshot) {
  Json::Value json;
  json["version"] = snapshotVersion;
  json["state"] = stateOf(snapshot.state);
  Json::Value& settings = json["settings"] = Json::arrayValue;
  for (const auto& [key, value] : snapshot.settings) settings.append(settingOf(key, value));
  Json::Value& services = json["services"] = Json::arrayValue;
  for (const auto& [key, service] : snapshot.services) services.append(serviceOf(key, service));
  return json;
}

Snapshot snapshotIn(const Json::Value& document) {
  const JsonPart part(document);
  if (!part.isObject() || !part.find("version")) throw std::invalid_argument(noSnapshot);
  const JsonPart version = part.at("version");
  if (version.numberIn(text::rangeOf<int>()) != snapshotVersion) {
    version.refuse("this program reads version " + std::to_string(snapshotVersion) + ", not " + version.shown());
  }
  part.requireOnly({"version", "state", "settings", "services"});
  Snapshot snapshot;
  const JsonPart state = part.at("state");
  snapshot.state = stateIn(state);
  part.at("settings").eachItem([&](const JsonPart& setting) { readSetting(setting, snapshot); });
  part.at("services").eachItem([&](const JsonPart& service) { readService(service, snapshot); });
  requireServices(state, snapshot);
  return snapshot;
}

std::string writeSnapshot(const Snapshot& snapshot) {
  const Json::Value document = documentOf(snapshot);
  LineWriter writer;
  writer.put("{\"version\": " + std::to_string(snapshotVersion));
  for (const char* const name : {"state", "settings", "services"}) {
    writer.put(std::string(",\n\"") + name + "\": ");
    writer.putLines(document[name]);
  }
  writer.put("}\n");
  return writer.text();
}

Snapshot readSnapshot(std::string_view text) {
  Json::Value document;
  try {
    document = json::read(text::withoutMark(text), {.depth = deepest}, json::SameNames::refused);
  } catch (const json::NotJson& error) {
    throw std::invalid_argument(std::string(noSnapshot) + ": " + error.what());
  }
  return snapshotIn(document);
}

}  // namespace virtualtv
