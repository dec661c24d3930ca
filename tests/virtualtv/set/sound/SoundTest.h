// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "virtualtv/set/SetTest.h"

/// The tracks and favourites of a set in memory, as reported by the interfaces of the TV service.
namespace virtualtv::test {

class SoundTest : public SetTest {
 protected:
  // Queries of a client; "fails" when the call fails, which must leave the outputs unchanged.

  static std::string audioSize(std::uint64_t service);
  static std::string audio(std::uint64_t service, int position);  ///< as in "256:eng:4:2:0", languages without letters
                                                                  ///< as numbers
  static std::string currentAudio(WindowId on = WindowId::main);  ///< position and language, as in "0 eng"
  static std::string subtitleSize(std::uint64_t service);
  static std::string subtitle(std::uint64_t service, int position);  ///< PID, language and type, as in "259:eng:0"
  static std::string currentSubtitle(WindowId on = WindowId::main);  ///< likewise; "-1" if none is in use
  static std::string favourites(std::uint64_t service);              ///< as in "1=1,12=0"

  // Selections of a client. They return the results of the interfaces.

  static int selectAudio(int position, WindowId on = WindowId::main);
  static int selectSubtitle(int position, WindowId on = WindowId::main);
  static int favour(std::uint64_t service, bool member, int group);
};

/// A language code as three letters, or as a number if it has no letters.
std::string languageText(std::int64_t code);

}  // namespace virtualtv::test
