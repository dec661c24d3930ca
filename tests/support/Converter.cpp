// SPDX-License-Identifier: MIT
#include "support/Converter.h"

#include <iconv.h>

#include <cerrno>

namespace {

converter::Use* observed = nullptr;

}  // namespace

namespace converter {

Spy::Spy() {
  observed = &use;
}

Spy::~Spy() {
  observed = nullptr;
}

}  // namespace converter

// The linker requires these names. NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

iconv_t __real_iconv_open(const char* to, const char* from);
std::size_t __real_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft);
int __real_iconv_close(iconv_t converter);

iconv_t __wrap_iconv_open(const char* to, const char* from);
std::size_t __wrap_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft);
int __wrap_iconv_close(iconv_t converter);

iconv_t __wrap_iconv_open(const char* to, const char* from) {
  if (observed == nullptr) return __real_iconv_open(to, from);
  observed->opened.push_back(std::string(to) + " from " + from);
  if (observed->failOpen == 0) return __real_iconv_open(to, from);
  errno = observed->failOpen;
  return reinterpret_cast<iconv_t>(-1);
}

std::size_t __wrap_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft) {
  if (observed == nullptr) return __real_iconv(converter, in, inLeft, out, outLeft);
  if (in == nullptr) {
    ++observed->resets;
    return __real_iconv(converter, in, inLeft, out, outLeft);
  }
  observed->rooms.push_back(*outLeft);
  if (observed->failConvert == 0) return __real_iconv(converter, in, inLeft, out, outLeft);
  errno = observed->failConvert;
  return static_cast<std::size_t>(-1);
}

int __wrap_iconv_close(iconv_t converter) {
  if (observed != nullptr) ++observed->closed;
  return __real_iconv_close(converter);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
