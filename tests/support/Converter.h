// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <thread>
#include <vector>

/// The C library's text converter as the plug-in uses it. The test program is linked with `--wrap` for its functions,
/// so that each use can be observed and made to fail.
namespace converter {

/// The uses of the converter by the plug-in, and the planned failures.
struct Use {
  std::vector<std::string> opened;  ///< as in "UTF-8 from UCS-2BE", including failed attempts
  std::vector<std::size_t> rooms;   ///< size of the output buffer of each conversion
  int resets = 0;                   ///< number of resets of a converter to its initial state
  int closed = 0;

  int failOpen = 0;     ///< `errno` of opening, 0 to let it succeed
  int failConvert = 0;  ///< `errno` of converting, which then writes nothing; 0 to let it succeed
};

/// Observes the converter for as long as it lives. One at a time.
class Spy {
 public:
  Spy();
  Spy(const Spy&) = delete;
  Spy& operator=(const Spy&) = delete;
  ~Spy();

  Use use;
};

/// Runs a step on a new thread, where the plug-in has no converters yet: it keeps those of a thread open until the
/// thread ends.
template <typename Step>
void onNewThread(Step step) {
  std::thread(step).join();
}

}  // namespace converter
