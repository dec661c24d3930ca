// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/Import.h"
#include "set/Tv.h"

namespace virtualtv::broadcast {
struct Scan;
}

namespace virtualtv {

struct ImportOptions {
  const import::Format* format = nullptr;  ///< null to recognise the format
  std::string encoding;  ///< iconv's name of the encoding of names that do not specify it; empty to judge it from them
  bool add = false;      ///< keep the services that the set has
};

/// The files that broadcasts were read from.
struct RecordingFiles {
  std::vector<std::string> paths;  ///< in the order of the scan; a service with an empty or missing path does not play
  bool areTrusted = false;         ///< see `Footage`
};

/// The result of an import.
struct ImportReport {
  std::string list;          ///< name of the list in messages
  std::size_t imported = 0;  ///< number of services in the list
  ServiceChanges changes;    ///< changes to the services of the set
  import::Problems problems;
  bool hasLines = true;  ///< false for a scan, whose problems are not about lines of a list

  /// A line `LIST:LINE: REASON` for each stored problem, and a line with the number of the others, all escaped.
  std::vector<std::string> problemLines() const;
  /// One line with the numbers of imported services and, for a list with lines, of unreadable lines.
  std::string summary() const;
  /// `LIST: no service in it`; empty when services were imported.
  std::string error() const;
};

/// Imports the services of a channel list into the set. A list without services is an error, and leaves the set
/// unchanged.
/// @param name  name of the file in messages.
/// @throws std::runtime_error when the format is not recognised, std::invalid_argument when there is no such encoding,
/// StoreError when the set can't keep the services.
ImportReport importServices(Tv& tv, const std::string& name, std::string_view content, const ImportOptions& options);

/// Imports the services found in broadcasts in the same way. Their problems are reported with the scan.
/// @param name  name of the scan in messages. @param files  the files that services with video play from.
/// @throws StoreError when the set can't keep the services.
ImportReport importScan(Tv& tv, const std::string& name, const broadcast::Scan& scan, bool add,
                        const RecordingFiles& files = {});

}  // namespace virtualtv
