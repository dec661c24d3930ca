// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/Lines.h"

// The options of dot commands. The program's subcommands of the same names have the same options.

namespace virtualtv::shell {

/// One option: `--NAME`, `--NAME VALUE`, or positional values, of which there must be at least one.
struct Option {
  std::string name;   ///< including the dashes; `FILE` for positional values
  std::string value;  ///< the name of the value in help; empty for an option without a value
  std::string help;
  /// Called for each value; for an option without a value, with an empty text. @throws std::invalid_argument for an
  /// invalid value.
  std::function<void(const std::string&)> take;
  bool isSeveral = false;  ///< allows several positional values; all other options appear at most once
  std::string needs{};     ///< the name of an option that this one requires

  bool standsAlone() const { return name.front() != '-'; }
};

/// Positional values come first.
using Options = std::vector<Option>;

/// Parses words and calls `take` of each option that they give a value, in the order of the options. `--NAME=VALUE` is
/// the same as `--NAME VALUE`. Words after a `--` are positional. @return false when the words do not match the
/// options; no value is passed then. @throws std::invalid_argument, with the name of the option, for an invalid value.
bool readWords(const Options& options, const Lines& words);

/// Passes a value to an option. @throws std::invalid_argument, with the name of the option, for an invalid value.
void take(const Option& option, const std::string& value);

/// @throws std::invalid_argument that names the expected value, if the value is empty.
void refuseEmpty(const std::string& value, const std::string& wanted);

}  // namespace virtualtv::shell
