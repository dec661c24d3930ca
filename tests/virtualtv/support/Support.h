// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "store/Database.h"
#include "store/StoreError.h"

namespace virtualtv::test {

/// A directory for one test, removed with its content. Any user may read it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

std::string contentOf(const std::filesystem::path& file);
void write(const std::filesystem::path& file, const std::string& content);
/// Overwrites part of a file.
void overwrite(const std::filesystem::path& file, std::size_t position, const std::string& content);

/// The first column of the first row of a query's result, as text; empty when there is no row.
std::string answerOf(Database& database, const char* query);

/// Runs `body` in a separate process, which ends without any clean-up, as if killed. @return the result of `body`, or
/// "died" when it did not end.
std::string inChild(const std::function<std::string()>& body);

/// The same as a user without privileges, whom permissions restrict.
std::string inChildWithoutPrivileges(const std::function<std::string()>& body);

/// Limits the size of all files to `size` bytes from now on. Only for use in a child.
void limitFileSize(std::size_t size);

/// The text of the `StoreError` that `body` throws; empty when it throws none.
template <typename Body>
std::string failureOf(Body&& body) {
  try {
    body();
  } catch (const StoreError& error) {
    return error.what();
  }
  return {};
}

}  // namespace virtualtv::test
