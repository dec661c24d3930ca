// SPDX-License-Identifier: MIT
#include "Disk.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace virtualtv::proof {

namespace {

using Handle = Disk::Handle;

Handle& handleOf(sqlite3_file* file) {
  return *reinterpret_cast<Handle*>(file);
}

Disk& diskOf(sqlite3_vfs* vfs) {
  return *static_cast<Disk*>(vfs->pAppData);
}

std::size_t sizeOf(sqlite3_int64 number) {
  return static_cast<std::size_t>(number);
}

// SQLite's calls on an open file.

int close(sqlite3_file* file) {
  handleOf(file).disk->close(handleOf(file));
  return SQLITE_OK;
}
int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 position) {
  return handleOf(file).disk->read(handleOf(file), static_cast<char*>(bytes), sizeOf(size), sizeOf(position));
}
int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 position) {
  return handleOf(file).disk->write(handleOf(file), static_cast<const char*>(bytes), sizeOf(size), sizeOf(position));
}
int truncate(sqlite3_file* file, sqlite3_int64 size) {
  return handleOf(file).disk->truncate(handleOf(file), sizeOf(size));
}
int sync(sqlite3_file* file, int /*flags*/) {
  return handleOf(file).disk->sync(handleOf(file));
}
int size(sqlite3_file* file, sqlite3_int64* size) {
  return handleOf(file).disk->size(handleOf(file), *size);
}
int lock(sqlite3_file* file, int level) {
  return handleOf(file).disk->lock(handleOf(file), level);
}
int unlock(sqlite3_file* file, int level) {
  return handleOf(file).disk->unlock(handleOf(file), level);
}
int isReserved(sqlite3_file* file, int* answer) {
  return handleOf(file).disk->isReserved(handleOf(file), *answer);
}
int control(sqlite3_file* /*file*/, int /*operation*/, void* /*argument*/) {
  return SQLITE_NOTFOUND;
}
int sectorSize(sqlite3_file* /*file*/) {
  return 4096;
}
int characteristics(sqlite3_file* /*file*/) {
  return SQLITE_IOCAP_POWERSAFE_OVERWRITE;
}

sqlite3_io_methods methods() {
  sqlite3_io_methods methods{};
  methods.iVersion = 1;
  methods.xClose = close;
  methods.xRead = read;
  methods.xWrite = write;
  methods.xTruncate = truncate;
  methods.xSync = sync;
  methods.xFileSize = size;
  methods.xLock = lock;
  methods.xUnlock = unlock;
  methods.xCheckReservedLock = isReserved;
  methods.xFileControl = control;
  methods.xSectorSize = sectorSize;
  methods.xDeviceCharacteristics = characteristics;
  return methods;
}

// SQLite's calls on the disk.

int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* answered) {
  static const sqlite3_io_methods table = methods();
  Handle& handle = handleOf(file);
  handle.base.pMethods = nullptr;
  const int code = diskOf(vfs).open(name, handle, flags);
  if (code == SQLITE_OK) handle.base.pMethods = &table;
  if (answered != nullptr) *answered = flags;
  return code;
}
int remove(sqlite3_vfs* vfs, const char* name, int /*syncDirectory*/) {
  return diskOf(vfs).remove(name);
}
int exists(sqlite3_vfs* vfs, const char* name, int question, int* answer) {
  return diskOf(vfs).exists(name, question, *answer);
}
int fullName(sqlite3_vfs* /*vfs*/, const char* name, int size, char* full) {
  sqlite3_snprintf(size, full, "%s", name);
  return SQLITE_OK;
}
int random(sqlite3_vfs* vfs, int size, char* bytes) {
  diskOf(vfs).random(bytes, sizeOf(size));
  return size;
}
/// Sleeping, which waits for a lock, takes no time here.
int sleep(sqlite3_vfs* /*vfs*/, int microseconds) {
  return microseconds;
}
int time(sqlite3_vfs* /*vfs*/, double* days) {
  *days = 2460000.5;
  return SQLITE_OK;
}
int lastError(sqlite3_vfs* /*vfs*/, int /*size*/, char* /*text*/) {
  return 0;
}

}  // namespace

