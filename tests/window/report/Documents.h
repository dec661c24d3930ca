// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <string>

#include "support/Channels.h"

/// Shared parts of the tests of the JSON documents.
namespace reports {

/// Parses a document. Fails the test when the text is not JSON.
Json::Value parsed(const std::string& text);

/// A document as the JSON library writes it in one go.
std::string written(const Json::Value& document);

/// The same document with the members of another, both as texts.
std::string with(const std::string& document, const std::string& members);

/// For its lifetime, makes the plug-in's writer of documents throw a std::runtime_error with the text "no document".
/// The test program is linked with `--wrap` for it.
class WriterFault {
 public:
  WriterFault();
  WriterFault(const WriterFault&) = delete;
  WriterFault& operator=(const WriterFault&) = delete;
  ~WriterFault();

  /// True once a document was not written.
  bool hit() const;
};

/// The log lines of an operation when its document can't be written.
std::string notWritten(const std::string& function);

}  // namespace reports
