// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace virtualtv::shell {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
/// Owns an open file and closes it.
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Throws std::runtime_error `cannot ACTION FILE: REASON`; the reason is a text or an error number.
[[noreturn]] void failFile(const char* action, const std::string& file, const std::string& reason);
[[noreturn]] void failFile(const char* action, const std::string& file, int error);

}  // namespace virtualtv::shell