void writeInto(std::string& content, std::size_t position, const std::string& bytes) {
  if (content.size() < position + bytes.size()) content.resize(position + bytes.size());
  content.replace(position, bytes.size(), bytes);
}

Disk& Disk::instance() {
  static Disk disk;
  return disk;
}

Disk::Disk() {
  static sqlite3_vfs vfs{};
  vfs.iVersion = 1;
  vfs.szOsFile = sizeof(Handle);
  vfs.mxPathname = 1024;
  vfs.zName = "disk in memory";
  vfs.pAppData = this;
  vfs.xOpen = proof::open;
  vfs.xDelete = proof::remove;
  vfs.xAccess = proof::exists;
  vfs.xFullPathname = fullName;
  vfs.xRandomness = proof::random;
  vfs.xSleep = sleep;
  vfs.xCurrentTime = time;
  vfs.xGetLastError = lastError;
  if (sqlite3_vfs_register(&vfs, 1) != SQLITE_OK) throw std::runtime_error("SQLite does not take the disk");
}

void Disk::insert(const Image& image) {
  if (!open_.empty()) throw std::logic_error("a file is still open: " + *open_.front()->name);
  files_.clear();
  for (const auto& [name, content] : image) files_[name] = std::make_shared<std::string>(content);
  heal();
  noting_ = false;
  changes_.clear();
  random_.seed(1);
}

Image Disk::image() const {
  Image image;
  for (const auto& [name, content] : files_) image[name] = *content;
  return image;
}

void Disk::fail(const Fault& fault) {
  heal();
  fault_ = fault;
}

void Disk::heal() {
  fault_.reset();
  counts_.fill(0);
  hits_ = 0;
}

bool Disk::failsAt(Access access) {
  ++counts_[static_cast<std::size_t>(access)];
  ++counts_[static_cast<std::size_t>(Access::any)];
  if (!fault_ || (fault_->access != access && fault_->access != Access::any)) return false;
  const std::uint64_t at = count(fault_->access);
  const bool hit = fault_->lasts ? at >= fault_->nth : at == fault_->nth;
  if (hit) ++hits_;
  return hit;
}

void Disk::noteChange(Change::Kind kind, const std::string& file, std::size_t position, std::string bytes) {
  if (noting_) changes_.push_back({kind, file, position, std::move(bytes)});
}

int Disk::open(const char* name, Handle& handle, int flags) {
  if (failsAt(Access::open)) return SQLITE_CANTOPEN;
  const std::string file = name == nullptr ? "" : name;
  std::shared_ptr<std::string> content;
  if (const auto found = files_.find(file); found != files_.end()) {
    content = found->second;
  } else if ((flags & SQLITE_OPEN_CREATE) == 0) {
    return SQLITE_CANTOPEN;
  } else {
    content = std::make_shared<std::string>();
    if (!file.empty()) files_[file] = content;
    noteChange(Change::Kind::create, file);
  }
  handle.disk = this;
  handle.name = new std::string(file);
  handle.content = new std::shared_ptr<std::string>(std::move(content));
  handle.lock = SQLITE_LOCK_NONE;
  handle.removedOnClose = (flags & SQLITE_OPEN_DELETEONCLOSE) != 0;
  open_.push_back(&handle);
  return SQLITE_OK;
}

void Disk::close(Handle& handle) {
  if (handle.removedOnClose && files_.erase(*handle.name) > 0) noteChange(Change::Kind::remove, *handle.name);
  open_.remove(&handle);
  delete handle.name;
  delete handle.content;
}

