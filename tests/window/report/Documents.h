// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <string>

#include "support/Channels.h"

/// Shared parts of the tests of the JSON documents.
namespace reports {

/// Parses a document. Fails the test when the text is not JSON.
Json::Value parsed(const std::string& text);

/// A document as the JSON library writes it as a whole.
std::string written(const Json::Value& document);

/// Adds the members of one document to another one, replacing existing members. Both are texts.
std::string with(const std::string& document, const std::string& members);

/// For its lifetime, makes the plug-in's writer of documents throw a std::runtime_error with the text "no document".
/// The test program is linked with `--wrap` for it.
class WriterFault {
 public:
  WriterFault();
  WriterFault(const WriterFault&) = delete;
  WriterFault& operator=(const WriterFault&) = delete;
  ~WriterFault();

  /// True once the writer has thrown.
  bool hit() const;
};

/// The log lines of an operation when its document can't be written.
std::string notWritten(const std::string& function);

}  // namespace reports
