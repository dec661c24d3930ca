// SPDX-License-Identifier: MIT
#include "store/SideFile.h"

#include <sqlite3.h>

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <vector>

namespace virtualtv {

namespace {

sqlite3_vfs& disk() {
  return *sqlite3_vfs_find(nullptr);
}

}  // namespace

int SideFile::find(bool& found) const {
  // SQLite's existence check misses empty files, and its access check misses files without permissions.
  std::error_code ignored;
  const auto status = std::filesystem::symlink_status(name_, ignored);
  if (!std::filesystem::status_known(status)) return SQLITE_CANTOPEN;  // an unknown status must not count as absent
  found = std::filesystem::exists(status);
  if (found) return SQLITE_OK;
  const int code = ask(SQLITE_ACCESS_EXISTS, found);
  return code != SQLITE_OK || found ? code : ask(SQLITE_ACCESS_READWRITE, found);
}

int SideFile::findContent(bool& found) const {
  return ask(SQLITE_ACCESS_EXISTS, found);
}

int SideFile::ask(int question, bool& answer) const {
  int yes = 0;
  const int code = disk().xAccess(&disk(), name_.c_str(), question, &yes);
  answer = yes != 0;
  return code;
}

int SideFile::make() const {
  // A super-journal: the kind of file whose directory SQLite syncs on creation.
  constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_SUPER_JOURNAL;
  std::vector<std::max_align_t> room(static_cast<std::size_t>(disk().szOsFile) / sizeof(std::max_align_t) + 1);
  auto* const file = reinterpret_cast<sqlite3_file*>(room.data());
  int code = disk().xOpen(&disk(), name_.c_str(), file, flags, nullptr);
  if (code != SQLITE_OK) return code;
  code = file->pMethods->xSync(file, SQLITE_SYNC_NORMAL);
  file->pMethods->xClose(file);
  return code;
}

int SideFile::remove() const {
  constexpr int withDirectory = 1;
  const int code = disk().xDelete(&disk(), name_.c_str(), withDirectory);
  return code == SQLITE_IOERR_DELETE_NOENT ? SQLITE_OK : code;
}

}  // namespace virtualtv
