#pragma once

#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/StoreError.h"

namespace virtualtv {

/// Carries a platform call that answers a number out on the set: `body` takes the set and answers the call's result.
/// What the set can't keep is complained about and answered as a failure.
/// @param handle, values  as for `seam::pass`.
template <typename Values, typename Body>
int answer(const seam::Operation& operation, const seam::Handle& handle, const Values& values, Body body) {
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
