#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/Lines.h"

// What a dot command may be told. The program's subcommands of the same names are told the same.

namespace virtualtv::shell {

/// Words that say one thing: `--NAME`, `--NAME VALUE`, or values that stand alone, of which there must be one.
struct Option {
  std::string name;   ///< with its dashes; of values that stand alone `FILE`
  std::string value;  ///< what help calls a value, empty for an option without one
  std::string help;
  /// Is called for each value, and with an empty one where none is wanted.
  /// @throws std::invalid_argument for a value that is not taken.
  std::function<void(const std::string&)> take;
  bool isSeveral = false;  ///< values that stand alone may be several; others stand once
  std::string needs{};     ///< the name of an option without which this one means nothing

  bool standsAlone() const { return name.front() != '-'; }
};

/// What stands alone before all else.
using Options = std::vector<Option>;

/// Reads words, and has the options take their values, in the order of the options. `--NAME=VALUE` is `--NAME VALUE`;
/// words behind a `--` stand alone. @return false for words that the options do not have in this form; nothing is taken
/// then.
/// @throws std::invalid_argument with the option's name for a value that it does not take.
bool readWords(const Options& options, const Lines& words);

/// Has an option take a value. @throws std::invalid_argument with the option's name if it does not.
void take(const Option& option, const std::string& value);

/// @throws std::invalid_argument that says what is wanted if the value is empty.
void refuseEmpty(const std::string& value, const std::string& wanted);

}  // namespace virtualtv::shell
