// SPDX-License-Identifier: MIT
// The plug-in's commands as methods: a row for each command of the catalogue, and two rows that take any name.
#include <cmath>
#include <deque>
#include <string>
#include <vector>

#include "catalogue/Catalogue.h"
#include "json/Read.h"
#include "rpc/Core.h"
#include "rpc/Method.h"
#include "rpc/ReplyJson.h"

namespace virtualtv::rpc {

namespace {

constexpr std::string_view prefix = "window.";
constexpr double greatestWhole = 9007199254740991;  // 2^53 - 1
constexpr std::string_view word = R"({"type": ["string", "integer", "boolean"]})";
constexpr std::string_view result =
    R"({"type": "object", "required": ["accepted", "kind"], "properties": {
        "accepted": {"type": "boolean"},
        "kind": {"enum": ["int", "ascii", "unicode", "empty"]},
        "value": {"type": ["integer", "string"]},
        "bytes": {"type": "string", "contentEncoding": "base64"},
        "units": {"type": "array", "items": {"type": "integer"}}}})";

/// The text that the plug-in receives for a parameter of a command.
std::string wordOf(const Json::Value& value, const std::string& name) {
  if (value.isBool()) return value.asBool() ? "1" : "0";
  if (value.isInt64() && std::abs(value.asDouble()) <= greatestWhole) return std::to_string(value.asInt64());
  if (value.isString() && value.asString().find('\0') == std::string::npos) return value.asString();
  throw Failure(Code::badParameters,
                name + ": a text without U+0000, a whole number up to 2^53 - 1, true or false is wanted");
}

std::string_view commandOf(const Method& method) {
  return method.name.substr(prefix.size());
}

/// The parameters of a command call, up to the last one given.
std::vector<std::string> wordsOf(const Context& context) {
  std::vector<std::string> words{std::string(commandOf(context.method))};
  std::vector<std::string> gap;
  for (const Parameter& parameter : context.method.parameters) {
    if (!context.params.isGiven(parameter.name)) {
      gap.emplace_back();
      continue;
    }
    words.insert(words.end(), gap.begin(), gap.end());
    gap.clear();
    words.push_back(wordOf(context.params.value(parameter.name), std::string(parameter.name)));
  }
  return words;
}

void run(const Context& context, const std::vector<std::string>& words, bool list, std::string& text) {
  std::string ret;
  const bool accepted = context.seat.shell.client().execute(words, list, ret);
  appendResult(text, accepted, ret);
}

void runCommand(const Context& context, std::string& text) {
  run(context, wordsOf(context), false, text);
}

std::vector<std::string> givenWords(const Context& context) {
  std::vector<std::string> words{context.params.text("name")};
  if (words.front().find('\0') != std::string::npos) throw Failure(Code::badParameters, "name: U+0000 in it");
  const Json::Value& parameters = context.params.value("parameters");
  if (!parameters.isNull() && !parameters.isArray()) {
    throw Failure(Code::badParameters, "parameters: an array is wanted");
  }
  for (Json::ArrayIndex at = 0; at < parameters.size(); ++at) {
    words.push_back(wordOf(parameters[at], "parameters[" + std::to_string(at) + "]"));
  }
  return words;
}

void execute(const Context& context, std::string& text) {
  const std::vector<std::string> words = givenWords(context);
  if (words.size() > 1 + device::mostParameters) {
    throw Failure(Code::badParameters, "parameters: at most 4 are passed; executeWithParamList passes any number");
  }
  run(context, words, false, text);
}

void executeWithParamList(const Context& context, std::string& text) {
  run(context, givenWords(context), true, text);
}

/// The schema of a command's result: its kind of reply, or a number for a failure code. A negative preset counts as a
/// failure code.
Json::Value schemaOf(const CatalogueCommand& command) {
  Json::Value schema = json::read(result);
  schema["description"] = command.answerHelp;
  Json::Value& kinds = schema["properties"]["kind"]["enum"] = Json::arrayValue;
  kinds.append("int");
  if (command.reply != "int") kinds.append(command.reply);
  kinds.append("empty");
  const auto addFailure = [&](int code, const std::string& means) {
    Json::Value& told = schema["x-failures"].append(Json::objectValue);
    told["value"] = code;
    told["description"] = means;
  };
  for (const CatalogueCommand::Failure& failure : command.failures) addFailure(failure.code, failure.means);
  if (command.preset.value_or(0) < 0) addFailure(*command.preset, command.presetMeans);
  return schema;
}

void describe(const Method& method, Json::Value& description) {
  const CatalogueCommand& command = *catalogue().find(commandOf(method));
  description["summary"] = command.help;
  description["result"]["schema"] = schemaOf(command);
  for (Json::ArrayIndex at = 0; at < description["params"].size(); ++at) {
    description["params"][at]["description"] = command.parameters.at(at).help;
  }
}

/// The rows, and the names that they refer to. Their texts stay in the catalogue, since few processes need them.
struct Rows {
  Rows() {
    for (const CatalogueCommand& command : readCatalogue()) {
      Method& method = methods.emplace_back();
      method.name = names.emplace_back(std::string(prefix) + command.name);
      method.result = result;
      method.write = runCommand;
      method.describe = describe;
      for (const auto& parameter : command.parameters) {
        method.parameters.push_back({names.emplace_back(parameter.name), word, ""});
      }
    }
    const Parameter name{"name", R"({"type": "string"})", "name of the command", true};
    const std::string_view words = R"({"type": "array", "items": {"type": ["string", "integer", "boolean"]}})";
    methods.push_back({"window.execute",
                       "run a command of any name, as on the set",
                       {name, {"parameters", words, "up to four"}},
                       result,
                       nullptr,
                       execute});
    methods.push_back({"window.executeWithParamList",
                       "run a command of any name with a list of parameters",
                       {name, {"parameters", words, "any number"}},
                       result,
                       nullptr,
                       executeWithParamList});
  }

  std::deque<std::string> names;
  std::vector<Method> methods;
};

}  // namespace

std::span<const Method> commandMethods() {
  static const Rows rows;
  return rows.methods;
}

}  // namespace virtualtv::rpc
