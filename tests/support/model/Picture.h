// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "support/model/Set.h"

/// The pictures of a set's windows and the planes that show them, worked out without the set in software.
namespace model {

using virtualtv::Crop;
using virtualtv::Picture;
using virtualtv::Rect;

/// What a window shows; nothing without a source, without a signal, on radio and data services, and on a service whose
/// fields are no picture's.
std::optional<Picture> pictureOn(const Set& set, WindowId id);
/// The TV service's code of a picture's size; 136 for one that has none.
int resolutionCode(const Picture& picture);
/// Lines a second, those that carry no picture included.
unsigned linesPerSecond(const Picture& picture);

// The planes. What answers false has changed nothing.

/// Places a plane, which ends its crop. @return false for an empty rectangle.
bool place(Set& set, WindowId window, const Rect& rect);
void placeDefault(Set& set, WindowId window);
/// @return false where one of the rectangles is empty.
bool crop(Set& set, WindowId window, const Crop& crop);
/// The crop, or else the whole picture in its plane; nothing when there is neither.
std::optional<Crop> cropOn(const Set& set, WindowId window);
/// The part of the screen that the content of the picture fills; nothing without a picture.
std::optional<Rect> activeArea(const Set& set, WindowId window);

}  // namespace model
