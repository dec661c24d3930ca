#include "Report.h"

#include <exception>
#include <fstream>
#include <stdexcept>

#include "EmpAppWindow.h"
#include "shell/Check.h"

namespace simulation {

namespace {

using comparison::Script;

std::optional<comparison::Difference> differenceAgain(Simulation& simulation, const Script& script) {
  try {
    return simulation.differenceIn(script);
  } catch (const std::exception&) {
    return std::nullopt;  // it ends in an exception, which no transcript can expect
  }
}

std::string inputsOf(const Script& script) {
  std::string inputs;
  for (const std::string& line : script) inputs += "> " + line + "\n";
  return inputs;
}

}  // namespace

Report reportOf(Simulation& simulation, const Failure& failure) {
  const std::string what = "seed " + std::to_string(failure.seed) + ": " + failure.what;
  const auto fails = [&](const Script& script) { return differenceAgain(simulation, script).has_value(); };
  if (!fails(failure.script)) {
    return {what + "it is not seen again when the script is run alone, which is:\n" + inputsOf(failure.script), ""};
  }
  const auto difference = simulation.differenceIn(comparison::shrunk(failure.script, fails)).value();
  return {what + "by the model this holds:\n" + difference.expectation + difference.details, difference.expectation};
}

std::string tryOut(const std::string& transcript, const std::filesystem::path& file) {
  std::ofstream stream(file);
  stream << transcript << std::flush;
  if (!stream) throw std::runtime_error("cannot write " + file.string());
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
