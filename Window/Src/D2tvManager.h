// SPDX-License-Identifier: MIT
#pragma once

#include "Ask.h"
#include "d2tv/CD2tvMgrProxy.h"

namespace kel {

/// The manager of the secondary TV stack; null when it can't be reached. @param level  log level for an exception.
inline CD2tvMgrProxy* D2tvManager(int level = kFailure) {
  constexpr CD2tvMgrProxy* none = nullptr;
  const auto ask = [] { return CD2tvMgrProxy::GetInstance("EMP_WINDOW"); };
  return Try(none, ask, level);
}

}  // namespace kel
