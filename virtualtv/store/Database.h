// SPDX-License-Identifier: MIT
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

/// The migrations of a schema, in SQL: step n takes a database from version n to version n + 1. An empty database has
/// version 0. A released step is never changed; a new version adds a step.
using Schema = std::span<const char* const>;

/// The content of a database at one moment, as the bytes of a file.
using DatabaseImage = std::vector<unsigned char>;

/// One SQLite database, open for as long as the object lives, used from one thread. A file is used in write-ahead mode,
/// and every commit is on disk when it returns. The object locks the file: a second object fails to open it. Opening
/// reads the first page only. Damage elsewhere is reported as a `StoreError` by the read that meets it. A damaged or
/// foreign file is never written to.
///
/// While a file is being created, an empty marker `NAME-new` exists beside it. The marker distinguishes a file whose
/// creation was interrupted, which the next opening completes, from a file that has lost its content, which is refused.
/// Where the name is a link, the marker and the log lie beside the target of the link.
class Database {
 public:
  /// Inserts the first rows into a database.
  using Fill = std::function<void(Database&)>;

  struct Memory {};
  static constexpr Memory inMemory{};

  /// A database in memory, gone with the object.
  Database(Memory, Schema schema, const Fill& fill = {});

  /// A copy in memory of a database without an open transaction. @throws StoreError when there is no memory for it.
  Database(Memory, const Database& original);

  /// A copy in memory from an image. @throws StoreError when there is no memory for it.
  Database(Memory, const DatabaseImage& image);

  /// Opens a file, or creates it in an existing directory, and migrates it to the newest version of `schema`.
  /// @param fill  called in the transaction of the migration, for new and older files alike, so that no file has the
  /// tables without the first rows.
  /// @param patience  how long to wait for another process that has locked the file.
  /// @throws StoreError when it can't be read or written, is damaged or empty, is no database of this program, was
  ///     written with a newer schema, or stays locked. The file is then unchanged, or still absent.
  Database(const std::filesystem::path& file, Schema schema, const Fill& fill = {},
           std::chrono::milliseconds patience = std::chrono::seconds(1));
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  /// The name in error messages: the file, or "memory".
  const std::string& name() const { return name_; }

  /// A copy of the whole content. No transaction may be open. @throws StoreError when it can't be read.
  DatabaseImage image() const;

  /// Runs SQL that returns no rows. @param action  as for `Statement`.
  void execute(const char* sql, const char* action);

  /// For `Statement` and `Transaction`.

  sqlite3* handle() const { return handle_.get(); }

  /// Throws the `StoreError` of the failure that SQLite has just reported.
  /// @param action  the failed action, as it follows "cannot" in the message: "read the services".
  [[noreturn]] void fail(const std::string& action, int code) const;

  /// True when SQLite has ended the transaction after a failure, while its `Transaction` is still open, or when a
  /// nested part should have been undone and could not be.
  bool transactionIsLost() const {
    return transactions_ > 0 && (partIsLeftOver_ || sqlite3_get_autocommit(handle()) != 0);
  }

  /// Undoes what the last `Transaction` failed to undo at its end for lack of memory. Otherwise later writes would join
  /// that transaction and be undone with it.
  void undoLeftOver();

 private:
  friend class Transaction;

  struct Close {
    void operator()(sqlite3* handle) const;
  };

  explicit Database(Memory);  ///< an empty one

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
  std::string path_;  ///< path of the file with links resolved; empty for memory
  SideFile log_{path_ + "-wal"};
  SideFile mark_{path_ + "-new"};  ///< exists while the file is being created
  std::unique_ptr<sqlite3, Close> handle_;
  int transactions_ = 0;         ///< number of open transactions, including nested ones
  bool partIsLeftOver_ = false;  ///< a part of the open transaction could not be undone
};

}  // namespace virtualtv
