#include "shell/CommandLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/Reply.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "shell/ImportFile.h"
#include "shell/Session.h"
#include "shell/Terminal.h"
#include "shell/Transcript.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

/// What the arguments say.
struct Wishes {
  std::string state;
  int logLevel = -1;
  bool raw = false;
  std::vector<std::string> command;  ///< of `exec`, with its parameters
  CheckOptions check;
  std::string listFile;
  std::string format;
  bool add = false;
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
      : directory_(stateDirectory(wishes)), storage_(directory_), session_(app, storage_, fs::current_path()) {
    session_.rig().tellLog(wishes.logLevel, [](const framework::LogLine& line) {
      std::cerr << "log " << line.level << " " << oneLine(line.text) << "\n";
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
  Session session_;
  ExitStatus status_ = allWell;
};

/// Runs lines that come through a pipe and prints them with what they print, as a transcript.
void runPiped(Desk& desk) {
  int number = 0;
  for (std::string line; std::getline(std::cin, line);) {
    const std::string where = "standard input:" + std::to_string(++number) + ": ";
    while (line.ends_with('\r')) line.pop_back();
    if (!isText(line)) {
      std::cout << "# " << noText << ": " << oneLine(line) << "\n";
      desk.sayThat(where + noText);
      continue;
    }
    if (isRemark(line)) {
      std::cout << line << "\n";
      continue;
    }
    std::cout << (isInput(line) ? "" : line.starts_with('+') ? ">" : "> ") << line << "\n";
    for (const std::string& printed : desk.session().run(line)) std::cout << printed << "\n";
    std::cout.flush();
    desk.sayWhatWentWrong(where);
  }
}

ExitStatus runShell(kel::CEmpAppBase& app, const Wishes& wishes) {
  Desk desk(app, wishes);
  if (::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0) {
    talk(desk.session(), desk.directory() / "history", [&] { desk.sayComplaints(); });
  } else {
    runPiped(desk);
  }
  return desk.status();
}

void printReply(bool accepted, const std::string& ret, bool raw) {
  if (!raw) {
    std::cout << framework::showAnswer(accepted, ret) << "\n";
    return;
  }
  const std::optional<framework::Reply> reply = framework::decode(ret);
  if (!reply) return;
  const std::string bare = framework::bare(*reply);
  std::cout << bare << (bare.ends_with('\n') ? "" : "\n");
}

ExitStatus runExec(kel::CEmpAppBase& app, const Wishes& wishes) {
  Desk desk(app, wishes);
  std::string ret;
  const bool accepted = desk.session().rig().execute(wishes.command, false, ret);
  printReply(accepted, ret, wishes.raw);
  desk.sayWhatWentWrong("");
  return desk.status(accepted ? allWell : failed);
}

ExitStatus runCheck(kel::CEmpAppBase& app, const Wishes& wishes) {
  return check(app, wishes.check, std::cout, std::cerr) ? allWell : failed;
}

std::string standardInput() {
  std::ostringstream content;
  content << std::cin.rdbuf();
  return content.str();
}

ExitStatus runImport(kel::CEmpAppBase& app, const Wishes& wishes) {
  const bool piped = wishes.listFile == "-";
  const std::string name = piped ? "standard input" : wishes.listFile;
  const std::string content = piped ? standardInput() : readFile(name);
  ImportOptions options{std::nullopt, wishes.add};
  if (!wishes.format.empty()) options.format = import::formatNamed(wishes.format);
  Desk desk(app, wishes);
  const ImportReport report = importServices(desk.session().rig().tv(), name, content, options);
  for (const std::string& problem : report.problems) std::cerr << problem << "\n";
  std::cout << report.summary << "\n";
  if (!report.error.empty()) complain(report.error);
  desk.sayWhatWentWrong("");
  return desk.status(report.error.empty() ? allWell : failed);
}

[[noreturn]] void refuseArguments(const std::string& reason) {
  throw CLI::ValidationError(reason);
}

/// Takes the command that stands behind a `--` out of the arguments of `exec`: all that follows belongs to it, whatever
/// it looks like. Left there, the parser would end `exec` at the `--`.
/// @param arguments  the last one first.
std::vector<std::string> takeMarkedCommand(std::vector<std::string>& arguments) {
  const auto mark = std::find_if(arguments.rbegin(), arguments.rend(),
                                 [](const std::string& word) { return word == "--" || !word.starts_with('-'); });
  if (mark == arguments.rend() || *mark != "--") return {};
  std::vector<std::string> command(std::next(mark), arguments.rend());
  arguments.erase(arguments.begin(), mark.base());
  return command;
}

/// The arguments' grammar.
struct Grammar {
  Grammar(Wishes& wished, const kel::CEmpAppBase& app)
      : wishes(wished), program("A TV set in software with the " + app.Name() + " plug-in on it", "emp-window") {
    program.set_version_flag("--version", "emp-window, plug-in " + app.Name() + " " + app.Id() + " " + app.Version());
    program.add_option("--state", wishes.state, "where the set keeps its state")->type_name("DIR");
    program.add_option("--log", wishes.logLevel, "print the plug-in's log messages up to a level on standard error")
        ->type_name("LEVEL");
    program.require_subcommand(0, 1);

    shell = program.add_subcommand("shell", "talk to the plug-in and the set; the default");
    exec = program.add_subcommand("exec", "run one plug-in command: exec [--raw] [--] NAME ARGS...");
    exec->add_flag("--raw", wishes.raw, "print the bare reply");
    exec->prefix_command();
    check = program.add_subcommand("check", "run transcripts on a fresh set in memory and compare");
    check->add_option("FILE", wishes.check.files, "transcripts")->required();
    check->add_flag("--update", wishes.check.update, "write what was printed into the transcripts");
    check->add_option("--junit", wishes.check.junit, "write a JUnit report")->type_name("FILE");
    import = program.add_subcommand("import", "replace the set's services by those of a channel list");
    import->add_option("FILE", wishes.listFile, "the list, - for standard input")->required();
    import->add_option("--format", wishes.format, "its format; recognised if left out")
        ->check(CLI::IsMember({"vdr", "dvbv5"}));
    import->add_flag("--add", wishes.add, "keep the services that are there");
  }

  /// Reads the arguments into the wishes. @param arguments  the last one first; they are used up.
  /// @throws CLI::ParseError for what can't be understood, and for `--help` and `--version`.
  void parse(std::vector<std::string>& arguments) {
    exec->preparse_callback([&](std::size_t) { wishes.command = takeMarkedCommand(arguments); });
    program.parse(arguments);
    if (exec->parsed()) readCommand();
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
  void readCommand() {
    const std::vector<std::string> words = exec->remaining();
    if (!words.empty() && words.front().starts_with('-')) refuseArguments("exec: there is no option " + words.front());
    if (!words.empty()) wishes.command = words;
    if (wishes.command.empty()) refuseArguments("exec: the name of a command is wanted");
  }
};

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
  std::vector<std::string> arguments(std::make_reverse_iterator(argv + argc), std::make_reverse_iterator(argv + 1));
  try {
    grammar.parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return static_cast<ExitStatus>(grammar.program.exit(error));  // --help, --version
    complain(std::string(error.what()) + " ('emp-window --help' says more)");
    return unusable;
  }
  return runWishes(app, grammar, wishes);
}

}  // namespace

ExitStatus runCommandLine(int argc, char** argv, kel::CEmpAppBase& app) {
  ExitStatus status = unusable;
  try {
    status = run(argc, argv, app);
  } catch (const std::exception& exception) {
    complain(exception.what());
  } catch (...) {
    complain("an exception of an unknown kind");
  }
  if (!std::cout.flush()) {
    complain("cannot write to standard output");
    status = unusable;
  }
  return status;
}

}  // namespace virtualtv::shell
