#pragma once

#include <string>

#include "framework/Log.h"

/// The log contract: every message that the plug-in can print, by its format, level and operation. It stands in
/// `tests/window/log_contract.tsv`; what the tests print is held against it.
namespace support {

/// Remembers a message that was printed. When the environment variable EMP_WINDOW_LOG_CONTRACT names a folder, the
/// process writes what it remembers to a file there once its tests are over, a line of the contract each.
void noteForContract(const virtualtv::framework::LogLine& line);

/// A message as a line of the contract: format with C escapes, level, operation, with tabs between.
std::string contractLine(const virtualtv::framework::LogLine& line);

}  // namespace support
