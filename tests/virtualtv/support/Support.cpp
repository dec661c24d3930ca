// SPDX-License-Identifier: MIT
#include "virtualtv/support/Support.h"

#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdlib>

#include <array>
#include <exception>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "store/Statement.h"

namespace virtualtv::test {

TemporaryDirectory::TemporaryDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "store-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory: " + name);
  path_ = name;
  std::filesystem::permissions(path_, std::filesystem::perms(0755));
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

std::string answerOf(Database& database, const char* query) {
  Statement statement(database, query, "ask");
  Rows rows = statement.query();
  return rows.next() ? rows.text(0) : "";
}

void write(const std::filesystem::path& file, const std::string& content) {
  std::ofstream(file, std::ios::binary) << content;
}

void overwrite(const std::filesystem::path& file, std::size_t position, const std::string& content) {
  std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
  stream.seekp(static_cast<std::streamoff>(position));
  stream << content;
}

std::string inChild(const std::function<std::string()>& body) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    std::string answer;
    try {
      answer = body();
    } catch (const std::exception& error) {
      answer = std::string("threw ") + error.what();
    }
    const auto length = static_cast<ssize_t>(answer.size());
    _exit(::write(ends[1], answer.data(), answer.size()) == length ? 0 : 1);
  }
  close(ends[1]);
  std::string answer;
  std::array<char, 256> part{};
  for (ssize_t length = 0; (length = read(ends[0], part.data(), part.size())) > 0;) {
    answer.append(part.data(), static_cast<std::size_t>(length));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return status == 0 ? answer : "died";
}

std::string inChildWithoutPrivileges(const std::function<std::string()>& body) {
  return inChild([&]() -> std::string {
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
      return "could not give up its privileges";
    }
    return body();
  });
}

void limitFileSize(std::size_t size) {
  signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{size, size};
  setrlimit(RLIMIT_FSIZE, &limit);
}

}  // namespace virtualtv::test
