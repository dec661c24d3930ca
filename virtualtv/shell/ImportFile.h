#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "import/Import.h"
#include "set/Tv.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

struct ImportOptions {
  std::optional<import::Format> format;  ///< recognised when empty
  bool add = false;                      ///< keep the services that are there
};

struct ImportReport {
  Lines problems;       ///< a line `FILE:LINE: REASON` for each line that could not be read, escaped
  std::string summary;  ///< counts both
  std::string error;    ///< `FILE: no service in it`; empty when services were imported
};

/// Imports the services of a channel list into the set; without any it is an error, and the set stays as it is.
/// @param name  stands for the file in messages.
/// @throws std::runtime_error when the format is not recognised, StoreError when the set can't keep the services.
ImportReport importServices(Tv& tv, const std::string& name, std::string_view content, const ImportOptions& options);

}  // namespace virtualtv::shell
