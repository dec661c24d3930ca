// SPDX-License-Identifier: MIT
#include "support/Converter.h"

#include <iconv.h>

#include <cerrno>

namespace {

converter::Use* watched = nullptr;

}  // namespace

namespace converter {

Watch::Watch() {
  watched = &use;
}

Watch::~Watch() {
  watched = nullptr;
}

}  // namespace converter

// The names are the linker's. NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

iconv_t __real_iconv_open(const char* to, const char* from);
std::size_t __real_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft);
int __real_iconv_close(iconv_t converter);

iconv_t __wrap_iconv_open(const char* to, const char* from);
std::size_t __wrap_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft);
int __wrap_iconv_close(iconv_t converter);

iconv_t __wrap_iconv_open(const char* to, const char* from) {
  if (watched == nullptr) return __real_iconv_open(to, from);
  watched->opened.push_back(std::string(to) + " from " + from);
  if (watched->failOpen == 0) return __real_iconv_open(to, from);
  errno = watched->failOpen;
  return reinterpret_cast<iconv_t>(-1);
}

std::size_t __wrap_iconv(iconv_t converter, char** in, std::size_t* inLeft, char** out, std::size_t* outLeft) {
  if (watched == nullptr) return __real_iconv(converter, in, inLeft, out, outLeft);
  if (in == nullptr) {
    ++watched->resets;
    return __real_iconv(converter, in, inLeft, out, outLeft);
  }
  watched->rooms.push_back(*outLeft);
  if (watched->failConvert == 0) return __real_iconv(converter, in, inLeft, out, outLeft);
  errno = watched->failConvert;
  return static_cast<std::size_t>(-1);
}

int __wrap_iconv_close(iconv_t converter) {
  if (watched != nullptr) ++watched->closed;
  return __real_iconv_close(converter);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
