// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tvservice/TCServiceData.h"

// Reads the fields of a service record, with a default for each absent field.

namespace kel {

inline constexpr unsigned long long kNoServiceId = ~0ULL;

template <typename Number>
Number ReadField(const TCServiceData& service, int fieldId, Number missing) {
  service.Get(fieldId, missing);
  return missing;
}

inline unsigned short ReadShort(const TCServiceData& service, int fieldId) {
  return ReadField<unsigned short>(service, fieldId, 65535);
}

inline int ReadInt(const TCServiceData& service, int fieldId) {
  return ReadField(service, fieldId, -1);
}

inline unsigned long long ReadServiceId(const TCServiceData& service) {
  return ReadField(service, TCServiceData::SERVICE_ID, kNoServiceId);
}

/// Reads all units of a text into `units`, as stored (big-endian).
inline void ReadText(const TCServiceData& service, int fieldId, std::vector<unsigned short>& units) {
  const int length = service.GetLength(fieldId);
  units.assign(length > 0 ? static_cast<std::size_t>(length) : 0, 0);
  if (!units.empty()) service.Get(fieldId, units.data());
}

inline std::vector<unsigned short> ReadText(const TCServiceData& service, int fieldId) {
  std::vector<unsigned short> units;
  ReadText(service, fieldId, units);
  return units;
}

}  // namespace kel
