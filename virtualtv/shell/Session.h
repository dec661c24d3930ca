// SPDX-License-Identifier: MIT
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

/// Thrown to end a session in the middle of an input.
struct Stopped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A conversation with the plug-in and the set: text in, text out. The interactive shell, piped input and transcripts
/// all speak through it.
class Session {
 public:
  /// A conversation with the user who runs the program. @param device  outlives this object. @param directory  the
  /// directory for relative file names in inputs.
  Session(device::Device& device, std::filesystem::path directory);
  /// A conversation with a client. @param name  distinguishes its engines from those of other clients. @param files the
  /// files that its inputs can use; outlives this object.
  Session(device::Device& device, std::string name, const FileAccess& files);

  /// Runs an input line, with or without `>` before it: `NAME p1..p4` calls the plug-in, `+ NAME p1...` calls it with a
  /// parameter list, `.NAME ...` controls the set. Only `Stopped` is thrown; other errors become a line `error: ...`.
  /// @return the output; no line of it can be read as an input, a comment or a blank line.
  Lines run(std::string_view input);

  /// Something that a transcript must not have: an unknown operation, or a fault that is never hit.
  struct Finding {
    std::size_t input = 0;  ///< the call of `run`, counted from 0, that names the operation or sets the fault
    std::string text;
  };
  /// What went wrong since the last call. The texts may hold any bytes.
  struct Remarks {
    Lines errors;  ///< the texts of `error:` lines
    std::vector<Finding> findings;
    Lines complaints;  ///< what the set could not read or persist
  };
  Remarks takeRemarks();
  /// Adds a finding for each fault that is still set and was never hit. Called at the end of a transcript.
  void noteIdleFaults();
  /// The same for the faults that `isMeant` selects.
  void noteIdleFaults(const std::function<bool(const seam::Fault&)>& isMeant);

  // For dot commands and for `exec`.

  device::Device& device() { return client_.device(); }
  device::Session& client() { return client_; }
  /// Describes a fault in the words of `.fault`, with this session's name for the engine.
  std::string describe(const seam::Fault& fault) const;
  /// Runs a plug-in command as `device::Session::execute` does. When there are too many parameters, and the command
  /// takes a list, the error says how to pass one.
  bool execute(const std::vector<std::string>& words, bool list, std::string& ret);
  /// The last command that this session has run, as an input or for a client's call, in the form in which it is typed.
  /// Empty when none has run yet, or when the device no longer holds it.
  const std::string& lastCommand();
  const device::Deed& lastDeed();
  bool trace = false;       ///< print the calls of each step
  int logLevel = -1;        ///< print the log messages of each step up to this level
  std::size_t columns = 0;  ///< width of the terminal in characters, for wrapping help; 0 without a terminal
  bool ended = false;       ///< `.quit` was run; further inputs are errors
  /// Called before each input, including inputs of files that inputs run. A `Stopped` that it throws leaves `run`.
  std::function<void()> beforeEach{};
  /// Notes an error of an input that also prints something else. @return the error line to print.
  std::string errorLine(const std::string& reason);
  /// Runs the input lines of a transcript file. @return their output.
  Lines source(const std::string& file);
  /// The path to open for a file that an input names. @throws std::invalid_argument for an empty name.
  std::filesystem::path resolve(const std::string& file) const;
  /// Writes a file that an input names. @throws std::runtime_error `cannot write FILE: REASON`.
  void save(const std::string& file, std::string_view content) const;
  /// Reads a file that an input names. @throws std::runtime_error `cannot read FILE: REASON`, with the name as in the
  /// input, so that a transcript prints the same from every directory.
  std::string read(const std::string& file) const;
  /// The channel list of a file or directory that an input names.
  NamedList readList(const std::string& file) const;
  /// The paths of the recordings that an input names. A pipe has no path.
  RecordingFiles recordings(const std::vector<std::string>& files) const;
  /// Reads a file of any length, block by block.
  void readBlocks(const std::string& file, const TakeBlock& take) const;
  /// Notes a finding of the input that runs.
  void note(std::string finding);
  /// Marks the transcript as recorded by a server: no findings are noted for it. Has no effect after the first input.
  void setRecorded() { isRecorded_ = isRecorded_ || input() == 0; }
  /// Number of the current input, counted from 0. Inputs of files have the number of the input that runs the file.
  std::size_t input() const { return inputs_ - 1; }
  /// Resets to the built-in set and to the start of a session: no application, the first engine in use, no tracing, no
  /// history.
  void reset();

 private:
  Lines runLine(std::string_view input);
  Lines runStep(std::string_view input);
  Lines runCommand(std::string_view input, bool list);
  void recallLast();
  Lines observe(std::string_view input, const std::function<Lines()>& step, bool remember);

  device::Session client_;
  const FileAccess& files_;
  std::vector<std::filesystem::path> directories_;  ///< directories of the running files, innermost last
  std::size_t inputs_ = 0;                          ///< number of calls of `run`
  device::Deed lastDeed_;
  std::string lastCommand_;
  std::uint64_t lastNumber_ = 0;  ///< number of that command
  Remarks remarks_;
  bool isRecorded_ = false;
};

}  // namespace virtualtv::shell
