#include "shell/CommandLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "catalogue/Catalogue.h"
#include "framework/Reply.h"
#include "shell/Arguments.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "shell/ImportWishes.h"
#include "shell/Nearest.h"
#include "shell/Reason.h"
#include "shell/Session.h"
#include "shell/Show.h"
#include "shell/Terminal.h"
#include "shell/Transcript.h"
#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

/// What the arguments say.
struct Wishes {
  std::string state;
  int logLevel = -1;
  bool raw = false;
  std::vector<std::string> command;  ///< of `exec`, with its parameters
  bool marked = false;               ///< a `--` stands before the command
  CheckOptions check;
  ImportWishes list;
};

void complain(const std::string& what) {
  std::cerr << "emp-window: " << oneLine(what) << "\n";
}

/// Puts the null device in place of standard streams that whoever started the program has closed; a file that is
/// opened later would take their place, be run as input and be written into. It reads as empty and can't be written.
void openStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest descriptor that is free is the one that is missing.
    if (::open("/dev/null", O_RDONLY) != stream) throw std::system_error(errno, std::generic_category(), "/dev/null");
  }
}

fs::path stateDirectory(const Wishes& wishes) {
  if (!wishes.state.empty()) return wishes.state;
  const char* xdg = std::getenv("XDG_STATE_HOME");
  if (xdg != nullptr && *xdg == '/') return fs::path(xdg) / "emp-window";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return fs::path(home) / ".local/state/emp-window";
  throw std::runtime_error("there is no place for the set's state: give --state DIR, or set XDG_STATE_HOME or HOME");
}

/// The set with its state directory, and a session on it.
class Desk {
 public:
  Desk(kel::CEmpAppBase& app, const Wishes& wishes)
      : directory_(stateDirectory(wishes)),
        storage_(directory_),
        device_(app, storage_),
        session_(device_, fs::current_path()) {
    if (wishes.logLevel < 0) return;
    log_ = framework::listenToLog(wishes.logLevel, [](const framework::LogLine& line) {
      std::cerr << "log " << line.level << " " << oneLine(line.message.text()) << "\n";
    });
  }

  const fs::path& directory() const { return directory_; }
  Session& session() { return session_; }

  /// Says on standard error that input could not be used.
  void sayThat(const std::string& error) {
    complain(error);
    status_ = unusable;
  }
  /// Says there what went wrong. @param where  stands before each error, may be empty.
  void sayWhatWentWrong(const std::string& where) {
    const Session::Remarks remarks = session_.takeRemarks();
    for (const std::string& error : remarks.errors) sayThat(where + error);
    for (const std::string& complaint : remarks.complaints) sayThat(complaint);
  }
  /// The same for a person who has read the errors.
  void sayComplaints() {
    for (const std::string& complaint : session_.takeRemarks().complaints) sayThat(complaint);
  }

  ExitStatus status(ExitStatus whenWell = allWell) const { return status_ == allWell ? whenWell : status_; }

 private:
  fs::path directory_;
  Storage storage_;
  device::Device device_;
  Session session_;
  notify::Subscription log_;
  ExitStatus status_ = allWell;
};

/// Runs a line that came through a pipe and prints it with what it prints, as in a transcript.
void runPiped(Desk& desk, const std::string& where, const std::string& line) {
  if (const std::string flaw = flawOf(line); !flaw.empty()) {
    std::cout << remarkOn(flaw, line) << "\n";
    return desk.sayThat(where + ": " + flaw);
  }
  if (isRemark(line)) {
    std::cout << line << "\n";
    return;
  }
  std::cout << (isInput(line) ? "" : line.starts_with('+') ? ">" : "> ") << line << "\n";
  for (const std::string& printed : desk.session().run(line)) std::cout << printed << "\n";
  std::cout.flush();
  desk.sayWhatWentWrong(where + ": ");
}

/// Runs the lines that come through a pipe.
void runPipe(Desk& desk) {
  constexpr std::size_t mostKept = longestLine + text::byteOrderMark.size();
  std::string line;
  for (int number = 1; !desk.session().ended; ++number) {
    const std::string where = "standard input:" + std::to_string(number);
    if (!readLine(stdin, where, mostKept, line)) return;
    if (number == 1) line.erase(0, line.size() - text::withoutMark(line).size());
    while (line.ends_with('\r')) line.pop_back();
    runPiped(desk, where, line);
  }
}

ExitStatus runShell(kel::CEmpAppBase& app, const Wishes& wishes) {
  Desk desk(app, wishes);
  if (::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0) {
    talk(desk.session(), desk.directory() / "history", [&] { desk.sayComplaints(); });
  } else {
    runPipe(desk);
  }
  return desk.status();
}

/// Prints the value of a reply alone; of a refusal, which has none, it says so where values are not expected.
void printBare(const Wishes& wishes, bool accepted, const std::string& ret) {
  if (!accepted) return complain("the plug-in refused '" + wishes.command.front() + "'");
  const std::optional<framework::Reply> reply = framework::decode(ret);
  if (!reply) return;
  const std::string bare = framework::bare(*reply);
  std::cout << bare << (bare.ends_with('\n') ? "" : "\n");
}

