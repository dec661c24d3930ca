#pragma once

#include <string>
#include <vector>

#include "channels/ExportList.h"
#include "channels/ImportList.h"
#include "shell/Lines.h"
#include "shell/Options.h"

// What `.import`, `.export` and `.scan` are told, and the subcommands `import`, `export` and `scan`.

namespace virtualtv::shell {

/// What `import` and `.import` are told.
struct ImportWishes {
  std::string file;
  ImportOptions options;
};

/// What `export` and `.export` are told.
struct ExportWishes {
  std::string file;  ///< of `.export`
  const import::Format* format = &defaultExportFormat();
};

/// What `scan` and `.scan` are told.
struct ScanWishes {
  std::vector<std::string> files;
  bool json = false;    ///< a document in place of a table
  bool import = false;  ///< into the set
  bool add = false;     ///< keep the services that are there
};

/// What sets the wishes, which must live as long; those of `export` without the file.
Options importOptions(ImportWishes& wishes);
Options exportOptions(ExportWishes& wishes);
Options scanOptions(ScanWishes& wishes);

/// Reads the words behind `.import`. @throws std::invalid_argument for words that can't be understood.
ImportWishes importWishes(const Lines& words);

/// Reads the words behind `.export`. @throws std::invalid_argument for words that can't be understood.
ExportWishes exportWishes(const Lines& words);

/// Reads the words behind `.scan`. @throws std::invalid_argument likewise.
ScanWishes scanWishes(const Lines& words);

/// What `--format` takes.
Lines namesOfFormats();
/// What it takes for a list that is written.
Lines namesOfWrittenFormats();

}  // namespace virtualtv::shell
