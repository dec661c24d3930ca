// SPDX-License-Identifier: MIT
// docs/methods.md lists the methods and topics as in the rows of their tables.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "json/Read.h"
#include "json/Write.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

std::string inOneLine(std::string_view schema) {
  return virtualtv::json::write(virtualtv::json::read(schema));
}

void describe(std::ostream& page, const Method& method) {
  page << "\n## `" << method.name << "`\n\n" << method.help << "\n";
  if (!method.parameters.empty()) page << "\n| Parameter | | Schema |\n| --- | --- | --- |\n";
  for (const Parameter& parameter : method.parameters) {
    page << "| `" << parameter.name << "`" << (parameter.required ? "" : ", may be missing") << " | " << parameter.help
         << " | `" << inOneLine(parameter.schema) << "` |\n";
  }
  page << "\nResult: `" << inOneLine(method.result) << "`\n";
}

void describe(std::ostream& page, const std::string& name, const Json::Value& schema) {
  page << "\n## `" << name << "`\n\n"
       << schema["description"].asString() << "\n\n| Member | | Schema |\n| --- | --- | --- |\n";
  for (const std::string& member : schema["properties"].getMemberNames()) {
    Json::Value one = schema["properties"][member];
    const std::string help = one["description"].asString();
    one.removeMember("description");
    const auto isIt = [&](const Json::Value& required) { return required == member; };
    const bool isThere = std::any_of(schema["required"].begin(), schema["required"].end(), isIt);
    page << "| `" << member << "`" << (isThere ? "" : ", may be missing") << " | " << help << " | `"
         << virtualtv::json::write(one) << "` |\n";
  }
}

std::string reference() {
  std::ostringstream page;
  page << "# Methods and events\n\nEach of the plug-in's commands is a method `window.NAME` too, with the parameters "
          "that [the catalogue](commands.md) gives it;\n`window.execute` below shows what they answer. This page is "
          "made "
          "from the server's own table; `rpc.discover` answers the\nsame as an OpenRPC document.\n";
  const auto commands = commandMethods();
  for (const Method* method : methods()) {
    const bool isOfCatalogue = method->write == commands.front().write;
    if (!isOfCatalogue) describe(page, *method);
  }
  page << "\n# Topics\n\nThe events of a topic are of one of its kinds, whose members stand below.\n\n"
          "| Topic | What happened | Kinds |\n| --- | --- | --- |\n";
  for (const Topic& topic : topics()) {
    page << "| `" << topic.name << "` | " << topic.help << " | ";
    const char* front = "";
    for (const std::string& kind : topic.kinds) page << std::exchange(front, ", ") << "`" << kind << "`";
    page << " |\n";
  }
  page << "\n# Schemas\n\nWhat results and events refer to by name. There are no other members.\n";
  for (const std::string& name : namedSchemas().getMemberNames()) describe(page, name, namedSchemas()[name]);
  return page.str();
}

/// When the page differs, the corrected page is written to the folder for temporary files.
TEST(Reference, IsWhatTheRowsSay) {
  const std::filesystem::path file = METHODS_PAGE;
  std::ifstream page(file);
  const std::string text{std::istreambuf_iterator<char>(page), {}};
  if (text == reference()) return;
  const std::filesystem::path wanted = std::filesystem::temp_directory_path() / "methods.md";
  std::ofstream(wanted) << reference();
  FAIL() << file << " is not what the rows say; " << wanted << " is";
}

}  // namespace
}  // namespace virtualtv::rpc
