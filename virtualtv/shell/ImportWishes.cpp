#include "shell/ImportWishes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <stdexcept>

#include "import/Charset.h"
#include "import/Import.h"
#include "shell/Arguments.h"

namespace virtualtv::shell {

namespace {

std::string refusalOfEncoding(const std::string& name) {
  return refusalOf([&] {
    refuseEmpty(name, "the name of an encoding");
    import::requireEncoding(name);
  });
}

}  // namespace

Lines namesOfFormats() {
  Lines names;
  for (const import::Format& format : import::formats()) names.emplace_back(format.name);
  return names;
}

void addImportOptions(CLI::App& grammar, ImportWishes& wishes) {
  ImportOptions& options = wishes.options;
  const auto setFormat = [&options](const std::string& name) { options.format = import::formatNamed(name); };
  grammar.add_option("FILE", wishes.file, "the list, - for standard input")->required();
  grammar.add_option_function<std::string>("--format", setFormat, "its format; recognised if left out")
      ->check(CLI::IsMember(namesOfFormats()));
  grammar.add_option("--encoding", options.encoding, "of names that do not tell theirs; judged if left out")
      ->type_name("NAME")
      ->check(CLI::Validator(refusalOfEncoding, ""));
  grammar.add_flag("--add", options.add, "keep the services that are there");
}

ImportWishes importWishes(std::vector<std::string> words) {
  ImportWishes wishes;
  CLI::App grammar;
  grammar.set_help_flag();
  addImportOptions(grammar, wishes);
  try {
    keepEmptyValues(words);
    std::reverse(words.begin(), words.end());  // as the parser wants them
    grammar.parse(words);
  } catch (const CLI::ValidationError& error) {
    throw std::invalid_argument(error.what());
  } catch (const CLI::ParseError&) {
    wishes.file.clear();
  }
  if (wishes.file.empty()) throw std::invalid_argument("usage: .import FILE [--add] [--format NAME] [--encoding NAME]");
  return wishes;
}

}  // namespace virtualtv::shell
