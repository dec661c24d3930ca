// SPDX-License-Identifier: MIT
// Transcripts of any bytes. A valid text must be read and written back unchanged. Its output must be text that can't be
// taken for an input. With that output in the transcript, the check must pass. Quoted words must read as the original
// words.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "EmpAppWindow.h"
#include "framework/Reply.h"
#include "fuzz/support/Demand.h"
#include "shell/Check.h"
#include "shell/Session.h"
#include "shell/Transcript.h"
#include "text/Units.h"
#include "virtualtv/support/Support.h"

namespace {

using fuzz::demand;
using virtualtv::shell::CheckedFile;
using virtualtv::shell::Lines;
using virtualtv::shell::Transcript;

constexpr std::size_t mostSteps = 24;
constexpr const char* list =
    "One:578:B8M64:T:0:101:102=eng:103:0:281:8442:1051:0\nTwo:586:B8M64:T:0:0:202:0:0:282:8442:1051:0\n";

/// The folder of the transcripts, with a list that they can import and a file that they can run.
struct Desk {
  Desk() {
    virtualtv::test::write(folder / "list.conf", list);
    virtualtv::test::write(folder / "other.txt", "> GetTVMode\n> .source other.txt\n");
  }
  virtualtv::test::TemporaryDirectory folder;
  const std::filesystem::path file = folder / "t.txt";
  kel::CEmpAppWindow app;
};

/// True for an input that may read a file elsewhere, which may be endless.
bool readsElsewhere(const std::string& input) {
  try {
    const Lines words = virtualtv::shell::splitWords(input);
    const bool reads = std::ranges::any_of(
        words, [](const std::string& word) { return word.ends_with(".source") || word.ends_with(".import"); });
    return reads && input.find('/') != input.npos;
  } catch (const std::invalid_argument&) {
    return false;  // such a line is refused
  }
}

void quote(const std::string& text) {
  namespace units = virtualtv::text;
  const std::u16string original = units::toUnits(text);
  const std::string quoted = units::quoted(original);
  std::string_view rest = quoted;
  demand(units::parseQuoted(rest) == original && rest.empty(), "quoted, it reads otherwise");
  demand(units::isPrintable(quoted) && units::isPrintable(units::printable(text)), "escaped, it can't be shown");

  const std::string word = units::asWord(text);
  demand(virtualtv::shell::splitWords(word) == Lines{text}, "as a word it reads otherwise: " + word);
  demand(units::isPrintable(word) && units::printable(word) == word, "as a word it can't be shown: " + word);

  using virtualtv::framework::Reply;
  for (const Reply& reply : {Reply{Reply::Kind::ascii, 0, text, {}}, Reply{Reply::Kind::unicode, 0, {}, original}}) {
    demand(virtualtv::framework::decode(virtualtv::framework::encode(reply)) == reply, "encoded, it reads otherwise");
    for (const std::string& line : virtualtv::shell::splitLines(virtualtv::framework::show(reply))) {
      demand(virtualtv::shell::isText(line) && !virtualtv::shell::isInput(line) && !virtualtv::shell::isRemark(line),
             "a reply prints " + line);
    }
  }
}

/// Reads the bytes as a transcript. @return false when they are not one.
bool read(const std::string& content, Transcript& transcript) {
  try {
    transcript = virtualtv::shell::readTranscript("t.txt", content);
  } catch (const std::runtime_error& error) {
    demand(std::string_view(error.what()).starts_with("t.txt:"), std::string("a reason: ") + error.what());
    return false;
  }
  const std::string written = virtualtv::shell::writeTranscript(transcript);
  demand(virtualtv::shell::splitLines(written) == virtualtv::shell::splitLines(content), "written, it is another");
  return true;
}

/// Requires the same output in two runs.
void check(Desk& desk, const std::string& content) {
  virtualtv::test::write(desk.file, content);
  const CheckedFile first = virtualtv::shell::checkTranscript(desk.app, desk.file, false);
  if (!first.error.empty()) return;
  const CheckedFile updated = virtualtv::shell::checkTranscript(desk.app, desk.file, true);
  demand(updated.error.empty() && updated.findings == first.findings, "the update went otherwise: " + updated.error);
  const CheckedFile again = virtualtv::shell::checkTranscript(desk.app, desk.file, false);
  demand(again.error.empty() && again.diff.empty(), "what was printed does not pass: " + again.error + again.diff);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  quote(content);
  Transcript transcript;
  if (!read(content, transcript) || transcript.steps.size() > mostSteps) return 0;
  for (const auto& step : transcript.steps) {
    if (readsElsewhere(step.input)) return 0;
  }
  static Desk desk;
  check(desk, content);
  return 0;
}
