// SPDX-License-Identifier: MIT
#include "program/CommandLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "framework/Reply.h"
#include "program/Arguments.h"
#include "program/Demo.h"
#include "program/Desk.h"
#include "program/Progress.h"
#include "program/Serve.h"
#include "program/Terminal.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "shell/Reason.h"
#include "shell/Scan.h"
#include "shell/Session.h"
#include "shell/Show.h"
#include "shell/Transcript.h"
#include "text/Units.h"

namespace virtualtv::program {

using namespace shell;

namespace {

/// Opens the null device for standard streams that the parent process has closed. Otherwise a file opened later would
/// get that descriptor, and would be run as input or written to. The null device is opened in the wrong direction, so
/// that a closed stream still can't be read or written.
void openStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    // `open` returns the lowest free descriptor, which is the missing one.
    const int wrongWay = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (::open("/dev/null", wrongWay) != stream) throw std::system_error(errno, std::generic_category(), "/dev/null");
  }
}

/// Runs a line from a pipe, and prints the line and its output as in a transcript.
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

/// Runs the lines from a pipe.
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
    talk(desk.session(), {.history = desk.history(), .afterEach = [&] { desk.sayComplaints(); }});
  } else {
    runPipe(desk);
  }
  return desk.status();
}

/// Prints the value of a reply alone. When the command was refused, prints an error instead.
void printBare(const Wishes& wishes, bool accepted, const std::string& ret) {
  if (!accepted) return complain("the plug-in refused '" + wishes.command.front() + "'");
  const std::optional<framework::Reply> reply = framework::decode(ret);
  if (!reply) return;
  const std::string bare = framework::bare(*reply);
  std::cout << bare << (bare.ends_with('\n') ? "" : "\n");
}

/// Warns that words which look like options of the program are passed as parameters, unless a `--` marks them as such.
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
  const char* const stream = "standard input";
  const NamedList list =
      piped ? NamedList{stream, readStream(stdin, stream)} : readList(allFiles(), wishes.list.file, wishes.list.file);
  Desk desk(app, wishes);
  const ImportReport report =
      importServices(desk.session().device().tv(), list.name, list.content, wishes.list.options);
  for (const std::string& problem : report.problemLines()) std::cerr << problem << "\n";
  std::cout << report.summary() << "\n";
  const std::string error = report.error();
  if (!error.empty()) complain(error);
  desk.sayWhatWentWrong("");
  return desk.status(error.empty() ? allWell : failed);
}

ExitStatus runExport(kel::CEmpAppBase& app, const Wishes& wishes) {
  Desk desk(app, wishes);
  const ExportReport report = exportServices(desk.session().device().tv().services(), *wishes.exported.format);
  if (report.error().empty()) std::cout << report.exported.content;
  if (!report.losses().empty()) complain(report.losses());
  if (!report.error().empty()) complain(report.error());
  desk.sayWhatWentWrong("");
  return desk.status(report.error().empty() ? allWell : failed);
}

/// The size of a file in bytes; 0 when it is not a regular file or can't be examined.
std::uint64_t sizeOf(const std::string& file) {
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(file, unknown);
  return unknown ? 0 : size;
}

broadcast::Scan scanAll(const std::vector<std::string>& files) {
  Progress progress;
  return scanFiles(files, [&](const std::string& file, const TakeBlock& take) {
    const bool piped = file == "-";
    const auto takeAndTell = [&](std::span<const std::uint8_t> block) {
      take(block);
      progress.advance(block.size());
    };
    progress.start(piped ? "standard input" : file, piped ? 0 : sizeOf(file));
    if (piped) return readBlocks(stdin, "standard input", takeAndTell);
    readFileInBlocks(file, file, takeAndTell);
  });
}

/// Prints the result of the scan. If that is a document, everything else goes to standard error.
ExitStatus runScan(kel::CEmpAppBase& app, const Wishes& wishes) {
  const ScanWishes& scan = wishes.scan;
  const broadcast::Scan found = scanAll(scan.files);
  for (const std::string& problem : scanProblems(found, scan.files)) std::cerr << problem << "\n";
  for (const std::string& line : scan.json ? scanLines(found, scan) : scanTable(found)) std::cout << line << "\n";
  if (found.services.empty()) {
    complain(noServiceIn(scan.files));
    return failed;
  }
  if (!scan.import) return allWell;
  Desk desk(app, wishes);
  const ImportReport report = desk.device().import(scan.files, found, scan.add, desk.session().recordings(scan.files));
  (scan.json ? std::cerr : std::cout) << report.summary() << "\n";
  desk.sayWhatWentWrong("");
  return desk.status();
}

ExitStatus runDemo(kel::CEmpAppBase& app, const Wishes& wishes) {
  Wishes served = wishes;
  served.serve.recordings.push_back(demoRecording());
  return runServer(app, served);
}

/// Describes what was requested, for messages.
std::string doing(const Wishes& wishes) {
  switch (wishes.task) {
    case Task::exec:
      return "run " + wishes.command.front();
    case Task::check:
      return "check";
    case Task::import:
      return "import " + wishes.list.file;
    case Task::exportList:
      return "export the services";
    case Task::scan:
      return "scan " + wishes.scan.files.front();
    case Task::serve:
    case Task::demo:
      return "serve";
    case Task::shell:
      break;
  }
  return "run the shell";
}

ExitStatus runWishes(kel::CEmpAppBase& app, const Wishes& wishes) {
  switch (wishes.task) {
    case Task::exec:
      return runExec(app, wishes);
    case Task::check:
      return runCheck(app, wishes);
    case Task::import:
      return runImport(app, wishes);
    case Task::exportList:
      return runExport(app, wishes);
    case Task::scan:
      return runScan(app, wishes);
    case Task::serve:
      return runServer(app, wishes);
    case Task::demo:
      return runDemo(app, wishes);
    case Task::shell:
      break;
  }
  return runShell(app, wishes);
}

ExitStatus run(int argc, char** argv, kel::CEmpAppBase& app) {
  openStandardStreams();
  std::optional<Wishes> wishes;
  try {
    wishes = readArguments(std::vector<std::string>(argv + std::min(argc, 1), argv + argc), app);
  } catch (const std::invalid_argument& error) {
    complain(std::string(error.what()) + " ('emp-window --help' says more)");
    return unusable;
  }
  if (!wishes) return allWell;
  try {
    return runWishes(app, *wishes);
  } catch (...) {
    complain(reasonOf(std::current_exception(), doing(*wishes)));
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

}  // namespace virtualtv::program
