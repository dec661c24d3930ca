#pragma once

#include "kel/CEmpAppBase.h"

namespace virtualtv::program {

/// What the program ends with.
enum ExitStatus : int {
  allWell = 0,
  failed = 1,    ///< the plug-in refused, a transcript differs, nothing was imported
  unusable = 2,  ///< bad input, or the set could not read or keep what it stores
};

/// Runs the program as its arguments say. Speaks through the standard streams, of which any may be closed; an
/// error is one line on standard error, `emp-window: WHAT AND WHERE`. Nothing escapes. When it returns, all engines and
/// the store are closed.
/// @param app  the plug-in.
ExitStatus runCommandLine(int argc, char** argv, kel::CEmpAppBase& app);

}  // namespace virtualtv::program
