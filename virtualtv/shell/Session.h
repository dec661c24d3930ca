#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "channels/ImportList.h"
#include "device/Session.h"
#include "shell/FileAccess.h"
#include "shell/Lines.h"
#include "shell/ListFile.h"

namespace virtualtv::shell {

/// Ends a session in the middle of an input.
struct Stopped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A conversation with the plug-in and the set: text in, text out. The interactive shell, piped input and transcripts
/// all speak through it.
class Session {
 public:
  /// A conversation of the one who runs the program.
  /// @param device  outlives it.
  /// @param directory  files that inputs name are relative to it.
  Session(device::Device& device, std::filesystem::path directory);
  /// One of a client.
  /// @param name  tells its engines from those of others.
  /// @param files  what its inputs reach of files; outlives it.
  Session(device::Device& device, std::string name, const FileAccess& files);

  /// Runs an input line, with or without `>` before it: `NAME p1..p4` calls the plug-in, `+ NAME p1...` calls it with a
  /// parameter list, `.NAME ...` speaks to the set. Nothing but `Stopped` escapes: what goes wrong is a line
  /// `error: ...`.
  /// @return what it prints; none of the lines could be taken for an input, a comment or a blank line.
  Lines run(std::string_view input);

  /// What a transcript must not have: an unknown operation, a fault never hit.
  struct Finding {
    std::size_t input = 0;  ///< the call of `run`, counted from 0, that names the operation or sets the fault
    std::string text;
  };
  /// What went wrong since this was last called. The texts may hold any bytes.
  struct Remarks {
    Lines errors;  ///< what `error:` lines tell
    std::vector<Finding> findings;
    Lines complaints;  ///< what the set could not read or keep
  };
  Remarks takeRemarks();
  /// Notes the faults that are still set and were never hit, as at the end of a transcript.
  void noteIdleFaults();
  /// The same for some of them.
  void noteIdleFaults(const std::function<bool(const seam::Fault&)>& isMeant);

  // For the commands that speak to the set, and for `exec`.

  device::Device& device() { return client_.device(); }
  device::Session& client() { return client_; }
  /// A fault in the words of `.fault`, with the engine as this session calls it.
  std::string describe(const seam::Fault& fault) const;
  /// Runs a plug-in command as `device::Session::execute` does. The error on too many parameters says how they are
  /// passed where the command takes a list of them.
  bool execute(const std::vector<std::string>& words, bool list, std::string& ret);
  /// The last command that ran, however it came, as it is typed, and what it did; empty where none has run yet, and
  /// where the device holds it no more.
  const std::string& lastCommand();
  const device::Deed& lastDeed();
  bool trace = false;       ///< print the calls of each step
  int logLevel = -1;        ///< print the log messages of each step up to this level
  std::size_t columns = 0;  ///< width of the terminal, in characters, that help is fitted to; 0 where there is none
  bool ended = false;       ///< `.quit` was run; inputs behind it are errors
  /// Called before each input, those of files that inputs run too. When it throws `Stopped`, that leaves `run`.
  std::function<void()> beforeEach{};
  /// Notes that an input went wrong, for one that has more to print than that. @return the line that says so.
  std::string errorLine(const std::string& reason);
  /// Runs the input lines of a transcript file. @return what they print.
  Lines source(const std::string& file);
  /// A file that an input names, as it can be opened. @throws std::invalid_argument for an empty name.
  std::filesystem::path resolve(const std::string& file) const;
  /// Writes a file that an input names. @throws std::runtime_error `cannot write FILE: REASON`.
  void save(const std::string& file, std::string_view content) const;
  /// All of a file that an input names. @throws std::runtime_error `cannot read FILE: REASON`, the file named as there:
  /// wherever a transcript is checked from, it prints the same.
  std::string read(const std::string& file) const;
  /// The channel list of a file or directory that an input names.
  NamedList readList(const std::string& file) const;
  /// Where recordings are that an input names. What comes through a pipe is nowhere.
  RecordingFiles recordings(const std::vector<std::string>& files) const;
  /// Takes it block by block, whatever its length.
  void readBlocks(const std::string& file, const TakeBlock& take) const;
  /// Notes a finding of the input that runs.
  void note(std::string finding);
  /// The first input says that the transcript was recorded: there are no findings then. Does nothing behind that.
  void setRecorded() { isRecorded_ = isRecorded_ || input() == 0; }
  /// Number of the input that runs, counted from 0; inputs of files have that of the input that runs the file.
  std::size_t input() const { return inputs_ - 1; }
  /// Back to the built-in set, and to the start of a session: no application, the first engine in use, nothing traced,
  /// nothing remembered.
  void reset();

 private:
  Lines runLine(std::string_view input);
  Lines runStep(std::string_view input);
  Lines runCommand(std::string_view input, bool list);
  void recallLast();
  Lines watch(std::string_view input, const std::function<Lines()>& step, bool remember);

  device::Session client_;
  const FileAccess& files_;
  std::vector<std::filesystem::path> directories_;  ///< of the files being run, innermost last
  std::size_t inputs_ = 0;                          ///< that were given to `run`
  device::Deed lastDeed_;
  std::string lastCommand_;
  std::uint64_t lastNumber_ = 0;  ///< of that one, as the client has it
  Remarks remarks_;
  bool isRecorded_ = false;
};

}  // namespace virtualtv::shell