/// Says of words that look like options of the program that they are parameters all the same, unless a `--` tells that
/// they are meant to be.
void noteOptionsAmongParameters(const Wishes& wishes) {
  if (wishes.marked) return;
  for (std::size_t at = 1; at < wishes.command.size(); ++at) {
    const std::string option = wishes.command[at].substr(0, wishes.command[at].find('='));
    for (const char* known : {"--state", "--log", "--raw", "--help"}) {
      if (option != known) continue;
      complain("exec: " + option + " behind " + wishes.command[0] + " is a parameter of it; options stand before it");
    }
  }
}

ExitStatus runExec(kel::CEmpAppBase& app, const Wishes& wishes) {
  noteOptionsAmongParameters(wishes);
  Desk desk(app, wishes);
  std::string ret;
  const bool accepted = desk.session().execute(wishes.command, false, ret);
  if (wishes.raw) {
    printBare(wishes, accepted, ret);
  } else {
    std::cout << framework::showAnswer(accepted, ret) << "\n";
  }
  desk.sayWhatWentWrong("");
  return desk.status(accepted ? allWell : failed);
}

ExitStatus runCheck(kel::CEmpAppBase& app, const Wishes& wishes) {
  return check(app, wishes.check, std::cout, std::cerr) ? allWell : failed;
}

ExitStatus runImport(kel::CEmpAppBase& app, const Wishes& wishes) {
  const bool piped = wishes.list.file == "-";
  const std::string name = piped ? "standard input" : wishes.list.file;
  const std::string content = piped ? readStream(stdin, name) : readFile(name);
  Desk desk(app, wishes);
  const ImportReport report = importServices(desk.session().device().tv(), name, content, wishes.list.options);
  for (const std::string& problem : report.problemLines()) std::cerr << problem << "\n";
  std::cout << report.summary() << "\n";
  const std::string error = report.error();
  if (!error.empty()) complain(error);
  desk.sayWhatWentWrong("");
  return desk.status(error.empty() ? allWell : failed);
}

[[noreturn]] void refuseArguments(const std::string& reason) {
  throw CLI::ValidationError(reason);
}

/// The first word from there on that is neither an option nor the value of one that a set takes.
std::size_t behindOptions(const std::vector<std::string>& arguments, std::size_t from) {
  while (from < arguments.size() && arguments[from].starts_with('-') && arguments[from] != "--") {
    const bool takesValue = arguments[from] == "--state" || arguments[from] == "--log";
    from += takesValue ? 2U : 1U;
  }
  return std::min(from, arguments.size());
}

constexpr const char* execNotes =
    R"(NAME and up to four ARGS are the plug-in's, whatever they look like; options stand
before NAME.

The exit status is 0 when the plug-in accepted the command, whatever it answered,
1 when it refused it, and 2 when the command could not be run. --raw prints the
reply's value alone, and of a refusal nothing but an error on standard error.

The set keeps its state from one exec to the next, but an engine lives for one
command: the channels that it found and the window that it selected are gone
after it. Several commands on one engine come through a pipe:
  printf 'FindChannel 0 1\nGetChannel_Name 0\n' | emp-window
or stand in a transcript, for 'emp-window check', which starts on a fresh set.)";

/// The arguments' grammar.
struct Grammar {
  Grammar(Wishes& wished, const kel::CEmpAppBase& app)
      : wishes(wished), program("A TV set in software with the " + app.Name() + " plug-in on it", "emp-window") {
    program.set_version_flag("--version", "emp-window, plug-in " + app.Name() + " " + app.Id() + " " + app.Version());
    program.require_subcommand(0, 1);

    shell = program.add_subcommand("shell", "talk to the plug-in and the set; the default");
    exec = program.add_subcommand("exec", "run one plug-in command: exec [--raw] [--] NAME ARGS...");
    exec->add_flag("--raw", wishes.raw, "print the bare reply");
    exec->footer(execNotes);
    exec->allow_extras();  // to say of an unknown option whose it is
    check = program.add_subcommand("check", "run transcripts on a fresh set in memory and compare");
    check->add_option("FILE", wishes.check.files, "transcripts")->required();
    check->add_flag("--update", wishes.check.update, "write what was printed into the transcripts");
    check->add_option("--junit", wishes.check.junit, "write a JUnit report")->type_name("FILE");
    import = program.add_subcommand("import", "replace the set's services by those of a channel list");
    addImportOptions(*import, wishes.list);
    for (CLI::App* part : {&program, shell, exec, check, import}) addSetOptions(*part);
  }

