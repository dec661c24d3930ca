#pragma once

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "store/SideFile.h"

namespace virtualtv {

/// The steps that lead to a schema, in SQL: step n takes a database from version n to version n + 1, an empty one being
/// of version 0. A step that was ever released is never changed; a new version adds one.
using Schema = std::span<const char* const>;

/// What a database held at a moment, as the bytes of a file.
using DatabaseImage = std::vector<unsigned char>;

/// One SQLite database, open for as long as the object lives, used from one thread. A file is kept in write-ahead mode
/// with every commit on the disk before it returns, and is held for this object alone: a second one that opens it
/// fails. Opening reads the first page only; damage elsewhere shows as a `StoreError` where it is met. A file that is
/// damaged or no database of ours is never written to.
///
/// While a file is being made, an empty one stands beside it, `NAME-new`. What the power left of a file that is being
/// made is thus told from a file that has lost what it kept, which is refused. It, and the log, stand beside the file
/// itself where the name is a link.
class Database {
 public:
  /// Puts first rows into a database.
  using Fill = std::function<void(Database&)>;

  struct Memory {};
  static constexpr Memory inMemory{};

  /// A database in memory, gone with the object.
  Database(Memory, Schema schema, const Fill& fill = {});

  /// A copy in memory of one that no transaction is under way on. @throws StoreError when there is no memory for it.
  Database(Memory, const Database& original);

  /// A copy in memory from an image. @throws StoreError when there is no memory for it.
  Database(Memory, const DatabaseImage& image);

  /// Opens a file, or makes it in a directory that exists, and brings it to the newest version of `schema`.
  /// @param fill  is called in the transaction that does so, for a new file as for an older one: once a file has its
  ///     tables, it has its first rows.
  /// @param patience  how long to wait for another process that has locked the file.
  /// @throws StoreError when it can't be read or written, is damaged or empty, is no database of this program, was
  ///     written with a newer schema, or stays locked. The file is then as it was; where there was none, there is none.
  Database(const std::filesystem::path& file, Schema schema, const Fill& fill = {},
           std::chrono::milliseconds patience = std::chrono::seconds(1));
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  /// The file, or that it is memory, as errors name it.
  const std::string& name() const { return name_; }

  /// All that it holds, as it is now. No transaction may be under way. @throws StoreError when it can't be read.
  DatabaseImage image() const;

  /// Runs SQL that answers no rows. @param action  as for `Statement`.
  void execute(const char* sql, const char* action);

  /// For `Statement` and `Transaction`.

  sqlite3* handle() const { return handle_.get(); }

  /// Throws the `StoreError` of the failure that SQLite has just reported.
  /// @param action  what could not be done, in words that follow "cannot": "read the services".
  [[noreturn]] void fail(const std::string& action, int code) const;

  /// True when a failure has ended the transaction under the feet of the `Transaction` that began it, or when a part of
  /// it should be undone and could not be.
  bool transactionIsLost() const {
    return transactions_ > 0 && (partIsLeftOver_ || sqlite3_get_autocommit(handle()) != 0);
  }

  /// Undoes what the last `Transaction` could not undo when it ended, for want of memory. What comes now would become
  /// part of it, and be undone with it later.
  void undoLeftOver();

 private:
  friend class Transaction;

  struct Close {
    void operator()(sqlite3* handle) const;
  };

  explicit Database(Memory);  ///< with nothing in it

  void open(const char* path);
  void openFile(bool isBeingMade, Schema schema, const Fill& fill, std::chrono::milliseconds patience);
  void configure(std::chrono::milliseconds patience);
  bool isThere(const SideFile& file) const;
  bool hasLog() const;
  bool isToBeMade() const;
  void beginMaking() const;
  void endMaking() const;
  void unmake();
  bool isEmptyFile() const;
  bool hasTables() const;
  bool isOurs() const;
  int version() const;
  std::string answerOf(const char* query) const;
  void useWriteAheadLog();
  void migrate(Schema schema, const Fill& fill);
  void keepLogOnClose(bool keep) const;
  void dropEmptyLog() const;
  std::string andItsLog() const;
  [[noreturn]] void refuse(const std::string& reason) const;

  std::string name_;
  std::string path_;  ///< of the file itself, where the name is a link; empty for memory
  SideFile log_{path_ + "-wal"};
  SideFile mark_{path_ + "-new"};  ///< that the file is being made
  std::unique_ptr<sqlite3, Close> handle_;
  int transactions_ = 0;         ///< how many are under way, one in the other
  bool partIsLeftOver_ = false;  ///< of the transaction under way: a part that could not be undone
};

}  // namespace virtualtv
