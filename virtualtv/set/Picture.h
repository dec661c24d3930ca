#pragma once

#include <optional>

#include "set/State.h"

// What stands on a window's screen: the picture that its source gives, and where the plane shows it.

namespace virtualtv {

class Tv;

/// The picture of what a window shows; nothing without a source, without a signal, on radio and data services, and on a
/// service whose fields hold no width, height or rate of a picture.
std::optional<Picture> pictureOn(Tv& tv, WindowId id);
/// The same in a state. @param service  the one on the window's screen; nothing where there is none.
std::optional<Picture> pictureOn(const TvState& state, WindowId id, const std::optional<Service>& service);

/// The TV service's code of a picture's resolution; 136 for a size that has none.
int resolutionCode(const Picture& picture);
/// Lines a second, those that carry no picture included; the largest number there is where there are more.
unsigned linesPerSecond(const Picture& picture);

/// What a window shows of its picture, and where: all of it unless it is cropped. Nothing without a picture or a crop.
std::optional<Crop> cropOn(Tv& tv, WindowId window);

/// Where a plane draws its picture: the display rectangle of a crop, or where the plane was placed.
Rect drawnAt(const Plane& plane);
/// The part of a plane that the picture's content fills. The picture stands in the middle of the plane, as large as its
/// shape lets it be, and its content in the middle of the picture by the broadcaster's format description. Parts of a
/// pixel are cut off.
Rect activeArea(const Plane& plane, const Picture& picture);

}  // namespace virtualtv
