// SPDX-License-Identifier: MIT
#include "support/Tree.h"

#include <json/json.h>

#include <array>
#include <memory>
#include <stdexcept>

namespace bench {

namespace {

const std::array<Json::StaticString, 9> members{
    Json::StaticString("CHANNEL_NUMBER"), Json::StaticString("CHANNEL_TYPE"), Json::StaticString("FREQUENCY"),
    Json::StaticString("MAJOR"),          Json::StaticString("MINOR"),        Json::StaticString("ORIGINAL_NETWORK_ID"),
    Json::StaticString("PROGRAM_NUMBER"), Json::StaticString("SERVICE_ID"),   Json::StaticString("SERVICE_NAME")};

/// An element like `read`, with names that are not copied and nodes adjacent in memory.
Json::Value element(const Json::Value& read) {
  Json::Value element(Json::objectValue);
  for (const Json::StaticString& member : members) element[member] = read[member.c_str()];
  return element;
}

}  // namespace

Json::Value channelTree(const std::string& text) {
  Json::Value read;
  Json::CharReaderBuilder builder;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  if (!reader->parse(text.data(), text.data() + text.size(), &read, &errors)) throw std::runtime_error(errors);
  Json::Value elements(Json::arrayValue);
  for (const Json::Value& service : read["TCServiceData"]) elements.append(element(service));
  Json::Value root(Json::objectValue);
  root[Json::StaticString("ListName")] = Json::Value(Json::StaticString("ChannelList"));
  root[Json::StaticString("TCServiceData")] = std::move(elements);
  return root;
}

}  // namespace bench
