// SPDX-License-Identifier: MIT
#pragma once

#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/StoreError.h"

namespace virtualtv {

/// Carries out a platform call that returns a number: `body` takes the set and returns the result of the call. When the
/// set can't persist a change, this reports a complaint and returns a failure.
/// @param handle, values  as for `seam::pass`.
template <typename Values, typename Body>
int callTv(const seam::Operation& operation, const seam::Handle& handle, const Values& values, Body body) {
  return seam::pass(operation, handle, values, [&] {
    Tv& tv = Tv::current();
    try {
      return static_cast<int>(body(tv));
    } catch (const StoreError& error) {
      tv.complain(error.what());
      return operation.failure();
    }
  });
}

}  // namespace virtualtv
