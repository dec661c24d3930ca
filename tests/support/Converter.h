// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <thread>
#include <vector>

/// The C library's text converter as the plug-in uses it. The test program is linked with `--wrap` for its functions,
/// so that each use can be seen and made to fail.
namespace converter {

/// What the plug-in did with the converter, and how it is to fail.
struct Use {
  std::vector<std::string> opened;  ///< as in "UTF-8 from UCS-2BE", also when it failed
  std::vector<std::size_t> rooms;   ///< bytes of output offered, a conversion each
  int resets = 0;                   ///< of a converter to its initial state
  int closed = 0;

  int failOpen = 0;     ///< `errno` of opening, 0 to let it succeed
  int failConvert = 0;  ///< `errno` of converting, which then writes nothing; 0 to let it be
};

/// Watches the converter for as long as it lives. One at a time.
class Watch {
 public:
  Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  Use use;
};

/// Takes a step on a thread of its own: the plug-in keeps a thread's converters open until it ends, and has none there
/// yet.
template <typename Step>
void onNewThread(Step step) {
  std::thread(step).join();
}

}  // namespace converter
