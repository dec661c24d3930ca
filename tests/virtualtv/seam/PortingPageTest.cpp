// SPDX-License-Identifier: MIT
// docs/porting.md states the success result of each operation of the set.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "seam/Operations.h"

namespace virtualtv::seam {
namespace {

std::string inWords(Returns returns) {
  switch (returns) {
    case Returns::positive:
      return "above 0";
    case Returns::one:
      return "1";
    case Returns::nonZero:
      return "not 0";
    case Returns::notNegative:
      return "0 or more";
    case Returns::zero:
      return "0";
    case Returns::pointer:
      return "not null";
    case Returns::text:
      return "any text";
    case Returns::nothing:
      return "";
  }
  return "unknown";
}

/// The first two columns of the page's table of operations.
std::vector<std::string> onThePage() {
  std::ifstream page(PORTING_PAGE);
  std::vector<std::string> rows;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("| Operation |", 0) == 0) inside = true;
    if (line.empty()) inside = false;
    if (inside && line.rfind("| `", 0) == 0) rows.push_back(line.substr(0, line.find('|', line.find('|', 1) + 1) + 1));
  }
  return rows;
}

TEST(PortingPage, SaysOfEachOperationWhenItHasSucceeded) {
  std::vector<std::string> rows;
  rows.reserve(std::size(operations));
  for (const Operation& operation : operations) {
    rows.push_back("| `" + std::string(operation.name) + "` | " + inWords(operation.returns) + " |");
  }
  EXPECT_EQ(onThePage(), rows);
}

}  // namespace
}  // namespace virtualtv::seam
