#pragma once

#include "kel/CEmpAppBase.h"
#include "program/Arguments.h"
#include "program/CommandLine.h"

namespace virtualtv::program {

/// Serves the set over the network until a signal ends it, the end of the input where that is asked for, or the person
/// at the terminal, who has the shell on the same set.
/// @throws std::exception with a line for a person when it can't be served.
ExitStatus runServer(kel::CEmpAppBase& app, const Wishes& wishes);

}  // namespace virtualtv::program
