#pragma once

#include <filesystem>
#include <functional>

#include "shell/Session.h"

namespace virtualtv::program {

/// Talks to a person on the terminal until the input ends or `.quit` ends it: line editing, completion, history, hints
/// on commands that do not exist, help that fits the terminal.
/// @param history  file that keeps what was typed; one that can't be read or written is passed over.
/// @param afterEach  called after each line.
void talk(shell::Session& session, const std::filesystem::path& history, const std::function<void()>& afterEach);

}  // namespace virtualtv::program