int Disk::read(const Handle& handle, char* bytes, std::size_t size, std::size_t position) {
  if (failsAt(Access::read)) return fault_->code == SQLITE_IOERR ? SQLITE_IOERR_READ : fault_->code;
  const std::string& content = **handle.content;
  const std::size_t there = position < content.size() ? std::min(size, content.size() - position) : 0;
  std::fill_n(bytes, size, '\0');
  if (there > 0) std::copy_n(content.data() + position, there, bytes);
  return there == size ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int Disk::write(const Handle& handle, const char* bytes, std::size_t size, std::size_t position) {
  const bool fails = failsAt(Access::write);
  const std::string part(bytes, fails ? size / 2 : size);
  writeInto(**handle.content, position, part);
  noteChange(Change::Kind::write, *handle.name, position, part);
  if (!fails) return SQLITE_OK;
  return fault_->code == SQLITE_IOERR ? SQLITE_IOERR_WRITE : fault_->code;
}

int Disk::truncate(const Handle& handle, std::size_t size) {
  if (failsAt(Access::truncate)) return SQLITE_IOERR_TRUNCATE;
  std::string& content = **handle.content;
  content.resize(std::min(size, content.size()));
  noteChange(Change::Kind::truncate, *handle.name, size);
  return SQLITE_OK;
}

int Disk::sync(const Handle& handle) {
  if (failsAt(Access::sync)) return SQLITE_IOERR_FSYNC;
  noteChange(Change::Kind::sync, *handle.name);
  return SQLITE_OK;
}

int Disk::size(const Handle& handle, sqlite3_int64& size) {
  if (failsAt(Access::size)) return SQLITE_IOERR_FSTAT;
  size = static_cast<sqlite3_int64>((*handle.content)->size());
  return SQLITE_OK;
}

bool Disk::isLockedByOthers(const Handle& handle, int level) const {
  return std::any_of(open_.begin(), open_.end(), [&](const Handle* other) {
    return other != &handle && *other->content == *handle.content && other->lock >= level;
  });
}

int Disk::lock(Handle& handle, int level) {
  if (failsAt(Access::lock)) return fault_->code == SQLITE_IOERR ? SQLITE_IOERR_LOCK : fault_->code;
  // A reader is compatible with a connection that prepares to write, but not with one that waits for exclusive access.
  const int bar = level == SQLITE_LOCK_SHARED      ? SQLITE_LOCK_PENDING
                  : level == SQLITE_LOCK_EXCLUSIVE ? SQLITE_LOCK_SHARED
                                                   : SQLITE_LOCK_RESERVED;
  if (isLockedByOthers(handle, bar)) return SQLITE_BUSY;
  handle.lock = std::max(handle.lock, level);
  return SQLITE_OK;
}

int Disk::unlock(Handle& handle, int level) {
  if (failsAt(Access::unlock)) return SQLITE_IOERR_UNLOCK;
  handle.lock = std::min(handle.lock, level);
  return SQLITE_OK;
}

int Disk::isReserved(const Handle& handle, int& answer) {
  if (failsAt(Access::lock)) return SQLITE_IOERR_CHECKRESERVEDLOCK;
  answer = isLockedByOthers(handle, SQLITE_LOCK_RESERVED) || handle.lock >= SQLITE_LOCK_RESERVED ? 1 : 0;
  return SQLITE_OK;
}

int Disk::remove(const char* name) {
  if (failsAt(Access::remove)) return SQLITE_IOERR_DELETE;
  if (files_.erase(name) == 0) return SQLITE_IOERR_DELETE_NOENT;
  noteChange(Change::Kind::remove, name);
  return SQLITE_OK;
}

int Disk::exists(const char* name, int question, int& answer) {
  if (failsAt(Access::exists)) return SQLITE_IOERR_ACCESS;
  const auto found = files_.find(name);
  const bool isSeen = found != files_.end() && (question != SQLITE_ACCESS_EXISTS || !found->second->empty());
  answer = isSeen ? 1 : 0;
  return SQLITE_OK;
}

void Disk::random(char* bytes, std::size_t size) {
  std::generate_n(bytes, size, [&] { return static_cast<char>(random_() & 0xff); });
}

}  // namespace virtualtv::proof
