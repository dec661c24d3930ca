// SPDX-License-Identifier: MIT
#include "shell/Recording.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "shell/Files.h"
#include "shell/Reason.h"
#include "shell/Transcript.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

constexpr const char* action = "record to";

fs::path folderOf(const fs::path& file) {
  return file.string() + ".d";
}

/// @return a descriptor of a new file. @throws as `failFile` does.
int make(const fs::path& file) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) failFile(action, file, errno);
  return descriptor;
}

int makeUnlessKept(const fs::path& file) {
  struct stat there {};
  if (::lstat(folderOf(file).c_str(), &there) == 0) {
    failFile(action, file, folderOf(file).string() + " is there already");
  }
  return make(file);
}

Snapshot embeddedSnapshot(kel::CEmpAppBase& app) {
  const device::DeviceAside aside(app);
  Storage storage;
  return device::Device(app, storage).tv().snapshot();
}

}  // namespace

Recording::Recording(device::Device& device, fs::path file, std::function<void(const std::string&)> complain)
    : device_(device),
      path_(std::move(file)),
      complain_(std::move(complain)),
      scribe_([this](std::string_view content, const char* end) { return keep(content, end); }),
      file_(makeUnlessKept(path_)) {
  try {
    begin();
  } catch (...) {
    ::close(file_);
    throw;
  }
  feed_ = device.subscribe({.events = true, .acts = true, .wake = [this] { write(); }});
}

Recording::~Recording() {
  write();
  if (feed_) device_.unsubscribe(feed_);
  ::close(file_);
}

void Recording::begin() {
  append({std::string(recordedMark)});
  const Snapshot snapshot = device_.tv().snapshot();
  if (snapshot != embeddedSnapshot(device_.app())) append(scribe_.restore(snapshot));
}

void Recording::write() {
  if (!feed_) return;
  try {
    for (const auto& happening : feed_->take().happenings) append(scribe_.tell(*happening));
  } catch (...) {
    complain_(reasonOf(std::current_exception(), "record to " + path_.string()) + "; the recording has ended");
    device_.unsubscribe(std::exchange(feed_, nullptr));
  }
}

/// Removes an incomplete write, so that the transcript up to there can be replayed.
void Recording::append(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(line).append("\n");
  if (text.empty()) return;
  if (size_ + text.size() > mostRead) failFile(action, path_, "it would have more than 256 MB");
  try {
    give(file_, text);
  } catch (...) {
    // If this fails as well, the first error is reported.
    [[maybe_unused]] const int status = ::ftruncate(file_, static_cast<off_t>(size_));
    throw;
  }
  size_ += text.size();
}

std::string Recording::keep(std::string_view content, const char* end) {
  const fs::path folder = folderOf(path_);
  if (kept_ == 0 && ::mkdir(folder.c_str(), S_IRWXU) != 0) failFile(action, folder, errno);
  const fs::path name = std::to_string(++kept_) + end;
  const int descriptor = make(folder / name);
  try {
    give(descriptor, content);
  } catch (...) {
    ::close(descriptor);
    throw;
  }
  ::close(descriptor);
  return ("." / folder.filename() / name).string();  // so that a name with a hyphen in front is not read as an option
}

void Recording::give(int descriptor, std::string_view content) const {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) failFile(action, path_, errno);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace virtualtv::shell
