// SPDX-License-Identifier: MIT
#include "shell/OpenFile.h"

#include <stdexcept>
#include <system_error>

namespace virtualtv::shell {

void failFile(const char* action, const std::string& file, const std::string& reason) {
  throw std::runtime_error(std::string("cannot ") + action + " " + file + ": " + reason);
}

void failFile(const char* action, const std::string& file, int error) {
  failFile(action, file, std::generic_category().message(error));
}

}  // namespace virtualtv::shell
