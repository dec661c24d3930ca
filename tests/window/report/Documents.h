// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <string>

#include "support/Channels.h"

/// What the tests of the JSON documents share.
namespace reports {

/// The document as values; fails the test when the text is no JSON.
Json::Value parsed(const std::string& text);

/// A document as the JSON library writes it when it is given the whole.
std::string written(const Json::Value& document);

/// While it lives, the plug-in's writer of documents throws a std::runtime_error with the text "no document". The test
/// program is linked with `--wrap` for it.
class WriterFault {
 public:
  WriterFault();
  WriterFault(const WriterFault&) = delete;
  WriterFault& operator=(const WriterFault&) = delete;
  ~WriterFault();

  /// True once a document was not written.
  bool hit() const;
};

/// What an operation logs when its document can't be written.
std::string notWritten(const std::string& function);

}  // namespace reports
