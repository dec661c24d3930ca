// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "set/State.h"

// The content of a window on the screen: the picture of its source, and its place.

namespace virtualtv {

class Tv;

/// The picture that a window shows. Returns nothing when there is no source or no signal, for radio and data services,
/// and for a service whose fields give no width, height or rate.
std::optional<Picture> pictureOn(Tv& tv, WindowId id);
/// The same for a given state. @param service  the service on the window's screen, or nothing.
std::optional<Picture> pictureOn(const TvState& state, WindowId id, const std::optional<Service>& service);

/// The TV service's code for the resolution of a picture; 136 for a size without a code.
int resolutionCode(const Picture& picture);
/// Lines per second, including lines that carry no picture. Clamped to the largest `unsigned`.
unsigned linesPerSecond(const Picture& picture);

/// The part of its picture that a window shows, and where. An uncropped window shows all of it. Returns nothing when
/// there is neither a picture nor a crop.
std::optional<Crop> cropOn(Tv& tv, WindowId window);

/// The rectangle in which a plane draws its picture: the display rectangle of a crop, or the place of the plane.
Rect drawnAt(const Plane& plane);
/// The part of a plane that the content of the picture fills. The picture is centred in the plane, as large as its
/// aspect ratio allows. The content is centred in the picture, with the aspect ratio that the broadcaster's format
/// description gives. Fractions of a pixel are truncated.
Rect activeArea(const Plane& plane, const Picture& picture);

}  // namespace virtualtv
