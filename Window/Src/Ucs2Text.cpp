// SPDX-License-Identifier: MIT
// Text conversion with the C library's iconv.
#include "Ucs2Text.h"

#include <iconv.h>

#include <cerrno>

#include "Log.h"

namespace kel {

namespace {

/// A converter of UCS-2 text, opened when it is first used and kept open.
class Converter {
 public:
  explicit Converter(const char* encoding) : m_encoding(encoding) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsOpen()) iconv_close(m_converter);
  }

  void Convert(char* out, std::size_t room, const char* in, std::size_t inBytes) {
    if (!IsOpen()) m_converter = iconv_open(m_encoding, "UCS-2BE");
    if (!IsOpen()) {
      KEL_LOG(kInformation, "Iconv open failed");
      return;
    }
    iconv(m_converter, nullptr, nullptr, nullptr, nullptr);  // resets the state from the previous text
    char* from = const_cast<char*>(in);                      // NOLINT: iconv only reads it
    if (iconv(m_converter, &from, &inBytes, &out, &room) == static_cast<std::size_t>(-1)) {
      const int error = errno;  // the logger may change it
      KEL_LOG(kInformation, "iconv failed: %d", error);
    }
  }

 private:
  bool IsOpen() const { return m_converter != iconv_t(-1); }  // NOLINT: the type is the C library's

  const char* m_encoding;
  iconv_t m_converter = iconv_t(-1);  // NOLINT
};

}  // namespace

void ucs2utf16(char* out, const char* in, std::size_t inBytes) {
  const LogScope scope(__func__);
  thread_local Converter converter("UTF-16");
  converter.Convert(out, kUtf16Room, in, inBytes);
}

void ucs2utf8(char* out, const char* in, std::size_t inBytes) {
  const LogScope scope(__func__);
  thread_local Converter converter("UTF-8");
  converter.Convert(out, kUtf8Room, in, inBytes);
}

}  // namespace kel
