// Text conversion with the C library's iconv.
#include "Ucs2Text.h"

#include <iconv.h>

#include <cerrno>

#include "Log.h"

namespace kel {

namespace {

void Convert(const char* function, const char* encoding, char* out, std::size_t room, const char* in,
             std::size_t inBytes) {
  const iconv_t converter = iconv_open(encoding, "UCS-2BE");
  if (converter == iconv_t(-1)) {  // NOLINT: the type is the C library's
    KEL_LOG_AS(function, kInformation, "Iconv open failed");
    return;
  }
  char* from = const_cast<char*>(in);  // NOLINT: iconv only reads it
  if (iconv(converter, &from, &inBytes, &out, &room) == static_cast<std::size_t>(-1)) {
    const int error = errno;  // the logger may change it
    KEL_LOG_AS(function, kInformation, "iconv failed: %d", error);
  }
  iconv_close(converter);
}

}  // namespace

void ucs2utf16(char* out, const char* in, std::size_t inBytes) {
  Convert(__func__, "UTF-16", out, kUtf16Room, in, inBytes);
}

void ucs2utf8(char* out, const char* in, std::size_t inBytes) {
  Convert(__func__, "UTF-8", out, kUtf8Room, in, inBytes);
}

}  // namespace kel
