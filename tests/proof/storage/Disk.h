// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace virtualtv::proof {

/// What SQLite asks of a disk. `any` stands for all of them where one is to be chosen.
enum class Access { open, read, write, truncate, sync, size, lock, unlock, remove, exists, any };

/// The disk fails an access: the n-th of its kind since the fault was set, and all that follow if it `lasts`. A write
/// that fails has written its first half.
struct Fault {
  Access access = Access::any;
  std::uint64_t nth = 1;
  bool lasts = false;
  int code = SQLITE_IOERR;  ///< what SQLite is told
};

/// Files by name, with what is in them.
using Image = std::map<std::string, std::string>;

/// What was done to a file, in the order in which it was done.
struct Change {
  enum class Kind { create, write, truncate, sync, remove };
  Kind kind;
  std::string file;
  std::size_t position = 0;  ///< of a write; the new size of a truncation
  std::string bytes;
};

/// A disk in memory, which SQLite uses for all files from the first call of `instance` on. It fails when it is told
/// to, and can note what was done to it. A process has one; it is used from one thread.
class Disk {
 public:
  static Disk& instance();

  /// Puts other files on the disk; none may be open. Faults, counts and notes are gone.
  void insert(const Image& image);
  Image image() const;

  /// Sets the fault; accesses are counted from here on.
  void fail(const Fault& fault);
  /// Nothing fails any more; counts start anew.
  void heal();
  /// Accesses of a kind since the last `fail`, `heal` or `insert`.
  std::uint64_t count(Access access) const { return counts_[static_cast<std::size_t>(access)]; }
  /// How many accesses the fault has hit.
  std::uint64_t hits() const { return hits_; }

  /// Notes changes from here on.
  void note() { noting_ = true; }
  /// Changes noted since the last `insert`.
  const std::vector<Change>& changes() const { return changes_; }

  // For SQLite's calls.

  /// A file that is open, also when its name has been removed since.
  struct Handle {
    sqlite3_file base;  ///< first, so that SQLite's pointer is one to this
    Disk* disk;
    std::string* name;
    std::shared_ptr<std::string>* content;
    int lock;
    bool removedOnClose;
  };

  int open(const char* name, Handle& handle, int flags);
  void close(Handle& handle);
  int read(const Handle& handle, char* bytes, std::size_t size, std::size_t position);
  int write(const Handle& handle, const char* bytes, std::size_t size, std::size_t position);
  int truncate(const Handle& handle, std::size_t size);
  int sync(const Handle& handle);
  int size(const Handle& handle, sqlite3_int64& size);
  int lock(Handle& handle, int level);
  int unlock(Handle& handle, int level);
  int isReserved(const Handle& handle, int& answer);
  int remove(const char* name);
  /// Like a real one, does not find a file without content when asked whether it exists.
  int exists(const char* name, int question, int& answer);
  void random(char* bytes, std::size_t size);

 private:
  Disk();

  bool failsAt(Access access);
  void noteChange(Change::Kind kind, const std::string& file, std::size_t position = 0, std::string bytes = {});
  bool isLockedByOthers(const Handle& handle, int level) const;

  std::map<std::string, std::shared_ptr<std::string>> files_;
  std::list<const Handle*> open_;
  std::optional<Fault> fault_;
  std::array<std::uint64_t, static_cast<std::size_t>(Access::any) + 1> counts_{};
  std::uint64_t hits_ = 0;
  bool noting_ = false;
  std::vector<Change> changes_;
  std::mt19937 random_;
};

/// Writes into a text as into a file: what lies between its end and the position is filled with zeros.
void writeInto(std::string& content, std::size_t position, const std::string& bytes);

}  // namespace virtualtv::proof
