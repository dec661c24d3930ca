// SPDX-License-Identifier: MIT
#include "store/Database.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "store/StoreError.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

constexpr int applicationId = 0x656d7731;  // "emw1", in the file's header
constexpr const char* opening = "open it";

// Resolves links in a file name; the file need not exist. SQLite puts its log beside the resolved file.
std::filesystem::path behindLinks(std::filesystem::path file) {
  constexpr int mostLinks = 40;
  std::error_code failure;
  for (int links = 0; links < mostLinks && std::filesystem::is_symlink(file, failure); ++links) {
    const auto target = std::filesystem::read_symlink(file, failure);
    if (failure) break;
    file = file.parent_path() / target;
  }
  return file;
}

// Why this process can't write to a file or, for the log, to its directory. SQLite does not report this reliably.
std::string obstacle(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) return "it is a directory";
  const std::string directory = std::filesystem::path(file).parent_path();
  if (access(directory.c_str(), W_OK | X_OK) != 0) return std::strerror(errno);
  if (access(file.c_str(), R_OK | W_OK) != 0 && errno != ENOENT) return std::strerror(errno);
  return "the file can't be opened";
}

// Why a call failed, for a person.
std::string reasonOf(int code, sqlite3* handle, const std::string& file) {
  if (code == SQLITE_IOERR_READ || code == SQLITE_IOERR_SHORT_READ) return "reading from the disk failed";
  switch (code & 0xff) {
    case SQLITE_CORRUPT:
      return "the file is damaged";
    case SQLITE_NOTADB:
      return "the file is damaged, or is not a database";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "another process has locked it";
    case SQLITE_FULL:
      return "no space left on the disk";
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
      return obstacle(file);
    case SQLITE_IOERR:
      return "writing to the disk failed";
    case SQLITE_NOMEM:
      return sqlite3_errstr(SQLITE_NOMEM);  // SQLite may not have recorded this error
    case SQLITE_ABORT:
      return "an earlier failure has undone the transaction";
    default:
      return sqlite3_errmsg(handle);
  }
}

}  // namespace

void Database::Close::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

Database::Database(Memory) : name_("memory") {
  open(":memory:");
  configure(std::chrono::milliseconds(0));
}

Database::Database(Memory, Schema schema, const Fill& fill) : Database(inMemory) {
  migrate(schema, fill);
}

Database::Database(Memory, const Database& original) : Database(inMemory) {
  constexpr const char* action = "copy it";
  sqlite3_backup* copy = sqlite3_backup_init(handle(), "main", original.handle(), "main");
  if (copy == nullptr) fail(action, sqlite3_errcode(handle()));
  const int code = sqlite3_backup_step(copy, -1);
  sqlite3_backup_finish(copy);
  if (code != SQLITE_DONE) fail(action, code);
}

Database::Database(Memory, const DatabaseImage& image) : Database(inMemory) {
  constexpr const char* action = "copy it";
  const auto size = static_cast<sqlite3_int64>(image.size());
  auto* const bytes = static_cast<unsigned char*>(sqlite3_malloc64(image.size()));
  if (bytes == nullptr) fail(action, SQLITE_NOMEM);
  std::copy(image.begin(), image.end(), bytes);
  const int code = sqlite3_deserialize(handle(), "main", bytes, size, size,
                                       SQLITE_DESERIALIZE_FREEONCLOSE);  // frees them on failure
  if (code != SQLITE_OK) fail(action, code);
}

Database::Database(const std::filesystem::path& file, Schema schema, const Fill& fill,
                   std::chrono::milliseconds patience)
    : name_(std::filesystem::absolute(file).string()), path_(behindLinks(name_).string()) {
  const bool wasBeingMade = isThere(mark_);
  const bool isNew = !wasBeingMade && isToBeMade();
  try {
    if (isNew) beginMaking();
    openFile(wasBeingMade || isNew, schema, fill, patience);
  } catch (...) {
    dropEmptyLog();
    if (isNew) unmake();
    throw;
  }
  if (wasBeingMade || isNew) endMaking();
}

Database::~Database() {
  dropEmptyLog();
}

void Database::openFile(bool isBeingMade, Schema schema, const Fill& fill, std::chrono::milliseconds patience) {
  open(path_.c_str());
  keepLogOnClose(true);  // closing must not touch a file that turns out to be damaged or foreign: SQLite would treat it
                         // as a new file, and delete the log beside it
  if (!isBeingMade && isEmptyFile()) refuse("the file is empty" + andItsLog());
  configure(patience);
  if (!isOurs()) refuse("it is a database of another program");
  if (version() > static_cast<int>(schema.size())) refuse("a newer version of this program wrote it");
  if (!isBeingMade && !hasTables()) refuse("there is nothing in it");
  useWriteAheadLog();
  migrate(schema, fill);
  keepLogOnClose(false);
}

bool Database::isThere(const SideFile& file) const {
  bool found = false;
  const int code = file.find(found);
  if (code != SQLITE_OK) fail(opening, code);
  return found;
}

/// True when there is a log that is not empty.
bool Database::hasLog() const {
  bool found = false;
  const int code = log_.findContent(found);
  if (code != SQLITE_OK) fail(opening, code);
  return found;
}

/// Call before anything is created.
bool Database::isToBeMade() const {
  if (isThere(SideFile(path_))) return false;
  if (hasLog()) refuse("its log " + log_.name() + " is there, but not the file itself");
  return true;
}

