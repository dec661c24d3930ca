#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace virtualtv::live {

/// A descriptor, closed with this. Not inherited by programs that are started.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  int get() const { return number_; }
  /// Leaves it to the caller.
  int release();

 private:
  int number_;
};

/// A program that runs as a child of this one, without a shell. It ends with this object, with the thread that started
/// it, and so also when the process is killed. It has no input, and none of the descriptors of this process but those
/// below.
class Child {
 public:
  /// @param program  its absolute path. @param input  what it has as descriptor 3; -1 for nothing.
  /// @throws std::system_error when it can't be started.
  Child(const std::string& program, const std::vector<std::string>& arguments, int input = -1);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  /// Kills it, and waits until it is gone.
  ~Child();

  Descriptor output;  ///< its standard output; can be read without waiting. So can the next
  Descriptor errors;  ///< its standard error
  Descriptor ending;  ///< is ready to be read once the program has ended

  void kill() const;
  /// Waits until it has ended. @return its exit status, -1 where a signal ended it.
  int wait();

 private:
  pid_t process_ = -1;
  int status_ = 0;
};

}  // namespace virtualtv::live
