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

/// Writes all that is done on a device, by whomever, into a transcript that `check` replays: commands with their
/// replies, engines that are opened and closed, faults, knobs, settings keys, imports, restores, restarts, resets.
/// Lists and snapshots lie in files beside it, in `FILE.d`. Used on the device's thread.
class Recording {
 public:
  /// Begins with the set as it is: where that is not the embedded one, its snapshot comes first.
  /// @param device  outlives it; was made, or has restored a snapshot, and nothing else was done to it.
  /// @param file  is made, for its owner alone, and so is `FILE.d` when it is needed.
  /// @param complain  is told in one line when something can't be written; the recording ends before that then.
  /// @throws std::runtime_error `cannot record to FILE: REASON`, also where the file or `FILE.d` is there already.
  Recording(device::Device& device, std::filesystem::path file, std::function<void(const std::string&)> complain);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  /// Writes what has happened up to now.
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
  std::size_t size_ = 0;                ///< of what was written as a whole
  int kept_ = 0;                        ///< files in `FILE.d`
  std::shared_ptr<device::Feed> feed_;  ///< null once the recording has ended
};

}  // namespace virtualtv::shell
