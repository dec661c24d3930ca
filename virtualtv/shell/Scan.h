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

/// What is in some recordings, each of which is read once. Problems name the file where there are several.
/// @throws what `read` throws.
broadcast::Scan scanFiles(const std::vector<std::string>& files, const ReadFile& read);

/// The problems of a scan, a line each, and one that counts those that are not kept.
Lines scanProblems(const broadcast::Scan& scan, const std::vector<std::string>& files);

/// Says that there is none.
std::string noServiceIn(const std::vector<std::string>& files);

/// A table of the services that were found, and a line that counts them.
Lines scanTable(const broadcast::Scan& scan);

/// What a scan prints: problems and table, or the document alone, as it is wished.
Lines scanLines(const broadcast::Scan& scan, const ScanWishes& wishes);

}  // namespace virtualtv::shell
