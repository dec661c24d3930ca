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

/// The kinds of disk access by SQLite. `any` means all of them in a choice.
enum class Access { open, read, write, truncate, sync, size, lock, unlock, remove, exists, any };

/// A failure of the disk: the n-th access of its kind since the fault was set fails, and all later ones if it `lasts`.
/// A failing write has written its first half.
struct Fault {
  Access access = Access::any;
  std::uint64_t nth = 1;
  bool lasts = false;
  int code = SQLITE_IOERR;  ///< the error code for SQLite
};

/// Files by name, with what is in them.
using Image = std::map<std::string, std::string>;

/// A change of a file, in the order of the changes.
struct Change {
  enum class Kind { create, write, truncate, sync, remove };
  Kind kind;
  std::string file;
  std::size_t position = 0;  ///< position of a write, or the new size of a truncation
  std::string bytes;
};

/// A disk in memory, which SQLite uses for all files after the first call of `instance`. It can be made to fail, and
/// can record its changes. A process has one disk; it is used from one thread.
class Disk {
 public:
  static Disk& instance();

  /// Replaces the files on the disk; none may be open. Resets faults, counts and records.
  void insert(const Image& image);
  Image image() const;

  /// Sets the fault; accesses are counted from here on.
  void fail(const Fault& fault);
  /// Removes the fault and resets the counts.
  void heal();
  /// Accesses of a kind since the last `fail`, `heal` or `insert`.
  std::uint64_t count(Access access) const { return counts_[static_cast<std::size_t>(access)]; }
  /// The number of accesses that the fault has hit.
  std::uint64_t hits() const { return hits_; }

  /// Starts recording changes.
  void note() { noting_ = true; }
  /// Changes recorded since the last `insert`.
  const std::vector<Change>& changes() const { return changes_; }

  // For SQLite's calls.

  /// An open file, even if its name was removed meanwhile.
  struct Handle {
    sqlite3_file base;  ///< first, so that SQLite's pointer points to the handle, too
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
  /// As in SQLite's access to a real disk, a plain existence check does not find an empty file.
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

/// Writes into a text as into a file. A gap between its end and the position is filled with zeros.
void writeInto(std::string& content, std::size_t position, const std::string& bytes);

}  // namespace virtualtv::proof
