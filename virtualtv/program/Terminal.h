// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>

#include "shell/Session.h"

namespace virtualtv::program {

/// The environment of a conversation with a person.
struct Talk {
  std::filesystem::path history;    ///< history file; ignored when it can't be read or written
  std::function<void()> afterEach;  ///< called after each line
  /// Runs work on the set and returns when it is done. It may run here or on the thread of the set.
  std::function<void(const std::function<void()>& work)> onSet = [](const std::function<void()>& work) { work(); };
  int end = -1;  ///< a descriptor that ends the conversation when it becomes readable; -1 for none
};

/// Talks to a person on the terminal until the end of the input or `.quit`. Offers line editing, completion, history,
/// hints for unknown commands, and help that fits the terminal.
void talk(shell::Session& session, const Talk& talk);

}  // namespace virtualtv::program
