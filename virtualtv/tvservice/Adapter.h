#pragma once

#include <memory>
#include <string>

#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/StoreError.h"

// What the adapters behind the TV service's interfaces share.

namespace virtualtv::tvservice {

/// An interface that a client was given: which window it acts on, and its number.
struct Profile {
  WindowId window = WindowId::main;
  seam::Handle handle;
};

/// Carries a call of an adapter out on the set: `body` takes the set and answers the call's result. What the set can't
/// keep is complained about and answered as a failure.
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

/// The same for an operation that this set does not carry out yet.
template <typename Values>
int refuse(const seam::Operation& operation, const seam::Handle& handle, const Values& values) {
  return seam::pass(operation, handle, values, [&] { return operation.failure(); });
}

}  // namespace virtualtv::tvservice
