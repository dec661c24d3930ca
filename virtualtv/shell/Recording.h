// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "device/Device.h"
#include "shell/OpenFile.h"
#include "shell/Scribe.h"

namespace virtualtv::shell {

/// Records everything that any client does on a device as a transcript that `check` replays: commands with their
/// replies, opening and closing of engines, faults, knobs, settings keys, imports, restores, restarts and resets. Lists
/// and snapshots are stored in files in `FILE.d` beside it. Used on the device's thread.
class Recording {
 public:
  /// Starts with the current set. Unless it is the embedded one, its snapshot comes first. @param device  outlives the
  /// recording. Nothing may have been done on it yet, except to restore a snapshot. @param file  is created, readable
  /// by its owner only, as is `FILE.d` when needed. @param complain  called with one line when something can't be
  /// written. The recording has ended before that.
  /// @throws std::runtime_error `cannot record to FILE: REASON`, also when the file or `FILE.d` exists.
  Recording(device::Device& device, std::filesystem::path file, std::function<void(const std::string&)> complain);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  /// Writes everything that has happened so far.
  ~Recording();

 private:
  void begin();
  void write();
  void append(const Lines& lines);
  std::string keep(std::string_view content, const char* end);
  void give(int descriptor, std::string_view content) const;

  device::Device& device_;
  std::filesystem::path path_;
  std::function<void(const std::string&)> complain_;
  Scribe scribe_;
  int file_;
  std::size_t size_ = 0;                ///< bytes of the complete entries written
  int kept_ = 0;                        ///< number of files in `FILE.d`
  std::shared_ptr<device::Feed> feed_;  ///< null once the recording has ended
};

}  // namespace virtualtv::shell
