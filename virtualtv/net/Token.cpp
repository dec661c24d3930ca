// SPDX-License-Identifier: MIT
#include "net/Token.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace virtualtv::net {

namespace {

class Opened {
 public:
  explicit Opened(const std::filesystem::path& file) : descriptor_(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  ~Opened() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

bool isVisible(char character) {
  return character > ' ' && character <= '~';
}

}  // namespace

std::string readToken(const std::filesystem::path& file) {
  const auto refuse = [&](const std::string& why) {
    throw std::runtime_error("--token: " + file.string() + ": " + why);
  };
  const Opened opened(file);
  struct stat about {};
  if (opened.descriptor() < 0 || ::fstat(opened.descriptor(), &about) != 0) refuse(std::strerror(errno));
  constexpr mode_t ofOthers = S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
  if ((about.st_mode & ofOthers) != 0) refuse("others can read or change it; 'chmod 600' helps");
  std::array<char, 4096> front{};
  const ssize_t count = ::read(opened.descriptor(), front.data(), front.size());
  if (count < 0) refuse(std::strerror(errno));
  std::string token(front.data(), static_cast<std::size_t>(count));
  token.erase(std::min(token.find('\n'), token.size()));
  if (token.ends_with('\r')) token.pop_back();
  if (token.empty()) refuse("its first line has no token");
  if (!std::all_of(token.begin(), token.end(), isVisible)) {
    refuse("a token of visible ASCII characters without blanks is wanted on its first line");
  }
  return token;
}

}  // namespace virtualtv::net
