// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Window/Src/Commands.h"
#include "catalogue/Catalogue.h"
#include "window/cases/Cases.h"
#include "window/cases/Runner.h"

namespace cases {

/// Compares the cases of a command with its row of the command table, the catalogue and the table of results. Checks
/// that the row has all required cases, and that each case shows what it says. README.md in this folder lists the
/// requirements.
class Walker {
 public:
  /// @param catalogue  must outlive this object.
  Walker(const virtualtv::Catalogue& catalogue, std::map<std::string, Results> results);

  /// Runs the cases of a row. @return a line for each error, with the command's name or with file and line.
  Lines walk(const kel::Command& row, const std::vector<Case>& cases);

  /// A line for each case and each line of results whose command is not in the table.
  Lines strays(const std::vector<Case>& cases) const;

 private:
  const virtualtv::Catalogue& catalogue_;
  std::map<std::string, Results> results_;
  Runner runner_;
};

}  // namespace cases