  /// Reads the arguments into the wishes.
  /// @throws CLI::ParseError for what can't be understood, and for `--help` and `--version`.
  void parse(std::vector<std::string> arguments) {
    const std::size_t subcommand = behindOptions(arguments, 0);
    if (subcommand < arguments.size()) wantSubcommand(arguments[subcommand]);
    if (subcommand < arguments.size() && arguments[subcommand] == "exec") takeCommand(arguments, subcommand + 1);
    keepEmptyValues(arguments);
    std::reverse(arguments.begin(), arguments.end());  // as the parser wants them
    program.parse(arguments);
    for (const CLI::App* parsed : program.get_subcommands()) wantSetOptionsOnce(*parsed);
    if (exec->parsed()) wantCommand();
    if (check->parsed() && !wishes.state.empty()) {
      refuseArguments("check runs in memory, --state has no meaning for it");
    }
  }

  Wishes& wishes;
  CLI::App program;
  CLI::App* shell = nullptr;
  CLI::App* exec = nullptr;
  CLI::App* check = nullptr;
  CLI::App* import = nullptr;

 private:
  /// Options that may stand before the subcommand or behind it.
  void addSetOptions(CLI::App& part) {
    CLI::Option* state = part.add_option("--state", wishes.state, "where the set keeps its state")->type_name("DIR");
    const auto refusalOfState = [](const std::string& value) {
      return refusalOf([&] { refuseEmpty(value, "a directory"); });
    };
    state->check(CLI::Validator(refusalOfState, ""));
    CLI::Option* log =
        part.add_option("--log", wishes.logLevel, "print the plug-in's log messages up to a level on standard error");
    const auto refusalOfLevel = [](const std::string& value) {
      return refusalOf([&] { text::requireNumber<int>(value, logLevels); });
    };
    log->type_name("LEVEL")->check(CLI::Validator(refusalOfLevel, ""));
    if (&part != check) return;
    state->group("");  // not in its help
    log->group("");
  }

  void wantSetOptionsOnce(const CLI::App& subcommand) const {
    for (const char* name : {"--state", "--log"}) {
      if (program.count(name) > 0 && subcommand.count(name) > 0) refuseArguments(std::string(name) + " stands twice");
    }
  }

  void wantSubcommand(const std::string& word) const {
    Lines names;
    for (const CLI::App* part : {shell, exec, check, import}) names.push_back(part->get_name());
    if (std::find(names.begin(), names.end(), word) != names.end()) return;
    std::string meant = "there are shell, exec, check and import";
    if (const Lines near = nearest(word, names); near.size() == 1) {
      meant = "did you mean 'emp-window " + near[0] + "'?";
    } else if (const Lines command = nearest(word, commandNames()); command.size() == 1) {
      meant = "did you mean 'emp-window exec " + command[0] + "'?";
    }
    refuseArguments("there is no subcommand '" + word + "'; " + meant);
  }

  /// Takes the plug-in's command out of the arguments of `exec`, which start there: all from its name on belongs to it,
  /// whatever it looks like, and so does all behind a `--`.
  void takeCommand(std::vector<std::string>& arguments, std::size_t from) {
    const auto end = arguments.begin() + static_cast<std::ptrdiff_t>(behindOptions(arguments, from));
    wishes.marked = end != arguments.end() && *end == "--";
    wishes.command.assign(wishes.marked ? std::next(end) : end, arguments.end());
    arguments.erase(end, arguments.end());
  }

  void wantCommand() const {
    const std::vector<std::string> words = exec->remaining();
    if (!words.empty()) refuseArguments("exec: there is no option " + words.front());
    if (wishes.command.empty()) refuseArguments("exec: the name of a command is wanted");
  }
};

/// What the wishes come to, for messages.
std::string doing(const Grammar& grammar, const Wishes& wishes) {
  if (grammar.exec->parsed()) return "run " + wishes.command.front();
  if (grammar.check->parsed()) return "check";
  if (grammar.import->parsed()) return "import " + wishes.list.file;
  return "run the shell";
}

ExitStatus runWishes(kel::CEmpAppBase& app, const Grammar& grammar, const Wishes& wishes) {
  if (grammar.exec->parsed()) return runExec(app, wishes);
  if (grammar.check->parsed()) return runCheck(app, wishes);
  if (grammar.import->parsed()) return runImport(app, wishes);
  return runShell(app, wishes);
}

ExitStatus run(int argc, char** argv, kel::CEmpAppBase& app) {
  openStandardStreams();
  Wishes wishes;
  Grammar grammar(wishes, app);
  try {
    grammar.parse(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return static_cast<ExitStatus>(grammar.program.exit(error));  // --help, --version
    complain(std::string(error.what()) + " ('emp-window --help' says more)");
    return unusable;
  }
  try {
    return runWishes(app, grammar, wishes);
  } catch (...) {
    complain(reasonOf(std::current_exception(), doing(grammar, wishes)));
    return unusable;
  }
}

}  // namespace

ExitStatus runCommandLine(int argc, char** argv, kel::CEmpAppBase& app) {
  ExitStatus status = unusable;
  try {
    status = run(argc, argv, app);
  } catch (...) {
    complain(reasonOf(std::current_exception(), "start"));
  }
  if (!std::cout.flush()) {
    complain("cannot write to standard output");
    status = unusable;
  }
  return status;
}

}  // namespace virtualtv::shell
