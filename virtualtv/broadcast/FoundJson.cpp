// SPDX-License-Identifier: MIT
#include "broadcast/FoundJson.h"

#include <utility>

#include "services/KindNames.h"
#include "services/Language.h"
#include "services/ListText.h"

namespace virtualtv::broadcast {

namespace {

template <typename Track>
Json::Value documentOf(const Track& track) {
  Json::Value json;
  json["pid"] = track.pid;
  if (track.lang != 0) json["language"] = nameOfLanguage(track.lang);
  return json;
}

Json::Value audioOf(const FoundService& service) {
  Json::Value list(Json::arrayValue);
  for (const AudioTrack& track : service.audio) {
    Json::Value json = documentOf(track);
    if (track.decodeType != CODING_UNKNOWN) json["coding"] = nameOfCoding(track.decodeType);
    json["type"] = track.audioType;
    list.append(std::move(json));
  }
  return list;
}

Json::Value subtitlesOf(const FoundService& service) {
  Json::Value list(Json::arrayValue);
  for (const SubtitleTrack& track : service.subtitles) {
    Json::Value json = documentOf(track);
    json["type"] = nameOfSubtitleKind(track.type);
    list.append(std::move(json));
  }
  return list;
}

Json::Value documentOf(const FoundService& service) {
  Json::Value json;
  json["programNumber"] = service.program;
  if (!service.name.empty()) json["name"] = service.name;
  if (!service.provider.empty()) json["provider"] = service.provider;
  if (service.kind) json["kind"] = nameOf(*service.kind);
  if (service.stream.stream >= 0) json["transportStreamId"] = service.stream.stream;
  if (service.stream.network >= 0) json["originalNetworkId"] = service.stream.network;
  if (service.number) {
    json["major"] = service.number->major;
    json["minor"] = service.number->minor;
  }
  json["scrambled"] = service.isScrambled;
  json["audio"] = audioOf(service);
  json["subtitles"] = subtitlesOf(service);
  return json;
}

}  // namespace

Json::Value documentOf(const Scan& scan) {
  Json::Value json;
  json["packets"] = Json::UInt64{scan.packets};
  json["services"] = Json::arrayValue;
  for (const FoundService& service : scan.services) json["services"].append(documentOf(service));
  json["problems"] = Json::arrayValue;
  for (const import::Problem& problem : scan.problems.kept()) {
    Json::Value& told = json["problems"].append(Json::objectValue);
    told["at"] = problem.at;
    told["reason"] = problem.reason;
  }
  return json;
}

}  // namespace virtualtv::broadcast
