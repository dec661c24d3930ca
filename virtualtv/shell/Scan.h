// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "broadcast/Found.h"
#include "shell/Files.h"
#include "shell/Lines.h"
#include "shell/ListWishes.h"

namespace virtualtv::shell {

/// Reads a file block by block.
using ReadFile = std::function<void(const std::string& file, const TakeBlock& take)>;

/// Scans recordings. Each is read once. With several files, problems name the file.
/// @throws what `read` throws.
broadcast::Scan scanFiles(const std::vector<std::string>& files, const ReadFile& read);

/// The problems of a scan, one per line, and a line that counts those that were dropped.
Lines scanProblems(const broadcast::Scan& scan, const std::vector<std::string>& files);

/// The message that there is no service in these files.
std::string noServiceIn(const std::vector<std::string>& files);

/// A table of the services that were found, and a line that counts them.
Lines scanTable(const broadcast::Scan& scan);

/// The output of a scan: problems and table, or only the document, as requested.
Lines scanLines(const broadcast::Scan& scan, const ScanWishes& wishes);

}  // namespace virtualtv::shell
