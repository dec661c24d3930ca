// SPDX-License-Identifier: MIT
#include "services/ServiceDocument.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>
#include <string_view>

#include "json/Texts.h"
#include "services/FieldNames.h"
#include "services/FieldNumbers.h"
#include "services/Fields.h"
#include "services/ListText.h"
#include "text/Numbers.h"

namespace virtualtv {

namespace {

constexpr std::int64_t mostExact = (std::int64_t{1} << 53) - 1;  // the largest integer that all JSON readers hold
                                                                 // exactly

Json::Value numberOf(int fieldId, std::uint64_t value) {
  const KnownField* const field = knownField(fieldId);
  if (field != nullptr && field->kind == FieldKind::uint64) return std::to_string(value);
  const auto number = std::bit_cast<std::int64_t>(value);
  const bool isExact = number >= -mostExact && number <= mostExact;
  return isExact ? Json::Value(Json::Int64{number}) : Json::Value(std::to_string(number));
}

std::uint64_t numberIn(int fieldId, const JsonPart& part) {
  if (!takesNumber(fieldId)) part.refuse("the field takes a text, not a number");
  const text::Range range = rangeOfField(fieldId);
  const text::Range exact{std::max(range.least, -mostExact), std::min(range.most, std::uint64_t{mostExact})};
  std::optional<std::uint64_t> number;
  if (part.isText()) {
    number = text::numberIn(part.text(), range);
  } else if (const auto plain = part.numberIn(exact)) {
    number = std::bit_cast<std::uint64_t>(*plain);
  }
  if (!number) part.want(numbersTakenBy(fieldId) + (range.most > exact.most ? ", as a text beyond 53 bits," : ""));
  return *number;
}

/// Reads the fields of a service. @param take  called with the id and the value of each field.
template <typename Take>
void readFields(const JsonPart& part, const char* name, Service& service, Take take) {
  const auto fields = part.find(name);
  if (!fields) return;
  fields->eachMember([&](std::string_view field, const JsonPart& value) {
    const auto id = fieldNamed(field);
    if (!id) value.refuse("there is no field of that name");
    if (service.numbers.contains(*id) || service.texts.contains(*id)) value.refuse("the field stands there already");
    take(*id, value);
  });
}

Json::Value footageDocument(const Footage& footage) {
  Json::Value json;
  json["path"] = json::ofBytes(footage.path);
  json["video"] = footage.video;
  json["type"] = footage.type;
  return json;
}

Footage footageIn(const JsonPart& part) {
  part.requireOnly({"path", "video", "type"});
  Footage footage;
  footage.path = json::bytesIn(part.at("path"));
  if (footage.path.empty()) part.at("path").want("the path of a file");
  constexpr text::Range pids{1, 8191};
  footage.video = static_cast<int>(part.at("video").number(pids));
  footage.type = static_cast<int>(part.at("type").number({0, 255}));
  return footage;
}

template <typename List, typename Read>
void readList(const JsonPart& part, const char* name, List& list, Read readText) {
  const auto text = part.find(name);
  if (text) list = text->check([&, written = text->text()] { return readText(written); });
}

}  // namespace

Json::Value serviceDocument(const Service& service) {
  Json::Value json(Json::objectValue);
  for (const auto& [id, number] : service.numbers) json["numbers"][nameOfField(id)] = numberOf(id, number);
  for (const auto& [id, units] : service.texts) json["texts"][nameOfField(id)] = json::ofUnits(units);
  if (!service.group.empty()) json["group"] = json::ofBytes(service.group);
  if (!service.audio.empty()) json["audio"] = textOf(service.audio);
  if (!service.subtitles.empty()) json["subtitles"] = textOf(service.subtitles);
  if (!service.favourites.empty()) json["favourites"] = textOf(service.favourites);
  if (!service.listEntry.empty()) json["listEntry"] = json::ofBytes(service.listEntry);
  if (service.footage) json["recording"] = footageDocument(*service.footage);
  return json;
}

Service serviceIn(const JsonPart& part) {
  part.requireOnly({"key", "numbers", "texts", "group", "audio", "subtitles", "favourites", "listEntry", "recording"});
  Service service;
  readFields(part, "numbers", service,
             [&](int id, const JsonPart& value) { service.numbers.emplace(id, numberIn(id, value)); });
  readFields(part, "texts", service, [&](int id, const JsonPart& value) {
    value.check([&] { requireText(id); });
    service.texts.emplace(id, json::unitsIn(value));
  });
  if (const auto group = part.find("group")) service.group = json::bytesIn(*group);
  readList(part, "audio", service.audio, readAudioTracks);
  readList(part, "subtitles", service.subtitles, readSubtitleTracks);
  readList(part, "favourites", service.favourites, readFavourites);
  if (const auto entry = part.find("listEntry")) service.listEntry = json::bytesIn(*entry);
  if (const auto recording = part.find("recording")) service.footage = footageIn(*recording);
  return service;
}

}  // namespace virtualtv
