// SPDX-License-Identifier: MIT
// Translation between the plug-in's numbers and the TV service's. Reads the set's region and country through the
// platform's system information and settings.
#include "EmpConverterWindow.h"

#include <cstddef>

#include "Ask.h"
#include "settings/system_info.h"
#include "settings/system_settings.h"

namespace kel {

// Pairs of (PL value, TC value). Their order counts: the first match wins. A TC value of -1 or -2 marks a PL value
// without a counterpart.

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stChannelTypeTable[20] = {
    {0, -1}, {2, 1},  {3, 2},  {4, 3},  {5, 4},   {8, 7},  {9, 3},   {10, 8},  {28, 9},  {11, 4},
    {12, 5}, {13, 6}, {16, 7}, {18, 8}, {19, 13}, {20, 9}, {21, 10}, {23, 11}, {24, 19}, {25, 20}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stNavigatorModeTable[1] = {{0, 0}};
const CEmpConverterWindow::Pair CEmpConverterWindow::m_stPositionModeTable[1] = {{0, 0}};
const CEmpConverterWindow::Pair CEmpConverterWindow::m_stRectSizeModeTable[1] = {{0, 0}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stSeekTable[13] = {{0, -1},  {1, -1},  {2, -1}, {3, -1}, {4, -1},
                                                                          {5, -1},  {6, -1},  {7, -1}, {8, -1}, {9, -1},
                                                                          {10, -1}, {11, -1}, {12, -1}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stShowStateTable[1] = {{0, 0}};
const CEmpConverterWindow::Pair CEmpConverterWindow::m_stShowTypeTable[1] = {{0, 0}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stResolutionTable[24] = {
    {0, 137}, {1, 134}, {2, 0},   {3, 0},    {4, 154},  {5, 1},   {6, 2},   {7, 3},
    {8, 4},   {9, 5},   {10, 10}, {11, 9},   {12, 21},  {13, 22}, {14, 15}, {15, 16},
    {16, 17}, {17, 19}, {18, -2}, {19, 135}, {20, 136}, {21, -1}, {22, 29}, {23, -1}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stSourceTable[46] = {
    {0, 0},   {1, -1},  {2, -1},  {3, -1},  {4, -1},   {5, -1},  {6, -1},  {7, -1},  {11, -1}, {12, -1},
    {13, -1}, {14, -1}, {15, 1},  {16, 2},  {17, 3},   {19, 4},  {20, 5},  {21, 6},  {23, 7},  {24, 8},
    {25, 9},  {27, 10}, {28, 11}, {29, 12}, {31, 13},  {32, 14}, {33, 15}, {34, 16}, {35, 17}, {36, 18},
    {37, 19}, {39, 20}, {40, 21}, {41, 22}, {43, -1},  {44, -1}, {45, -1}, {46, -1}, {47, -1}, {48, -1},
    {49, -1}, {50, -1}, {51, -1}, {52, -1}, {100, -1}, {53, 31}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stModulationTable[20] = {
    {-1, -1}, {0, 0},   {1, 1},   {2, 2},   {3, 3},   {4, 4},   {5, 5},   {6, 6},   {7, 7},   {8, 8},
    {9, 9},   {10, 10}, {11, 11}, {12, 12}, {13, 13}, {14, 14}, {15, 15}, {16, 16}, {17, 17}, {18, 18}};

const CEmpConverterWindow::Pair CEmpConverterWindow::m_stZorderTable[2] = {{0, 0}, {1, 2}};

const CEmpConverterWindow::Pair* const CEmpConverterWindow::m_stTable[tableCount] = {
    m_stChannelTypeTable, m_stNavigatorModeTable, m_stPositionModeTable, m_stRectSizeModeTable,
    m_stSeekTable,        m_stShowStateTable,     m_stShowTypeTable,     m_stResolutionTable,
    m_stSourceTable,      m_stModulationTable,    m_stZorderTable};

const int CEmpConverterWindow::m_stTableSize[tableCount] = {20, 1, 1, 1, 13, 1, 1, 24, 46, 20, 2};

int CEmpConverterWindow::GetTCValue(int plValue, _PL_WINDOW_MAPPING_TABLE_ID id) {
  for (int row = 0; row < m_stTableSize[id]; ++row) {
    if (m_stTable[id][row].pl == plValue) return m_stTable[id][row].tc;
  }
  return 0;
}

int CEmpConverterWindow::GetPLValue(int tcValue, _PL_WINDOW_MAPPING_TABLE_ID id) {
  for (int row = 0; row < m_stTableSize[id]; ++row) {
    if (m_stTable[id][row].tc == tcValue) return m_stTable[id][row].pl;
  }
  return 0;
}

namespace {

constexpr int kOwnListMode = 21;  // the service mode that has PL values of its own on every antenna

// PL values of the satellite lists, by service mode from 3 on.
constexpr int kFirstListMode = 3;
constexpr int kSatelliteModes[25] = {5,  6,  7,  8, 9, 10, 11, 12, 13, 14, 15, 16, 17,
                                     18, 19, 20, 4, 4, 25, 26, 27, 28, 29, 30, 31};

int SatelliteMode(int serviceMode) {
  const unsigned place = static_cast<unsigned>(serviceMode) - kFirstListMode;
  return place < 25 ? kSatelliteModes[place] : 4;
}

TSTvMode Mode(int antenna, int service) {
  return TSTvMode(static_cast<EAntennaMode>(antenna), static_cast<EServiceMode>(service));
}

}  // namespace

_PL_WINDOW_TV_MODE CEmpConverterWindow::GetPLTVModeValue(TSTvMode mode) {
  int value = 0;
  switch (static_cast<int>(mode.antennaMode)) {
    case ANTENNA_TERRESTRIAL:
      value = mode.serviceMode == kOwnListMode ? 23 : 1;
      break;
    case ANTENNA_CABLE:
      value = mode.serviceMode == kOwnListMode ? 24 : 2;
      break;
    case ANTENNA_SATELLITE:
      value = SatelliteMode(mode.serviceMode);
      break;
    default:
      break;
  }
  return static_cast<_PL_WINDOW_TV_MODE>(value);
}

TSTvMode CEmpConverterWindow::GetTCTVModeValue(_PL_WINDOW_TV_MODE mode) {
  const int value = mode;
  if (value == 1) return Mode(ANTENNA_TERRESTRIAL, t_GetDefaultServiceMode());
  if (value == 2 || value == 3) return Mode(ANTENNA_CABLE, t_GetDefaultServiceMode());
  if (value == 4) return Mode(ANTENNA_SATELLITE, t_GetDefaultServiceMode());
  if (value >= 5 && value <= 20) return Mode(ANTENNA_SATELLITE, value - 2);
  if (value == 23) return Mode(ANTENNA_TERRESTRIAL, kOwnListMode);
  if (value == 24) return Mode(ANTENNA_CABLE, kOwnListMode);
  if (value >= 25 && value <= 31) return Mode(ANTENNA_SATELLITE, value - 4);
  return Mode(ANTENNA_NONE, SERVICE_MODE_NONE);
}

int CEmpConverterWindow::t_GetDefaultServiceMode() {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpConverterWindow :: t_GetDefaultServiceMode");
  int region = 0;
  const int result = Try(kFailed, [&] { return system_info_get_value_int(SYSTEM_INFO_KEY_REGION_KIND, &region); });
  if (result != 0) {
    KEL_LOG(kInformation, "system_info_get_value_int(SYSTEM_INFO_KEY_REGION_KIND, &region) : %d", result);
    return -1;
  }
  if (region == 17) return 2;

  int nCountry = 0;
  if (Try(kFailed, [&] { return system_settings_get_value_int(SYSTEM_SETTINGS_KEY_COUNTRY, &nCountry); }) != 0) {
    KEL_LOG(kFailure, "system_settings_get_value_int(SYSTEM_SETTINGS_KEY_COUNTRY, &nCountry) failed");
    return -1;
  }
  KEL_LOG(kInformation, "CEmpConverterWindow :: m_country : [ %d ]", nCountry);
  switch (nCountry) {
    case 0:
    case 2:
      return 0;
    case 1:
    case 36:
    case 63:
    case 75:
      return kOwnListMode;
    case 34:
    case 64:
    case 65:
    case 67:
    case 69:
    case 70:
    case 71:
    case 72:
    case 73:
    case 74:
    case 80:
      return 2;
    default:
      return 1;
  }
}

}  // namespace kel
