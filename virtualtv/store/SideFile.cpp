#include "store/SideFile.h"

#include <sqlite3.h>

#include <cstddef>
#include <vector>

namespace virtualtv {

namespace {

sqlite3_vfs& disk() {
  return *sqlite3_vfs_find(nullptr);
}

}  // namespace

int SideFile::find(bool& found) const {
  // The first does not see a file without content, the second none without permissions.
  for (const int way : {SQLITE_ACCESS_EXISTS, SQLITE_ACCESS_READWRITE}) {
    int answer = 0;
    const int code = disk().xAccess(&disk(), name_.c_str(), way, &answer);
    if (code != SQLITE_OK) return code;
    found = answer != 0;
    if (found) break;
  }
  return SQLITE_OK;
}

int SideFile::make() const {
  // The kind of file that SQLite makes before it writes to a database: its directory is synced with it.
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
  return disk().xDelete(&disk(), name_.c_str(), withDirectory);
}

}  // namespace virtualtv
