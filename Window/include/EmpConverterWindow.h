// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// @file
/// The plug-in's own numbers (PL values), as web applications use them, and their translation. A number whose meaning
/// has no known name has no enumerator.

/// A window that shows live broadcast.
enum _PL_WINDOW_WINDOW : int { PL_WINDOW_WINDOW_MAIN = 0, PL_WINDOW_WINDOW_PIP = 1 };

/// An input of the set.
enum _PL_WINDOW_Source : int {
  PL_WINDOW_SOURCE_TV = 0,
  PL_WINDOW_SOURCE_TVS_LAST = 42,  ///< 0 to 42 are sources of the TV service
  PL_WINDOW_SOURCE_NONE = 43,      ///< no source of the TV service is active, or its state is unknown
  PL_WINDOW_SOURCE_ISP = 48,
  PL_WINDOW_SOURCE_UNKNOWN = 100,  ///< preset of a source before it is read
};

/// Which source or channel is meant, relative to the current one.
enum _PL_WINDOW_SEEK : int {
  PL_WINDOW_SEEK_NEXT = 3,
  PL_WINDOW_SEEK_PREVIOUS = 4,
  PL_WINDOW_SEEK_PREVIOUS_SOURCE_6 = 6,
  PL_WINDOW_SEEK_PREVIOUS_SOURCE_8 = 8,
  PL_WINDOW_SEEK_PREVIOUS_SOURCE_9 = 9,
};

/// A type of channels.
enum _PL_WINDOW_CHANNEL_TYPE : int { PL_WINDOW_CHANNEL_TYPE_ALL = 0 };

/// A reception mode: 1 terrestrial, 2 and 3 cable, 4 satellite, each with the country's own service list; 5 to 20 and
/// 25 to 31 are satellite operators' lists, 23 and 24 a terrestrial and a cable one.
enum _PL_WINDOW_TV_MODE : int {};

/// Which channels a seek goes through.
enum _PL_WINDOW_NAVIGATOR_MODE : int {};
/// How the place of a picture is chosen; no set reports it.
enum _PL_WINDOW_POSITION_MODE : int {};
/// How the size of a picture is chosen; no set reports it.
enum _PL_WINDOW_RECT_SIZE_MODE : int {};
/// Whether a window shows something, see `CEmpTaskWindow::GetState_Show`.
enum _PL_WINDOW_SHOW_STATE : int {};
/// The action of `CEmpTaskWindow::Show`.
enum _PL_WINDOW_SHOW_TYPE : int {};
/// A resolution of the picture.
enum _PL_WINDOW_RESOLUTION : int {};
/// Where the plane of a picture goes.
enum PL_WINDOW_ZORDER : int {};

/// The tables of `CEmpConverterWindow`.
enum _PL_WINDOW_MAPPING_TABLE_ID : int {
  PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE,
  PL_WINDOW_MAPPING_TABLE_NAVIGATOR_MODE,
  PL_WINDOW_MAPPING_TABLE_POSITION_MODE,
  PL_WINDOW_MAPPING_TABLE_RECT_SIZE_MODE,
  PL_WINDOW_MAPPING_TABLE_SEEK,
  PL_WINDOW_MAPPING_TABLE_SHOW_STATE,
  PL_WINDOW_MAPPING_TABLE_SHOW_TYPE,
  PL_WINDOW_MAPPING_TABLE_RESOLUTION,
  PL_WINDOW_MAPPING_TABLE_SOURCE,
  PL_WINDOW_MAPPING_TABLE_MODULATION,
  PL_WINDOW_MAPPING_TABLE_ZORDER,
};

namespace kel {

/// Translates between the plug-in's numbers (PL) and the TV service's (TC). Static tables and functions only.
class CEmpConverterWindow {
 public:
  /// The TC value of a PL value, or the other way round: the other column of the first pair that matches.
  /// @param id  the table; trusted.
  /// @return 0 when no pair matches. Some pairs also give 0.
  /// @{
  static int GetTCValue(int plValue, _PL_WINDOW_MAPPING_TABLE_ID id);
  static int GetPLValue(int tcValue, _PL_WINDOW_MAPPING_TABLE_ID id);
  /// @}

  /// The PL value of a TV mode; 0 when its antenna has no PL value.
  static _PL_WINDOW_TV_MODE GetPLTVModeValue(TSTvMode mode);

  /// The TV mode of a PL value; (-1, -1) for a value without meaning. A value that names only the antenna gets the
  /// default service mode.
  static TSTvMode GetTCTVModeValue(_PL_WINDOW_TV_MODE mode);

  /// The service mode for the set's region and country, which are read on each call. Returns -1 when one of them can't
  /// be read, for instance because of an exception.
  static int t_GetDefaultServiceMode();

 protected:
  /// A row of a table.
  struct Pair {
    int pl;  ///< the plug-in's number
    int tc;  ///< the TV service's
  };

  /// The number of tables.
  static constexpr int tableCount = 11;

  /// The tables, each for one type of number.
  /// @{
  static const Pair m_stChannelTypeTable[20];
  static const Pair m_stNavigatorModeTable[1];
  static const Pair m_stPositionModeTable[1];
  static const Pair m_stRectSizeModeTable[1];
  static const Pair m_stSeekTable[13];
  static const Pair m_stShowStateTable[1];
  static const Pair m_stShowTypeTable[1];
  static const Pair m_stResolutionTable[24];
  static const Pair m_stSourceTable[46];
  static const Pair m_stModulationTable[20];
  static const Pair m_stZorderTable[2];
  /// @}

  /// The tables and their numbers of pairs, by `_PL_WINDOW_MAPPING_TABLE_ID`.
  /// @{
  static const Pair* const m_stTable[tableCount];
  static const int m_stTableSize[tableCount];
  /// @}
};

}  // namespace kel
