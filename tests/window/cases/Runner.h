// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "EmpAppWindow.h"
#include "shell/Session.h"
#include "support/Assembly.h"
#include "window/cases/Cases.h"

namespace cases {

/// What was observed when a case ran.
struct Seen {
  Lines words;                ///< of the case's command: its name and parameters
  Lines reply;                ///< what the command printed
  std::optional<int> finish;  ///< the result in its finish line
  Lines calls;                ///< calls of the command itself, not of opening its engine
  Lines complaints;           ///< unexpected output, and findings that fail a transcript

  std::optional<int> number() const;  ///< the number replied, if it was one
  /// True when the command did the same to the set, with the same outcome.
  bool same(const Seen& other) const;
};

/// Runs cases, each on a fresh set in memory, as `emp-window check` does. There is one at a time.
class Runner {
 public:
  Runner();

  Seen run(const Case& shown);
  /// Runs the case with another text as parameter `at`, counted from 0. Ignores the expected output.
  Seen runWith(const Case& shown, std::size_t at, const std::string& text);

 private:
  support::Assembly<kel::CEmpAppWindow> television_;
  virtualtv::shell::Session session_;
};

}  // namespace cases
