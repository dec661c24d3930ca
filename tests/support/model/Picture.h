// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "support/model/Set.h"

/// The pictures of a set's windows and the planes that show them, computed independently of the set in software.
namespace model {

using virtualtv::Crop;
using virtualtv::Picture;
using virtualtv::Rect;

/// The picture that a window shows. Null when there is no source or signal, for radio and data services, and for a
/// service whose fields give no valid picture.
std::optional<Picture> pictureOn(const Set& set, WindowId id);
/// The TV service's code for the size of a picture; 136 for a size without a code.
int resolutionCode(const Picture& picture);
/// Lines per second, including lines that carry no picture.
unsigned linesPerSecond(const Picture& picture);

// The planes. Functions that return false have changed nothing.

/// Places a plane and removes its crop. @return false for an empty rectangle.
bool place(Set& set, WindowId window, const Rect& rect);
void placeDefault(Set& set, WindowId window);
/// @return false if one of the rectangles is empty.
bool crop(Set& set, WindowId window, const Crop& crop);
/// The crop, or the whole picture in its plane; nothing when there is neither a crop nor a picture.
std::optional<Crop> cropOn(const Set& set, WindowId window);
/// The part of the screen that the content of the picture fills; nothing without a picture.
std::optional<Rect> activeArea(const Set& set, WindowId window);

}  // namespace model
