// SPDX-License-Identifier: MIT
#include "rpc/Schemas.h"

#include "json/Read.h"
#include "rpc/EventJson.h"

namespace virtualtv::embedded {
extern const std::string_view schemas;
extern const std::string_view events;
}  // namespace virtualtv::embedded

namespace virtualtv::rpc {

namespace {

Json::Value eventTable() {
  return json::read(embedded::events);
}

/// The members that all events have.
Json::Value commonMembers(const std::string& topic) {
  Json::Value members = json::read(R"({
    "number": {"type": "integer", "description": "counts up by one over all topics"},
    "topic": {"description": "the topic"},
    "revision": {"type": "integer", "description": "number of the last change of the set"},
    "command": {"type": "integer", "description": "number of the command that it belongs to"}})");
  members["topic"]["const"] = topic;
  if (haveTime(topic)) {
    members["time"] = json::read(R"({"type": "integer", "description": "milliseconds since 1970"})");
  }
  return members;
}

/// The whole schema of a kind of events. All members of its row are required, and so are the common members except the
/// command.
Json::Value schemaOf(const std::string& topic, const Json::Value& row) {
  Json::Value schema = row;
  schema["type"] = "object";
  schema["additionalProperties"] = false;
  Json::Value& members = schema["properties"];
  const Json::Value common = commonMembers(topic);
  for (const std::string& name : common.getMemberNames()) {
    if (name != "command") schema["required"].append(name);
    if (!members.isMember(name)) members[name] = common[name];
  }
  for (const std::string& name : row["properties"].getMemberNames()) schema["required"].append(name);
  return schema;
}

Json::Value allSchemas() {
  Json::Value all = json::read(embedded::schemas);
  const Json::Value table = eventTable();
  for (const Topic& topic : topics()) {
    const Json::Value& kinds = table[topic.name]["kinds"];
    for (const std::string& kind : topic.kinds) all[kind] = schemaOf(topic.name, kinds[kind]);
  }
  return all;
}

}  // namespace

const Json::Value& namedSchemas() {
  static const Json::Value all = allSchemas();
  return all;
}

const std::vector<Topic>& topics() {
  static const std::vector<Topic> all = [] {
    std::vector<Topic> made;
    const Json::Value table = eventTable();
    for (const std::string& name : table.getMemberNames()) {
      const Json::Value& row = table[name];
      made.push_back({name, row["description"].asString(), row["kinds"].getMemberNames()});
    }
    return made;
  }();
  return all;
}

}  // namespace virtualtv::rpc
