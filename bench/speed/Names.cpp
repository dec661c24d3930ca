// SPDX-License-Identifier: MIT
// The conversion of a name, compared with opening, using and closing a converter each time.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "Window/Src/Ucs2Text.h"

namespace {

constexpr std::string_view name("\0M\0a\0d\0e\0-\0u\0p\0 \0001\0002\0003\0004\0005", 26);

using Room = std::array<char, kel::kUtf16Room>;

void kept(Room& out) {
  kel::ucs2utf16(out.data(), name.data(), name.size());
}

void opened(Room& out) {
  const iconv_t converter = iconv_open("UTF-16", "UCS-2BE");
  char* in = const_cast<char*>(name.data());
  std::size_t inBytes = name.size();
  char* to = out.data();
  std::size_t room = out.size();
  iconv(converter, &in, &inBytes, &to, &room);
  iconv_close(converter);
}

void convert(benchmark::State& state, void (*conversion)(Room&)) {
  Room expected{};
  Room out{};
  opened(expected);
  conversion(out);
  conversion(out);  // a second conversion must give the same result
  if (out != expected) throw std::runtime_error("the conversions differ");
  for (auto _ : state) {
    conversion(out);
    benchmark::DoNotOptimize(out);
  }
}

BENCHMARK_CAPTURE(convert, kept, kept);
BENCHMARK_CAPTURE(convert, opened, opened);

}  // namespace
