#pragma once

#include <filesystem>
#include <functional>

#include "shell/Session.h"

namespace virtualtv::program {

/// What a conversation with a person stands on.
struct Talk {
  std::filesystem::path history;  ///< file that keeps what was typed; one that can't be read or written is passed over
  std::function<void()> afterEach;  ///< called after each line
  /// Runs what works on the set, and returns when it is done: here, or on the thread of the set.
  std::function<void(const std::function<void()>& work)> onSet = [](const std::function<void()>& work) { work(); };
  int end = -1;  ///< a descriptor; when there is something to read, the conversation ends
};

/// Talks to a person on the terminal until the input ends or `.quit` ends it: line editing, completion, history, hints
/// on commands that do not exist, help that fits the terminal.
void talk(shell::Session& session, const Talk& talk);

}  // namespace virtualtv::program
