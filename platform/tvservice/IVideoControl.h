// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// The video plane of one window, in base-screen pixels unless stated otherwise. Created by
/// `TVServiceAPI::CreateVideoControl`; owned by the library. Unless stated otherwise, an operation returns at least 1
/// on success, and outputs must not be read after a failure.
class IVideoControl {
 public:
  virtual ~IVideoControl();

  /// Places the picture. The height comes before the width.
  virtual int SetSize(int x, int y, int height, int width) = 0;
  /// The place of the picture. The height comes before the width.
  virtual int GetSize(int* x, int* y, int* height, int* width) = 0;
  /// Moves the picture to its default place, which for the main window is the whole screen.
  virtual int SetDefaultSize() = 0;
  /// The part of the screen that the picture's content fills, according to the broadcaster's format description.
  virtual int GetAFDGeometryRectSize(int* x, int* y, int* width, int* height) = 0;
  /// Shows the part `crop` of the source picture, in its pixels, in the rectangle `display` of the base screen.
  virtual int SetCropArea(TSRectInfo* crop, TSRectInfo* display) = 0;
  /// The rectangles of the last crop.
  virtual int GetCropArea(TSRectInfo* crop, TSRectInfo* display) = 0;
  /// Raises or lowers the plane. @return not negative on success.
  virtual int SetZOrder(int order) = 0;
};
