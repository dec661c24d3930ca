// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tvservice/IAVControl.h"
#include "tvservice/IVideoControl.h"
#include "virtualtv/set/SetTest.h"

/// The planes and pictures of a set in memory, as reported by the interfaces of the TV service.
namespace virtualtv::test {

/// A resolution as reported.
struct Told {
  int code = 0;
  unsigned width = 0;
  unsigned height = 0;
  unsigned rate = 0;
  unsigned lines = 0;

  bool operator==(const Told&) const = default;
};
/// For the messages of tests.
std::ostream& operator<<(std::ostream& out, const Told& told);

class PictureTest : public SetTest {
 protected:
  // Actions of a client on a plane. They return the results of the interfaces.

  static int place(const Rect& rect, WindowId on = WindowId::main);
  static int placeDefault(WindowId on = WindowId::main);
  static int crop(const Rect& crop, const Rect& display, WindowId on = WindowId::main);
  static int order(int order, WindowId on = WindowId::main);
  static int mute(int mute, WindowId on = WindowId::main);

  // Queries of a client, with rectangles as "X,Y,WIDTHxHEIGHT"; "none" when the call fails, which must leave the
  // outputs unchanged.

  static std::string rect(WindowId on = WindowId::main);
  static std::string cropped(
      WindowId on = WindowId::main);  ///< the part of the picture and its rectangle on the screen
  static std::string active(WindowId on = WindowId::main);
  static std::optional<Told> resolution(WindowId on = WindowId::main);

  const Plane& plane(WindowId on = WindowId::main) const { return window(on).plane; }
};

}  // namespace virtualtv::test
