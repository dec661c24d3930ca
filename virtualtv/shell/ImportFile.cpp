#include "shell/ImportFile.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

#include "import/Charset.h"

namespace virtualtv::shell {

namespace {

using import::Format;

std::string count(std::size_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

/// Their titles, each with the name that `--format` takes.
std::string titlesOfFormats() {
  std::string titles;
  for (const Format& format : import::formats()) {
    titles += (titles.empty() ? "" : ", ") + std::string(format.title) + " (" + std::string(format.name) + ")";
  }
  return titles;
}

const Format& formatOf(const std::string& name, std::string_view content, const ImportOptions& options) {
  const Format* format = options.format != nullptr ? options.format : import::recognise(content);
  if (format == nullptr)
    throw std::runtime_error(name + ": not a channel list of a known format: " + titlesOfFormats());
  return *format;
}

/// Empty for an encoding that names can be in, else the reason why they can't.
std::string refusalOf(const std::string& encoding) {
  try {
    import::requireEncoding(encoding);
    return {};
  } catch (const std::invalid_argument& refusal) {
    return refusal.what();
  }
}

}  // namespace

Lines namesOfFormats() {
  Lines names;
  for (const Format& format : import::formats()) names.emplace_back(format.name);
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
      ->check(CLI::Validator(refusalOf, ""));
  grammar.add_flag("--add", options.add, "keep the services that are there");
}

ImportWishes importWishes(const std::vector<std::string>& words) {
  ImportWishes wishes;
  CLI::App grammar;
  grammar.set_help_flag();
  addImportOptions(grammar, wishes);
  try {
    grammar.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::ValidationError& error) {
    throw std::invalid_argument(error.what());
  } catch (const CLI::ParseError&) {
    wishes.file.clear();
  }
  if (wishes.file.empty()) throw std::invalid_argument("usage: .import FILE [--add] [--format NAME] [--encoding NAME]");
  return wishes;
}

Lines ImportReport::problemLines() const {
  Lines lines;
  for (const import::Problem& problem : problems.kept()) {
    const std::string place = problem.line ? ":" + std::to_string(*problem.line) : ": " + problem.at;
    lines.push_back(oneLine(list) + place + ": " + problem.reason);
  }
  const std::size_t others = problems.count() - problems.kept().size();
  if (others > 0) lines.push_back(oneLine(list) + ": " + count(others, "more problem"));
  return lines;
}

std::string ImportReport::summary() const {
  return "imported " + count(imported, "service") + ": " + std::to_string(changes.added) + " added, " +
         std::to_string(changes.changed) + " changed, " + std::to_string(changes.gone) + " gone; " +
         count(problems.unread(), "line") + " could not be read";
}

std::string ImportReport::error() const {
  return imported > 0 ? std::string() : list + ": no service in it";
}

ImportReport importServices(Tv& tv, const std::string& name, std::string_view content, const ImportOptions& options) {
  import::Result read = import::read(content, formatOf(name, content, options), options.encoding);
  ImportReport report{name, read.services.size(), {}, std::move(read.problems)};
  if (!read.services.empty()) report.changes = tv.import(read.services, options.add);
  return report;
}

}  // namespace virtualtv::shell