void Database::beginMaking() const {
  const int code = mark_.make();
  if (code != SQLITE_OK) fail(opening, code);
}

void Database::endMaking() const {
  const int code = mark_.remove();
  if (code != SQLITE_OK) fail(opening, code);
}

/// Removes the files of a failed creation. The marker is removed last, since it identifies the others.
void Database::unmake() {
  handle_.reset();
  for (const SideFile& file : {SideFile(path_ + "-journal"), log_, SideFile(path_), mark_}) {
    if (file.remove() != SQLITE_OK) return;
  }
}

bool Database::isEmptyFile() const {
  sqlite3_file* file = nullptr;
  sqlite3_int64 size = 0;
  sqlite3_file_control(handle(), nullptr, SQLITE_FCNTL_FILE_POINTER, &file);
  const int code = file->pMethods->xFileSize(file, &size);
  if (code != SQLITE_OK) fail(opening, code);
  return size == 0;  // SQLite also reports 0 for a file of a single byte
}

void Database::open(const char* path) {
  // NOMUTEX: only one thread uses the handle, so SQLite need not lock on each call.
  constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(path, &handle, flags, nullptr);
  handle_.reset(handle);
  if (code != SQLITE_OK) fail(opening, code);
  // SQLite falls back to reading a file that it can't write to.
  if (sqlite3_db_readonly(handle_.get(), nullptr) == 1) refuse(obstacle(path_));
}

void Database::configure(std::chrono::milliseconds patience) {
  sqlite3_busy_timeout(handle(), static_cast<int>(patience.count()));
  // Exclusive: the first access locks the file until it is closed, which saves the system calls of later accesses.
  execute(
      "PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON;"
      "PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF; PRAGMA temp_store = MEMORY;"
      "PRAGMA cache_size = -32768",
      opening);
}

std::string Database::answerOf(const char* query) const {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(handle(), query, -1, &statement, nullptr);
  if (code == SQLITE_OK) code = sqlite3_step(statement);
  const unsigned char* text = code == SQLITE_ROW ? sqlite3_column_text(statement, 0) : nullptr;
  std::string answer(text == nullptr ? "" : reinterpret_cast<const char*>(text));
  // A statement's writes are on disk only after its last row.
  if (code == SQLITE_ROW) code = sqlite3_step(statement);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) fail(opening, code);
  return answer;
}

int Database::version() const {
  return std::stoi(answerOf("PRAGMA user_version"));
}

bool Database::hasTables() const {
  return answerOf("SELECT count(*) FROM sqlite_schema") != "0";
}

bool Database::isOurs() const {
  return answerOf("PRAGMA application_id") == std::to_string(applicationId) || !hasTables();
}

void Database::useWriteAheadLog() {
  if (answerOf("PRAGMA journal_mode = WAL") != "wal") refuse("its file system has no room for a write-ahead log");
}

void Database::migrate(Schema schema, const Fill& fill) {
  const auto current = static_cast<std::size_t>(version());
  if (current == schema.size()) return;
  constexpr const char* action = "bring it to the newest version";
  Transaction transaction(*this, action);
  for (const char* step : schema.subspan(current)) execute(step, action);
  if (fill) fill(*this);
  const std::string marks = "PRAGMA application_id = " + std::to_string(applicationId) +
                            "; PRAGMA user_version = " + std::to_string(schema.size());
  execute(marks.c_str(), action);
  transaction.commit();
}

DatabaseImage Database::image() const {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(sqlite3_serialize(handle(), "main", &size, 0),
                                                                      &sqlite3_free);
  if (!bytes) fail("copy it", SQLITE_NOMEM);
  DatabaseImage image(bytes.get(), bytes.get() + size);
  // The header says whether the file has a write-ahead log. An image has none.
  constexpr std::size_t writeVersion = 18;
  constexpr unsigned char withoutLog = 1;
  image.at(writeVersion) = image.at(writeVersion + 1) = withoutLog;
  return image;
}

void Database::execute(const char* sql, const char* action) {
  const int code = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(action, code);
}

void Database::undoLeftOver() {
  if (transactions_ == 0 && sqlite3_get_autocommit(handle()) == 0) execute("ROLLBACK", "undo what could not be kept");
}

void Database::keepLogOnClose(bool keep) const {
  sqlite3_db_config(handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
}

/// Names the log in the message. Whoever restores a copy of the file must know of it, or its content would become part
/// of the copy.
std::string Database::andItsLog() const {
  return hasLog() ? ", and its log " + log_.name() + " is there" : "";
}

/// An empty log was created by this object. SQLite deletes it when the file is closed.
void Database::dropEmptyLog() const {
  bool found = true;
  if (handle_ && !path_.empty() && log_.findContent(found) == SQLITE_OK && !found) keepLogOnClose(false);
}

void Database::fail(const std::string& action, int code) const {
  std::string reason = reasonOf(code, handle(), path_);
  const int kind = code & 0xff;
  if (kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB) {
    keepLogOnClose(true);
    if (action == opening) reason += andItsLog();
  }
  throw StoreError(name_ + ": cannot " + action + ": " + reason);
}

void Database::refuse(const std::string& reason) const {
  throw StoreError(name_ + ": cannot " + opening + ": " + reason);
}

}  // namespace virtualtv
