#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace virtualtv::shell {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
/// A file that is open, and closed with this.
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Throws std::runtime_error `cannot ACTION FILE: REASON`; an error number is told in words.
[[noreturn]] void failFile(const char* action, const std::string& file, const std::string& reason);
[[noreturn]] void failFile(const char* action, const std::string& file, int error);

}  // namespace virtualtv::shell
