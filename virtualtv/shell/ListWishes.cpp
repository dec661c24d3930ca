// SPDX-License-Identifier: MIT
#include "shell/ListWishes.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "import/Charset.h"
#include "import/Import.h"

namespace virtualtv::shell {

namespace {

Option file(const char* help, const std::function<void(const std::string&)>& take) {
  const auto takeName = [take](const std::string& name) {
    refuseEmpty(name, "a file");
    take(name);
  };
  return {"FILE", "TEXT", help, takeName};
}

Option flag(const char* name, bool& isWished, const char* help) {
  return {name, "", help, [&isWished](const std::string&) { isWished = true; }};
}

/// Writes names as a set.
std::string setOf(const Lines& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "{" : ",") + name;
  return text + "}";
}

/// The option `--format` with these names as values.
Option format(const Lines& names, const char* help, const std::function<void(const import::Format*)>& take) {
  const auto takeName = [names, take](const std::string& name) {
    refuseEmpty(name, "the name of a format");
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      throw std::invalid_argument(name + " not in " + setOf(names));
    }
    take(import::formatNamed(name));
  };
  return {"--format", "TEXT:" + setOf(names), help, takeName};
}

[[noreturn]] void refuseWords(const char* usage) {
  throw std::invalid_argument(std::string("usage: ") + usage);
}

}  // namespace

Options importOptions(ImportWishes& wishes) {
  ImportOptions& options = wishes.options;
  const auto setEncoding = [&options](const std::string& name) {
    refuseEmpty(name, "the name of an encoding");
    import::requireEncoding(name);
    options.encoding = name;
  };
  return {
      file("the list, - for standard input", [&wishes](const std::string& name) { wishes.file = name; }),
      format(namesOfFormats(), "format of the list; recognised by default",
             [&options](const import::Format* format) { options.format = format; }),
      {"--encoding", "NAME", "encoding of names that do not specify their own; guessed by default", setEncoding},
      flag("--add", options.add, "add to the services of the set"),
  };
}

Options exportOptions(ExportWishes& wishes) {
  return {format(namesOfWrittenFormats(), "format of the list; json by default",
                 [&wishes](const import::Format* format) { wishes.format = format; })};
}

Options scanOptions(ScanWishes& wishes) {
  Option files =
      file("recordings, - for standard input", [&wishes](const std::string& name) { wishes.files.push_back(name); });
  files.isSeveral = true;
  Option add = flag("--add", wishes.add, "add to the services of the set");
  add.needs = "--import";
  return {
      files,
      flag("--json", wishes.json, "print a document instead of a table"),
      flag("--import", wishes.import, "replace the set's services by those found"),
      add,
  };
}

ImportWishes importWishes(const Lines& words) {
  ImportWishes wishes;
  if (!readWords(importOptions(wishes), words)) refuseWords(".import FILE [--add] [--format NAME] [--encoding NAME]");
  return wishes;
}

ExportWishes exportWishes(const Lines& words) {
  ExportWishes wishes;
  Options options = exportOptions(wishes);
  options.insert(options.begin(), file("", [&wishes](const std::string& name) { wishes.file = name; }));
  if (!readWords(options, words)) refuseWords(".export FILE [--format NAME]");
  return wishes;
}

ScanWishes scanWishes(const Lines& words) {
  ScanWishes wishes;
  if (!readWords(scanOptions(wishes), words)) refuseWords(".scan FILE... [--json] [--import [--add]]");
  return wishes;
}

Lines namesOfFormats() {
  Lines names;
  for (const import::Format& format : import::formats()) names.emplace_back(format.name);
  return names;
}

Lines namesOfWrittenFormats() {
  Lines names;
  for (const import::Format& format : import::formats()) {
    if (import::isWritten(format)) names.emplace_back(format.name);
  }
  return names;
}

}  // namespace virtualtv::shell
