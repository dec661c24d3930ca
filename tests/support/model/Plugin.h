// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "support/model/Platform.h"
#include "support/model/Set.h"

/// A model of the plug-in, with one function for each command: the answers, the calls to the set in their order, and
/// the settings keys written, including under failures. The plug-in is compared with it; the two share no code.
///
/// A call that throws always fails the operation that made it. The operation fails as it does after an ordinary failure
/// of that call. Where it carries on after an ordinary failure, it fails in its other way.
namespace model {

/// The command is accepted without a reply.
using Nothing = std::monostate;

/// The command is unknown. The reply is a number or absent.
struct Refused {
  std::optional<int> answer;
};

/// A number, a text of bytes, a text of 16-bit units or none of these.
using Reply = std::variant<int, std::string, std::u16string, Nothing, Refused>;

/// The interfaces of a window.
struct Proxies {
  Interface navigation;
  Interface source;
  Interface video;
  Interface av;
  Interface aux;
  Interface data;

  bool operator==(const Proxies&) const = default;
};

/// The state that an engine keeps between commands.
struct Engine {
  std::string appId;
  std::string widgetId;
  int window = 3;  ///< 0 is the main window, anything else picture-in-picture
  std::string sourceKey;
  std::string previousKey;
  Proxies active;
  Proxies main;
  Proxies pip;
  Interface service;
  Interface tuner;
  std::vector<TCServiceData> found;  ///< by the last "FindChannel"
};

/// A command, its engine, and the set that it runs on.
struct Command {
  Platform tv;
  Engine& engine;
  std::string name;
  std::vector<std::string> parameters;  ///< four, or nine of a list

  // How parameters are read. `index` counts from 0.

  int decimal(std::size_t index) const;                ///< the number at the front; 0 when there is none
  std::optional<int> number(std::size_t index) const;  ///< the whole text or nothing
  std::uint64_t identifier(std::size_t index) const;   ///< decimal, hexadecimal or octal; 0 when there is no number
};

/// Opens an engine: creates its interfaces for the main window, and seeds the source keys with what that window shows.
/// Failures are ignored here.
Engine open(const Platform& tv, const std::string& appId, const std::string& widgetId);
/// Closes an engine.
void close(const Platform& tv);

/// Runs a command.
Reply answer(const Command& command);
/// Runs a command that comes with a parameter list.
Reply answerList(const Command& command);

/// Runs a step of an operation. @return its result, or `failure` when it throws.
template <typename Step, typename Result>
Result attempt(Result failure, Step step) {
  try {
    return step();
  } catch (const Thrown&) {
    return failure;
  }
}

// Creates a missing interface on first use. @return true when there is one.

bool needService(const Command& command);
bool needNavigation(const Command& command);
bool needSource(const Command& command);
bool needVideo(const Command& command);
bool needAv(const Command& command);
bool needAux(const Command& command);
bool needData(const Command& command);
bool needTuner(const Command& command);
/// Makes the source control of the engine's window the active one, and its keys the ones in use.
/// @throws Thrown
bool selectSource(const Command& command);

// Sources.

inline constexpr int tvSource = 0;
inline constexpr int noSource = 43;
inline constexpr int ispSource = 48;

/// The source that the window shows, in the numbers of web applications; `noSource` for none. Returns nothing when it
/// can't be read.
std::optional<int> currentSource(const Command& command);
/// Records a switch of the window: previous source, then what the middleware reads, then current source.
/// @return false where that ends early, as always in picture-in-picture.
bool record(const Command& command, int source, int previous);
/// Seeds the source keys with what the main window shows. @return false when that stops early.
bool seedSources(const Command& command);
/// True when the platform's settings say that the ISP source is on screen.
bool showsIsp(const Command& command);
/// The application's id, or the text for an unknown one. @throws Thrown
std::string application(const Command& command);

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

// Channels. A failed lookup returns nothing.

inline constexpr unsigned long long noId = ~0ULL;

std::optional<TCServiceData> currentChannel(const Command& command);
std::optional<TCServiceData> previousChannel(const Command& command);
std::optional<TCServiceData> startChannel(const Command& command);
/// The channel at the position in the found list given by the first parameter; null for none.
const TCServiceData* foundChannel(const Command& command);

/// Lists the services that meet the criteria, ignoring null pointers. @return the result of the set.
int listServices(const Command& command, Interface navigation, const TCCriteriaHelper& criteria,
                 std::vector<TCServiceData>& services);

/// A number of a record, cut to the width of `Value`; `Value(-1)` when it is missing.
template <typename Value>
Value fieldOf(const TCServiceData& record, int field) {
  auto value = static_cast<Value>(-1);
  record.Get(field, value);
  return value;
}
/// A text of a record, its units in the host's order.
std::u16string textOf(const TCServiceData& record, int field);
unsigned long long idOf(const TCServiceData& record);

/// The TV service's mode for a mode of web applications. This may read region and country.
TSTvMode modeOf(const Command& command, int mode);

Reply getTvMode(const Command& command);
Reply setTvMode(const Command& command);
Reply findChannel(const Command& command);
Reply getChannelSize(const Command& command);
Reply getChannelServiceId(const Command& command);
Reply getStartChannelServiceId(const Command& command);
/// A field of the channel on screen, at a position of the found list, or that the set starts with: the commands
/// "GetCurrentChannel_FIELD", "GetChannel_FIELD" and "GetStartChannel_FIELD".
Reply getField(const Command& command);

// Tuning.

Reply setChannel(const Command& command);
Reply setChannelByPtc(const Command& command);
Reply setChannelBySeek(const Command& command);
Reply setChannelByServiceId(const Command& command);
Reply setChannelDirect(const Command& command);
/// The command "SetDVBSIChannelDirectEx".
Reply setChannelBySatellite(const Command& command);
Reply getSignalStrength(const Command& command);

// Reports.

Reply getChannelJson(const Command& command);
Reply getCurrentChannelInfo(const Command& command);
Reply getPreviousChannelInfo(const Command& command);
Reply getStartChannelInfo(const Command& command);
Reply getFullChannelList(const Command& command);

}  // namespace model
