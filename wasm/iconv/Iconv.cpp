// SPDX-License-Identifier: MIT
// Replaces the C library's iconv.
#include <iconv.h>

#include <cerrno>
#include <new>

#include "iconv/Conversion.h"

namespace {

const iconv_t none = reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr): how the library says it

wasm::Conversion& conversionOf(iconv_t handle) {
  return *static_cast<wasm::Conversion*>(handle);
}

}  // namespace

extern "C" iconv_t iconv_open(const char* to, const char* from) try {
  auto conversion = wasm::Conversion::open(to, from);
  if (conversion) return conversion.release();
  errno = EINVAL;
  return none;
} catch (const std::bad_alloc&) {
  errno = ENOMEM;
  return none;
}

extern "C" std::size_t iconv(iconv_t handle, char** from, std::size_t* fromLeft, char** to, std::size_t* toLeft) {
  if (from == nullptr || *from == nullptr) {
    conversionOf(handle).reset();
    return 0;
  }
  const char* place = *from;
  const int error = conversionOf(handle).convert(place, *fromLeft, *to, *toLeft);
  *from += place - *from;
  if (error == 0) return 0;
  errno = error;
  return static_cast<std::size_t>(-1);
}

extern "C" int iconv_close(iconv_t handle) {
  delete &conversionOf(handle);
  return 0;
}
