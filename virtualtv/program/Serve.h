// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CEmpAppBase.h"
#include "program/Arguments.h"
#include "program/CommandLine.h"

namespace virtualtv::program {

/// Serves the set over the network. It ends by a signal, by the end of the input if that was requested, or by the
/// person at the terminal, who has a shell on the same set.
/// @throws std::exception with a line for a person when the set can't be served.
ExitStatus runServer(kel::CEmpAppBase& app, const Wishes& wishes);

}  // namespace virtualtv::program
