// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TCMarshalable.h"

/// @file
/// Codes and records of the TV service. Only the numbers of codes are fixed. A number without a known name has no
/// enumerator, and is used unchanged.

/// The window of an interface.
enum EProfile : int {
  PROFILE_MAIN = 1,   ///< the main window
  PROFILE_PIP = 101,  ///< the picture-in-picture window
};

/// An input of the set.
enum ESource : int {
  SOURCE_NONE = -1,
  SOURCE_TV = 0,
};

/// Code of a picture's resolution.
enum EResolution : int {};

/// An antenna.
enum EAntennaMode : int {
  ANTENNA_NONE = -1,
  ANTENNA_TERRESTRIAL = 0,
  ANTENNA_CABLE = 1,
  ANTENNA_SATELLITE = 2,
};

/// A service list of an antenna; 3 to 18 and 21 to 27 are operators' lists.
enum EServiceMode : int {
  SERVICE_MODE_NONE = -1,
};

/// The services for a navigation; 0 is the whole list of the TV mode.
enum ENavigationMode : int {
  NAVIGATION_ALL = 0,
};

/// How records are sorted.
enum ESortOrder : int {
  SORT_ASCENDING = 0,
  SORT_DESCENDING = 1,
};

/// A satellite.
enum ESatelliteId : int {};
/// A polarisation.
enum EDVBSPolarisation : int {};
/// A code rate of the inner error correction.
enum EDVBFECInner : int {};

/// A TV mode: the antenna and the service list in use. (-1, -1) means "unknown" or "any".
class TSTvMode : public TCMarshalable {
 public:
  /// The mode of this antenna and this list.
  TSTvMode(EAntennaMode antenna, EServiceMode service);

  EAntennaMode antennaMode;  ///< the antenna
  EServiceMode serviceMode;  ///< the service list
};

/// A satellite transponder.
class TSTransponder : public TCMarshalable {
 public:
  /// A transponder with these values, in the order of its members.
  TSTransponder(unsigned short transponderId, ESatelliteId satellite, int frequencyKhz, unsigned short symbols,
                EDVBSPolarisation polarisationCode, EDVBFECInner fec);

  unsigned short id;               ///< 65535 when unknown
  ESatelliteId satelliteId;        ///< its satellite
  int frequency;                   ///< kHz
  unsigned short symbolRate;       ///< ksym/s
  EDVBSPolarisation polarisation;  ///< its polarisation
  EDVBFECInner fecInner;           ///< its error correction; -1 when unknown
};

/// An audio track of a service. The codes are the TV service's own.
class TSAudio : public TCMarshalable {
 public:
  TSAudio();  ///< all members 0

  int lang;            ///< language code
  int decodeType;      ///< coding
  unsigned short pid;  ///< PID of its packets
  int audioMode;       ///< channels
  int audioType;       ///< intended audience
};

/// A hybrid subtitle track of a service. Clients pass it on without reading it.
class TSHybridSBT : public TCMarshalable {
 public:
  TSHybridSBT();  ///< all members 0

  int type;            ///< kind of subtitle
  unsigned short pid;  ///< PID of its packets
};

/// A rectangle in pixels.
class TSRectInfo : public TCMarshalable {
 public:
  TSRectInfo();  ///< all members 0

  int x;       ///< left edge
  int y;       ///< upper edge
  int width;   ///< from the left edge to the right
  int height;  ///< from the upper edge downwards
};

/// Size and frequencies of the picture on screen.
class TSResolution : public TCMarshalable {
 public:
  TSResolution();  ///< all members 0

  unsigned int horizontal;           ///< pixels
  unsigned int vertical;             ///< lines
  unsigned int frequency;            ///< frames a second
  unsigned int horizontalFrequency;  ///< lines a second
};
