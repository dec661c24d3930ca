// SPDX-License-Identifier: MIT
#include "catalogue/Catalogue.h"

#include <json/json.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace virtualtv::embedded {
extern const std::string_view commandCatalogue;
}

namespace virtualtv {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument("catalogue of commands: " + reason);
}

/// The member with this name, which must exist.
const Json::Value& at(const Json::Value& object, const char* name) {
  if (!object.isObject() || !object.isMember(name)) refuse("'" + std::string(name) + "' is missing");
  return object[name];
}

std::string textAt(const Json::Value& object, const char* name) {
  return at(object, name).asString();
}

std::map<std::string, std::string> textsOf(const Json::Value& object) {
  std::map<std::string, std::string> texts;
  for (const std::string& name : object.getMemberNames()) texts[name] = object[name].asString();
  return texts;
}

CatalogueCommand::Parameter parameterOf(const Json::Value& parameter) {
  return {.name = textAt(parameter, "name"),
          .help = textAt(parameter, "help"),
          .required = at(parameter, "required").asBool(),
          .parse = textAt(parameter, "parse"),
          .unparsed = textAt(parameter, "unparsed"),
          .type = parameter["type"].asString(),
          .values = parameter["values"].asString()};
}

void readAnswer(const Json::Value& answer, CatalogueCommand& command) {
  command.reply = textAt(answer, "reply");
  command.answerKind = textAt(answer, "kind");
  command.answerHelp = textAt(answer, "help");
  command.answerType = answer["type"].asString();
  command.answerValues = answer["values"].asString();
  if (answer.isMember("preset")) command.preset = answer["preset"].asInt();
  command.presetMeans = answer["presetMeans"].asString();
}

CatalogueCommand commandOf(const Json::Value& described) {
  CatalogueCommand command;
  command.name = textAt(described, "name");
  command.help = textAt(described, "help");
  for (const Json::Value& parameter : at(described, "parameters")) command.parameters.push_back(parameterOf(parameter));
  readAnswer(at(described, "answer"), command);
  for (const Json::Value& failure : at(described, "failures")) {
    command.failures.push_back({at(failure, "code").asInt(), textAt(failure, "means")});
  }
  return command;
}

const CatalogueCommand* named(const std::vector<CatalogueCommand>& commands, std::string_view name) {
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&](const CatalogueCommand& command) { return command.name == name; });
  return found == commands.end() ? nullptr : &*found;
}

std::vector<std::string> namesOf(const std::vector<CatalogueCommand>& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const CatalogueCommand& command : commands) names.push_back(command.name);
  return names;
}

CatalogueType typeOf(const Json::Value& described) {
  CatalogueType type;
  type.help = textAt(described, "help");
  for (const Json::Value& value : described["values"]) {
    const int from = at(value, "value").asInt();
    type.values.push_back({from, value.get("to", from).asInt(), textAt(value, "means")});
  }
  type.members = textsOf(described["members"]);
  return type;
}

}  // namespace

Catalogue::Catalogue(std::string_view document) {
  Json::Value root;
  std::string errors;
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  if (!reader->parse(document.data(), document.data() + document.size(), &root, &errors)) refuse(errors);
  try {
    for (const Json::Value& command : at(root, "commands")) commands_.push_back(commandOf(command));
    for (const Json::Value& command : at(root, "listCommands")) listCommands_.push_back(commandOf(command));
    const Json::Value& types = at(root, "types");
    for (const std::string& name : types.getMemberNames()) types_[name] = typeOf(types[name]);
    parsing_ = textsOf(at(root, "parsing"));
    answers_ = textsOf(at(root, "answers"));
  } catch (const Json::Exception& exception) {
    refuse(exception.what());
  }
}

const CatalogueCommand* Catalogue::find(std::string_view name) const {
  return named(commands_, name);
}

const CatalogueCommand* Catalogue::findList(std::string_view name) const {
  return named(listCommands_, name);
}

const CatalogueType* Catalogue::findType(std::string_view name) const {
  const auto found = types_.find(name);
  return found == types_.end() ? nullptr : &found->second;
}

const Catalogue& catalogue() {
  static const Catalogue builtIn = readCatalogue();
  return builtIn;
}

Catalogue readCatalogue() {
  return Catalogue(embedded::commandCatalogue);
}

std::vector<std::string> commandNames() {
  return namesOf(catalogue().commands());
}

std::vector<std::string> listCommandNames() {
  return namesOf(catalogue().listCommands());
}

}  // namespace virtualtv
