#include "shell/Catalogue.h"

#include <json/json.h>

#include <memory>
#include <string_view>

namespace virtualtv::embedded {
extern const std::string_view CommandCatalogue;
}

namespace virtualtv::shell {

namespace {

CatalogueCommand commandFrom(const Json::Value& described) {
  CatalogueCommand command;
  command.name = described["name"].asString();
  command.help = described["help"].asString();
  command.reply = described["answer"]["reply"].asString();
  command.answerHelp = described["answer"]["help"].asString();
  for (const Json::Value& parameter : described["parameters"]) {
    command.parameters.push_back(
        {parameter["name"].asString(), parameter["help"].asString(), parameter["required"].asBool()});
  }
  return command;
}

std::vector<CatalogueCommand> read(std::string_view document) {
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  Json::Value root;
  std::vector<CatalogueCommand> commands;
  if (!reader->parse(document.data(), document.data() + document.size(), &root, nullptr)) return commands;
  for (const Json::Value& described : root["commands"]) commands.push_back(commandFrom(described));
  return commands;
}

}  // namespace

const std::vector<CatalogueCommand>& catalogue() {
  static const std::vector<CatalogueCommand> commands = read(embedded::CommandCatalogue);
  return commands;
}

}  // namespace virtualtv::shell
