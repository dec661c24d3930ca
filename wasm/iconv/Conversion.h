// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// The part of glibc's iconv that the plug-in and the importers rely on, for other C libraries: the same encodings,
/// results, error numbers and progress.
namespace wasm {

class Decoder;
class Encoder;

class Conversion {
 public:
  /// @param to  UTF-8, UTF-16, UTF-16LE. @param from  UCS-2BE, UTF-8, UTF-16BE, or an encoding that a table tells. Case
  /// does not matter, and trailing slashes are ignored. @return null for any other encoding.
  static std::unique_ptr<Conversion> open(std::string_view to, std::string_view from);

  Conversion(std::unique_ptr<Decoder> decoder, std::unique_ptr<Encoder> encoder);
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion();

  /// Resets to the initial state. No encoding here has pending output.
  void reset();
  /// Converts until the input ends or an error occurs. Advances input and output past the converted part.
  /// @return 0 on success, EILSEQ for invalid input, EINVAL if the input ends within a character, E2BIG if the output
  /// is full.
  int convert(const char*& from, std::size_t& fromLeft, char*& to, std::size_t& toLeft);

 private:
  std::unique_ptr<Decoder> decoder_;
  std::unique_ptr<Encoder> encoder_;
  bool isMarked_ = false;  ///< the bytes at the front of a text have been written
};

}  // namespace wasm
