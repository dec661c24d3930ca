// SPDX-License-Identifier: MIT
#pragma once

namespace virtualtv {

/// Values of the field `MODULATION`, all within 0..18, the range that web pages can receive. A manual search for a
/// satellite service can ask for 7, 16 and 18 only, so these three are the modulations that satellites use most.
enum Modulation : int {
  MODULATION_UNKNOWN = 0,  ///< not known, or left to the tuner
  MODULATION_QAM_16 = 1,
  MODULATION_QAM_32 = 2,
  MODULATION_QAM_64 = 3,
  MODULATION_QAM_128 = 4,
  MODULATION_QAM_256 = 5,
  MODULATION_QAM_512 = 6,
  MODULATION_QPSK = 7,  ///< terrestrial, and satellite of the first generation (DVB-S)
  MODULATION_QAM_1024 = 8,
  MODULATION_QAM_4096 = 9,
  MODULATION_VSB_8 = 10,
  MODULATION_VSB_16 = 11,
  MODULATION_DQPSK = 12,
  MODULATION_APSK_16 = 13,
  MODULATION_APSK_32 = 14,
  MODULATION_QAM_4_NR = 15,
  MODULATION_PSK_8 = 16,
  MODULATION_APSK_64 = 17,
  MODULATION_QPSK_S2 = 18,  ///< satellite of the second generation (DVB-S2)
};

/// True for the modulations of cable networks.
constexpr bool isQam(Modulation modulation) {
  switch (modulation) {
    case MODULATION_QAM_16:
    case MODULATION_QAM_32:
    case MODULATION_QAM_64:
    case MODULATION_QAM_128:
    case MODULATION_QAM_256:
      return true;
    default:
      return false;
  }
}

}  // namespace virtualtv
