// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "channels/ExportList.h"
#include "channels/ImportList.h"
#include "shell/Lines.h"
#include "shell/Options.h"

// The arguments of `.import`, `.export` and `.scan`, and of the subcommands `import`, `export` and `scan`.

namespace virtualtv::shell {

/// The arguments of `import` and `.import`.
struct ImportWishes {
  std::string file;
  ImportOptions options;
};

/// The arguments of `export` and `.export`.
struct ExportWishes {
  std::string file;  ///< for `.export` only
  const import::Format* format = &defaultExportFormat();
};

/// The arguments of `scan` and `.scan`.
struct ScanWishes {
  std::vector<std::string> files;
  bool json = false;    ///< print a document instead of a table
  bool import = false;  ///< import the services into the set
  bool add = false;     ///< keep the services that are there
};

/// The options that fill the wishes, which must outlive them. Those of `export` do not include the file.
Options importOptions(ImportWishes& wishes);
Options exportOptions(ExportWishes& wishes);
Options scanOptions(ScanWishes& wishes);

/// Reads the words after `.import`. @throws std::invalid_argument for words that can't be understood.
ImportWishes importWishes(const Lines& words);

/// Reads the words after `.export`. @throws std::invalid_argument for words that can't be understood.
ExportWishes exportWishes(const Lines& words);

/// Reads the words after `.scan`. @throws std::invalid_argument for words that can't be understood.
ScanWishes scanWishes(const Lines& words);

/// The values of `--format` when importing.
Lines namesOfFormats();
/// The values of `--format` when exporting.
Lines namesOfWrittenFormats();

}  // namespace virtualtv::shell
