// SPDX-License-Identifier: MIT
#include "kel/EmpMain.h"

#include <csignal>
#include <cstdlib>
#include <memory>

#include "kel/CEmpAppBase.h"
#include "program/CommandLine.h"

/// The process ends here, since the entry ignores the result.
int kel::EmpMain(int argc, char** argv, CEmpAppBase* app) {
  std::signal(SIGXFSZ, SIG_IGN);  // a file size limit is then reported like a full disk, instead of ending the process
  std::unique_ptr<CEmpAppBase> owned(app);
  const int status = owned ? virtualtv::program::runCommandLine(argc, argv, *owned) : virtualtv::program::unusable;
  owned.reset();
  std::exit(status);
}
