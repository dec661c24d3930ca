// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// What the plug-in and the importers rely on of the C library's iconv, for C libraries whose own is another: the same
/// encodings, results, error numbers and progress as glibc's.
namespace wasm {

class Decoder;
class Encoder;

class Conversion {
 public:
  /// @param to  UTF-8, UTF-16, UTF-16LE. @param from  UCS-2BE, UTF-8, UTF-16BE, or an encoding that a table tells.
  /// Small letters are as good as capitals, slashes at the end are left out. @return null for another one.
  static std::unique_ptr<Conversion> open(std::string_view to, std::string_view from);

  Conversion(std::unique_ptr<Decoder> decoder, std::unique_ptr<Encoder> encoder);
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion();

  /// Goes back to the start. No encoding here holds anything back.
  void reset();
  /// Converts until the input ends or something is in the way. Input and output are moved behind what was converted.
  /// @return 0, else EILSEQ for input that stands for nothing, EINVAL where it ends within a character, E2BIG where the
  /// output is full.
  int convert(const char*& from, std::size_t& fromLeft, char*& to, std::size_t& toLeft);

 private:
  std::unique_ptr<Decoder> decoder_;
  std::unique_ptr<Encoder> encoder_;
  bool isMarked_ = false;  ///< what stands in front of a text has been written
};

}  // namespace wasm
