#pragma once

#include <string>
#include <vector>

#include "channels/ImportList.h"
#include "shell/Lines.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library has
class App;
}

namespace virtualtv::shell {

/// What `import` and `.import` are told.
struct ImportWishes {
  std::string file;
  ImportOptions options;
};

/// What `--format` takes.
Lines namesOfFormats();

/// Adds the file and the options of an import to a grammar, which writes them into `wishes`.
void addImportOptions(CLI::App& grammar, ImportWishes& wishes);

/// Reads the words behind `.import`. @throws std::invalid_argument for words that can't be understood.
ImportWishes importWishes(std::vector<std::string> words);

}  // namespace virtualtv::shell
