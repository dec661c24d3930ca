// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CEmpAppBase.h"

namespace virtualtv::program {

/// The exit status of the program.
enum ExitStatus : int {
  allWell = 0,
  failed = 1,    ///< the plug-in refused, a transcript differs, nothing was imported
  unusable = 2,  ///< bad input, or the set could not read or persist its data
};

/// Runs the program as its arguments say. Uses the standard streams, any of which may be closed. An error is one line
/// on standard error, `emp-window: WHAT AND WHERE`. Throws nothing. All engines and the store are closed when it
/// returns.
/// @param app  the plug-in.
ExitStatus runCommandLine(int argc, char** argv, kel::CEmpAppBase& app);

}  // namespace virtualtv::program
