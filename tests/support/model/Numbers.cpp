// SPDX-License-Identifier: MIT
#include "support/model/Numbers.h"

#include <algorithm>
#include <array>
#include <utility>

namespace model {

namespace {

using Pair = std::pair<int, int>;

// Pairs of PL and TC. In both directions the first match counts.
constexpr std::array sources{
    Pair{0, 0},   Pair{1, -1},  Pair{2, -1},  Pair{3, -1},  Pair{4, -1},   Pair{5, -1},  Pair{6, -1},  Pair{7, -1},
    Pair{11, -1}, Pair{12, -1}, Pair{13, -1}, Pair{14, -1}, Pair{15, 1},   Pair{16, 2},  Pair{17, 3},  Pair{19, 4},
    Pair{20, 5},  Pair{21, 6},  Pair{23, 7},  Pair{24, 8},  Pair{25, 9},   Pair{27, 10}, Pair{28, 11}, Pair{29, 12},
    Pair{31, 13}, Pair{32, 14}, Pair{33, 15}, Pair{34, 16}, Pair{35, 17},  Pair{36, 18}, Pair{37, 19}, Pair{39, 20},
    Pair{40, 21}, Pair{41, 22}, Pair{43, -1}, Pair{44, -1}, Pair{45, -1},  Pair{46, -1}, Pair{47, -1}, Pair{48, -1},
    Pair{49, -1}, Pair{50, -1}, Pair{51, -1}, Pair{52, -1}, Pair{100, -1}, Pair{53, 31},
};

constexpr std::array channelTypes{
    Pair{0, -1},  Pair{2, 1},  Pair{3, 2},   Pair{4, 3},   Pair{5, 4},   Pair{8, 7},   Pair{9, 3},
    Pair{10, 8},  Pair{28, 9}, Pair{11, 4},  Pair{12, 5},  Pair{13, 6},  Pair{16, 7},  Pair{18, 8},
    Pair{19, 13}, Pair{20, 9}, Pair{21, 10}, Pair{23, 11}, Pair{24, 19}, Pair{25, 20},
};

template <typename Pairs>
int toTc(const Pairs& pairs, int pl) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [=](const Pair& pair) { return pair.first == pl; });
  return found == pairs.end() ? 0 : found->second;
}

template <typename Pairs>
int toPl(const Pairs& pairs, int tc) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [=](const Pair& pair) { return pair.second == tc; });
  return found == pairs.end() ? 0 : found->first;
}

template <std::size_t size>
bool isOneOf(const std::array<int, size>& values, int value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

constexpr int special = 21;  // a service mode with its own number on every antenna

}  // namespace

int sourceToTc(int pl) {
  return toTc(sources, pl);
}
int sourceToPl(int tc) {
  return toPl(sources, tc);
}
int channelTypeToTc(int pl) {
  return toTc(channelTypes, pl);
}
int channelTypeToPl(int tc) {
  return toPl(channelTypes, tc);
}

/// The codes from -1 to 18 are the same on both sides.
int modulationToPl(int tc) {
  return tc >= -1 && tc <= 18 ? tc : 0;
}

int serviceModeOf(int country) {
  if (isOneOf(std::array{0, 2}, country)) return 0;
  if (isOneOf(std::array{1, 36, 63, 75}, country)) return 21;
  if (isOneOf(std::array{34, 64, 65, 67, 69, 70, 71, 72, 73, 74, 80}, country)) return 2;
  return 1;
}

virtualtv::TvMode modeToTc(int pl, const std::function<int()>& serviceMode) {
  if (pl == 1) return {0, serviceMode()};
  if (pl == 2 || pl == 3) return {1, serviceMode()};
  if (pl == 4) return {2, serviceMode()};
  if (pl >= 5 && pl <= 20) return {2, pl - 2};
  if (pl == 23) return {0, special};
  if (pl == 24) return {1, special};
  if (pl >= 25 && pl <= 31) return {2, pl - 4};
  return {-1, -1};
}

int modeToPl(virtualtv::TvMode mode) {
  if (mode.antenna == 0) return mode.service == special ? 23 : 1;
  if (mode.antenna == 1) return mode.service == special ? 24 : 2;
  if (mode.antenna != 2) return 0;
  if (mode.service >= 3 && mode.service <= 18) return mode.service + 2;
  if (mode.service >= 21 && mode.service <= 27) return mode.service + 4;
  return 4;
}

}  // namespace model
