#include "kel/EmpMain.h"

#include <csignal>
#include <cstdlib>
#include <memory>

#include "kel/CEmpAppBase.h"
#include "program/CommandLine.h"

/// The entry drops what this returns, so that the process ends here.
int kel::EmpMain(int argc, char** argv, CEmpAppBase* app) {
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a full disk, which is told, not died of
  std::unique_ptr<CEmpAppBase> owned(app);
  const int status = owned ? virtualtv::program::runCommandLine(argc, argv, *owned) : virtualtv::program::unusable;
  owned.reset();
  std::exit(status);
}
