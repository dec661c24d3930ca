// SPDX-License-Identifier: MIT
#include "Report.h"

#include <exception>
#include <fstream>
#include <stdexcept>

#include "EmpAppWindow.h"
#include "shell/Check.h"

namespace simulation {

namespace {

using comparison::Script;

/// The outcome of a script that runs alone.
struct Course {
  std::optional<comparison::Difference> difference;
  std::optional<std::string> exception;  ///< the exception that ends it; a transcript can't expect one
};

Course courseOf(Simulation& simulation, const Script& script) {
  try {
    return {simulation.differenceIn(script), std::nullopt};
  } catch (const std::exception& exception) {
    return {std::nullopt, exception.what()};
  }
}

std::string inputsOf(const Script& script) {
  std::string inputs;
  for (const std::string& line : script) inputs += "> " + line + "\n";
  return inputs;
}

void write(const std::string& text, const std::filesystem::path& file) {
  std::ofstream stream(file);
  stream << text << std::flush;
  if (!stream) throw std::runtime_error("cannot write " + file.string());
}

}  // namespace

void leaveBehind(std::uint64_t seed, const Script& script, const std::filesystem::path& file) {
  write("# seed " + std::to_string(seed) + ", not yet at its end\n" + inputsOf(script), file);
}

void keepScript(std::uint64_t seed, const Script& script, const std::filesystem::path& directory) {
  write(inputsOf(script), directory / (std::to_string(seed) + ".txt"));
}

Report reportOf(Simulation& simulation, const Failure& failure) {
  const std::string what = "seed " + std::to_string(failure.seed) + ": " + failure.what;
  const Course course = courseOf(simulation, failure.script);
  if (!course.difference && !course.exception) {
    return {what + "it is not seen again when the script is run alone, which is:\n" + inputsOf(failure.script), "", ""};
  }
  // The shortened script must still fail in the same way.
  const Script script = comparison::shrunk(failure.script, [&](const Script& part) {
    const Course shorter = courseOf(simulation, part);
    return course.exception ? shorter.exception.has_value() : shorter.difference.has_value();
  });
  const Course shortest = courseOf(simulation, script);
  if (shortest.exception) {
    const std::string inputs = inputsOf(script);
    return {what + "this ends in an exception, " + *shortest.exception + ":\n" + inputs, "", inputs};
  }
  const comparison::Difference& difference = shortest.difference.value();
  return {what + "by the model this holds:\n" + difference.expectation + difference.details, difference.expectation,
          ""};
}

std::string keep(const Report& report, const std::filesystem::path& file) {
  if (!report.transcript.empty()) return tryOut(report.transcript, file);
  if (report.inputs.empty()) return "";
  write(report.inputs, file);
  return file.string() + " has that\n";
}

std::string tryOut(const std::string& transcript, const std::filesystem::path& file) {
  write(transcript, file);
  kel::CEmpAppWindow app;
  const auto checked = virtualtv::shell::checkTranscript(app, file.string(), false);
  if (!checked.error.empty()) return file.string() + " has that, but can't be checked: " + checked.error + "\n";
  if (checked.passed()) {
    return file.string() +
           " has that, but passes under 'emp-window check': nothing that a transcript asks for tells it\n";
  }
  return file.string() + " has that, and fails under 'emp-window check':\n" + checked.diff;
}

}  // namespace simulation
