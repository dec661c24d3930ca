// SPDX-License-Identifier: MIT
#include "program/Terminal.h"

#include <histedit.h>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "program/Keys.h"
#include "shell/Completion.h"
#include "shell/Hint.h"
#include "shell/Table.h"
#include "shell/Transcript.h"

namespace virtualtv::program {

using namespace shell;

namespace {

constexpr int keptLines = 1000;

struct EndEditing {
  void operator()(EditLine* editor) const { el_end(editor); }
};
struct EndHistory {
  void operator()(History* history) const { history_end(history); }
};

char* prompt(EditLine*) {
  static char text[] = "> ";
  return text;
}

/// The width of the terminal in characters; 0 when it is unknown.
std::size_t columns() {
  winsize size{};
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void print(const Lines& lines) {
  for (const std::string& line : lines) std::printf("%s\n", line.c_str());
}

class Editor {
 public:
  Editor(Session& session, const Talk& talk)
      : session_(session),
        talk_(talk),
        history_(history_init()),
        editor_(el_init("emp-window", stdin, stdout, stderr)),
        keys_(editor_.get(), talk.end) {
    HistEvent event;
    history(history_.get(), &event, H_SETSIZE, keptLines);
    history(history_.get(), &event, H_SETUNIQUE, 1);
    history(history_.get(), &event, H_LOAD, talk_.history.c_str());
    el_set(editor_.get(), EL_CLIENTDATA, this);
    el_set(editor_.get(), EL_PROMPT, prompt);
    el_set(editor_.get(), EL_EDITOR, "emacs");
    el_set(editor_.get(), EL_HIST, history, history_.get());
    el_wset(editor_.get(), EL_GETCFN, nextKey);
    // Use the wide function: the narrow one copies both texts and never frees them.
    el_wset(editor_.get(), EL_ADDFN, L"complete", L"completes the word before the cursor", complete);
    el_wset(editor_.get(), EL_ADDFN, L"end-or-delete", L"ends an empty line's input, or deletes a character",
            endOrDelete);
    el_source(editor_.get(), nullptr);  // the file may choose other key bindings, such as vi's
    el_set(editor_.get(), EL_BIND, "^I", "complete", nullptr);
    el_set(editor_.get(), EL_BIND, "^D", "end-or-delete", nullptr);
    clearLinesWithControlC();
  }
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  /// @return false at the end of the input.
  bool next(std::string& line) {
    int length = 0;
    const Keys::Tending tending;
    el_set(editor_.get(), EL_PREP_TERM, 1);  // before the prompt, so that no key typed right after it is lost
    const wchar_t* text = el_wgets(editor_.get(), &length);
    if (text == nullptr || length <= 0) return false;
    line = Keys::textOf({text, static_cast<std::size_t>(length)});
    if (line.ends_with('\n')) line.pop_back();
    return true;
  }

  void remember(const std::string& line) {
    HistEvent event;
    history(history_.get(), &event, H_ENTER, line.c_str());
    history(history_.get(), &event, H_SAVE, talk_.history.c_str());
  }

 private:
  static Editor& of(EditLine* editor) {
    Editor* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return *self;
  }

  static int nextKey(EditLine* editor, wchar_t* key) { return of(editor).keys_.next(*key); }

  /// Completes the word before the cursor. If several words match, lists them as a comment, so that everything on the
  /// terminal is valid in a transcript.
  static unsigned char complete(EditLine* editor, int) {
    const LineInfo* line = el_line(editor);
    const std::string_view typed(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
    Lines words;
    try {
      Editor& self = of(editor);
      self.talk_.onSet([&] { words = completions(self.session_, typed); });
    } catch (const std::exception&) {
      return CC_ERROR;  // the set can't be read; the next command says so
    }
    if (words.empty()) return CC_ERROR;
    const std::string rest = restOf(typed, words);
    if (!rest.empty()) return el_insertstr(editor, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
    std::string list;
    for (const std::string& word : words) list += (list.empty() ? "" : " ") + oneLine(asTyped(word));
    std::printf("\n");
    print(remark(list, columns()));
    return CC_REDISPLAY;
  }

  /// Unlike the editor's own command for the key, prints nothing that is invalid in a transcript.
  static unsigned char endOrDelete(EditLine* editor, int) {
    const LineInfoW* line = el_wline(editor);
    if (line->buffer == line->lastchar) return CC_EOF;
    if (line->cursor == line->lastchar) return CC_ERROR;
    el_cursor(editor, 1);
    el_deletestr(editor, 1);
    return CC_REFRESH;
  }

  /// Makes Control-C an ordinary key, both while a line is typed and while a line runs, so that it interrupts nothing.
  /// It prints nothing that is invalid in a transcript.
  void clearLinesWithControlC() {
    for (const char* mode : {"-d", "-x"}) {
      // The first call disables the interrupt key now. The second one keeps it disabled when the editor reads the
      // terminal settings again, as after a resume.
      el_set(editor_.get(), EL_SETTY, mode, "intr=", nullptr);
      el_set(editor_.get(), EL_SETTY, mode, "-intr", nullptr);
    }
    el_set(editor_.get(), EL_BIND, "^C", "ed-start-over", nullptr);
    el_set(editor_.get(), EL_BIND, "-a", "^C", "ed-start-over", nullptr);
  }

  Session& session_;
  const Talk& talk_;
  std::unique_ptr<History, EndHistory> history_;
  std::unique_ptr<EditLine, EndEditing> editor_;
  Keys keys_;
};

/// Runs a line, and prints its output and a hint about what the person may have meant.
void answer(Session& session, const std::string& line) {
  session.columns = columns();
  const Lines lines = session.run(line);
  print(lines);
  const std::string hint = hintOn(session, line, lines);
  if (!hint.empty()) std::printf("%s\n", hint.c_str());
  std::fflush(stdout);
}

}  // namespace

void talk(Session& session, const Talk& talk) {
  std::setlocale(LC_CTYPE, "");
  if (std::string_view(::nl_langinfo(CODESET)) != "UTF-8") std::setlocale(LC_CTYPE, "C.UTF-8");
  print(remark("emp-window: .help tells what to type, Tab completes, .quit or Ctrl-D ends", columns()));
  Editor editor(session, talk);
  for (std::string line; editor.next(line);) {
    if (const std::string flaw = flawOf(line); !flaw.empty()) {
      print({remarkOn(flaw, line)});
      continue;
    }
    if (isRemark(line)) continue;
    editor.remember(line);
    talk.onSet([&] {
      answer(session, line);
      talk.afterEach();
    });
    if (session.ended) return;
  }
  std::printf("\n");  // the prompt's line has no line break yet
}

}  // namespace virtualtv::program
