// SPDX-License-Identifier: MIT
#include "rpc/OpenRpc.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "json/Read.h"
#include "rpc/Examples.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"

namespace virtualtv::rpc {

namespace {

Json::Value documentOf(const Parameter& parameter) {
  Json::Value json;
  json["name"] = std::string(parameter.name);
  json["description"] = std::string(parameter.help);
  json["required"] = parameter.required;
  json["schema"] = json::read(parameter.schema);
  return json;
}

Json::Value documentOf(const Example& example, const Method& method) {
  Json::Value json;
  json["name"] = std::string(method.name);
  json["description"] = "on the built-in set";
  for (std::size_t at = 0; at < example.before.size(); ++at) {
    json["description"] = json["description"].asString() + (at == 0 ? ", after: " : "; ") + example.before[at];
  }
  json["params"] = Json::arrayValue;
  const auto add = [&](const std::string& name, const Json::Value& value) {
    Json::Value& parameter = json["params"].append(Json::objectValue);
    parameter["name"] = name;
    parameter["value"] = value;
  };
  if (example.parameters.isObject()) {
    for (const std::string& name : example.parameters.getMemberNames()) add(name, example.parameters[name]);
  } else {
    for (Json::ArrayIndex at = 0; at < example.parameters.size(); ++at) {
      add(std::string(method.parameters.at(at).name), example.parameters[at]);
    }
  }
  json["result"]["name"] = "result";
  json["result"]["value"] = example.result;
  return json;
}

Json::Value documentOf(const Method& method) {
  Json::Value json;
  json["name"] = std::string(method.name);
  json["summary"] = std::string(method.help);
  json["paramStructure"] = "either";
  json["params"] = Json::arrayValue;
  for (const Parameter& parameter : method.parameters) json["params"].append(documentOf(parameter));
  json["result"]["name"] = "result";
  json["result"]["schema"] = json::read(method.result);
  if (method.describe != nullptr) method.describe(method, json);
  const Example* const example = exampleOf(std::string(method.name));
  if (example != nullptr) json["examples"].append(documentOf(*example, method));
  return json;
}

Json::Value schemaOf(const Topic& topic) {
  Json::Value json;
  json["description"] = topic.help;
  for (const std::string& kind : topic.kinds) {
    json["anyOf"].append(Json::objectValue)["$ref"] = "#/components/schemas/" + kind;
  }
  return json;
}

}  // namespace

Json::Value openRpcDocument() {
  Json::Value json;
  json["openrpc"] = "1.3.2";
  json["info"]["title"] = "emp-window";
  json["info"]["version"] = "1";
  json["info"]["description"] = "Runs the commands of the plug-in on a TV set in software, and works that set.";
  json["methods"] = Json::arrayValue;
  for (const Method* method : methods()) json["methods"].append(documentOf(*method));
  json["components"]["schemas"] = namedSchemas();
  for (const Topic& topic : topics()) {
    json["components"]["schemas"]["event." + topic.name] = schemaOf(topic);
  }
  return json;
}

}  // namespace virtualtv::rpc
