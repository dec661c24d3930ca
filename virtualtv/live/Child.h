// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace virtualtv::live {

/// Owns a descriptor and closes it. Started programs do not inherit it.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  int get() const { return number_; }
  /// Gives up ownership to the caller.
  int release();

 private:
  int number_;
};

/// A child process, started without a shell. It is killed when this object is destroyed or when the thread that started
/// it ends, and so also when this process is killed. Its standard input is empty. It inherits no descriptors except
/// those below.
class Child {
 public:
  /// @param program  its absolute path. @param input  becomes its descriptor 3; -1 for none.
  /// @throws std::system_error when it can't be started.
  Child(const std::string& program, const std::vector<std::string>& arguments, int input = -1);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  /// Kills the child and waits for its end.
  ~Child();

  Descriptor output;  ///< its standard output, non-blocking
  Descriptor errors;  ///< its standard error, non-blocking
  Descriptor ending;  ///< becomes readable when the program has ended

  void kill() const;
  /// Waits for the end of the child. @return its exit status, or -1 when a signal ended it.
  int wait();

 private:
  pid_t process_ = -1;
  int status_ = 0;
};

}  // namespace virtualtv::live
