#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "support/model/Set.h"

/// What the plug-in answers, what it has the set do and which settings keys it writes, in their order: one function a
/// command, on a set that never fails. A reference to hold the plug-in against; it shares no code with that.
namespace model {

/// The command is accepted and not answered.
using Nothing = std::monostate;

/// A number, a text of bytes, a text of 16-bit units or none of these.
using Reply = std::variant<int, std::string, std::u16string, Nothing>;

/// One engine on the set: what it keeps between commands.
struct Engine {
  std::string widgetId;
  WindowId window = WindowId::main;
  std::vector<Service> found;  ///< what the last "FindChannel" found, as it was then
};

/// A command that an engine was given, and the set that it runs on.
struct Command {
  Set& set;
  Engine& engine;
  std::string name;
  std::vector<std::string> parameters;  ///< four, or nine of a list

  virtualtv::WindowState& window() const { return set.state[engine.window]; }

  // How parameters are read. `index` counts from 0.

  int decimal(std::size_t index) const;                ///< what stands at the front; 0 when that is no number
  std::optional<int> number(std::size_t index) const;  ///< the whole text or nothing
  std::uint64_t identifier(std::size_t index) const;   ///< also hexadecimal and octal; 0 when that is no number
};

/// An engine is opened: the keys of the sources start with what the main window shows.
Engine open(Set& set, const std::string& widgetId);

/// Runs a command. @throws std::invalid_argument for a command that the model does not know.
Reply answer(const Command& command);
/// Runs a command that comes with a parameter list. @throws likewise.
Reply answerList(const Command& command);

// Sources.

inline constexpr int tvSource = 0;
inline constexpr int noSource = 43;
inline constexpr int ispSource = 48;

/// What the window shows, as web applications count; `noSource` for nothing. Nothing when it can't be told.
std::optional<int> currentSource(const Command& command);
/// Records a switch of the window: previous source, then what the middleware reads, then current source.
/// @return false where that ends early, as always in picture-in-picture.
bool record(const Command& command, int source, int previous);
/// Whether the platform notes that the ISP source is on screen.
bool showsIsp(const Set& set);
/// Key of the window's current source.
std::string sourceKey(const Command& command);

Reply setWindow(const Command& command);
Reply getSource(const Command& command);
Reply getPreviousSource(const Command& command);
Reply getSourceState(const Command& command);
Reply setSource(const Command& command);
Reply setSourceAndTune(const Command& command);
Reply setPreviousSource(const Command& command);
Reply disconnectSource(const Command& command);

// Pictures.

Reply setScreenRect(const Command& command);
Reply getScreenRect(const Command& command);
/// The command "GetAFDGeometryRectSize".
Reply getActiveRect(const Command& command);
/// The two commands that ask for a mode of the rectangle, and the one that sets both.
Reply getScreenMode(const Command& command);
Reply setScreenMode(const Command& command);
Reply getShowState(const Command& command);
Reply setScreenCropRect(const Command& command);
Reply setScreenCropRectByList(const Command& command);
Reply getScreenCropRect(const Command& command);
Reply setScreenZorder(const Command& command);
Reply show(const Command& command);
Reply muteVideo(const Command& command);
Reply getResolution(const Command& command);
Reply getResolutionDetail(const Command& command);

// Tracks and favourites.

Reply getMultiAudioInfo(const Command& command);
Reply getCurrentAudioInfo(const Command& command);
Reply changeAudioPid(const Command& command);
Reply changeAudioByIndex(const Command& command);
Reply setSourceVolume(const Command& command);
Reply getSubtitleInfo(const Command& command);
Reply getCurrentSubtitle(const Command& command);
Reply changeSubtitle(const Command& command);
Reply getFavorites(const Command& command);
Reply updateFavorites(const Command& command);

// Channels.

Reply getTvMode(const Command& command);
Reply setTvMode(const Command& command);
Reply getSignalStrength(const Command& command);
Reply findChannel(const Command& command);
Reply getChannelSize(const Command& command);
Reply getChannelServiceId(const Command& command);
Reply getStartChannelServiceId(const Command& command);
Reply setChannel(const Command& command);
Reply setChannelByPtc(const Command& command);
Reply setChannelBySeek(const Command& command);
Reply setChannelByServiceId(const Command& command);
Reply setChannelDirect(const Command& command);
/// A field of the channel on screen, at a position of the found list, or that the set starts with: the commands
/// "GetCurrentChannel_FIELD", "GetChannel_FIELD" and "GetStartChannel_FIELD".
Reply getField(const Command& command);

}  // namespace model
