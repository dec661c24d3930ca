// SPDX-License-Identifier: MIT
#include "net/InheritedSockets.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "text/Numbers.h"

namespace virtualtv::net {

std::vector<int> takeInheritedSockets() {
  constexpr int first = 3;
  const auto told = [](const char* name) -> std::optional<int> {
    const char* const text = std::getenv(name);
    return text == nullptr ? std::nullopt : text::numberIn<int>(text);
  };
  const std::optional<int> process = told("LISTEN_PID");
  const int count = process == ::getpid() ? told("LISTEN_FDS").value_or(0) : 0;
  for (const char* name : {"LISTEN_PID", "LISTEN_FDS", "LISTEN_FDNAMES"}) ::unsetenv(name);
  std::vector<int> sockets;
  for (int socket = first; socket - first < count; ++socket) {
    sockets.push_back(socket);
    if (::fcntl(socket, F_SETFD, FD_CLOEXEC) != 0) break;  // no such socket; listening on it will report that
  }
  return sockets;
}

}  // namespace virtualtv::net
