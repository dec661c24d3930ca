// SPDX-License-Identifier: MIT
// The command engine: dispatch by the command table. Calls the framework's parsing, logging and result encoding, and
// nothing of the TV service.
#include "EmpEngineWindow.h"

#include <pthread.h>

#include <climits>
#include <cstdlib>
#include <exception>

#include "Ask.h"
#include "Commands.h"
#include "kel/ParamList.h"
#include "kel/StringToNumber.h"

namespace kel {

namespace {

constexpr const char* kEngineFile = "Window/Src/EmpEngineWindow";

int Decimal(const std::string& text) {
  const long number = std::strtol(text.c_str(), nullptr, 10);
  if (number > INT_MAX) return INT_MAX;
  if (number < INT_MIN) return INT_MIN;
  return static_cast<int>(number);
}

/// Reads the parameters as the row says. Returns false when a required parameter does not parse.
bool ReadArguments(const Command& command, const std::array<const std::string*, kParameters>& texts, Arguments& in) {
  bool complete = true;
  for (std::size_t at = 0; at < kParameters; ++at) {
    const Parameter& parameter = command.parameters[at];
    const std::string& text = *texts[at];
    in.given[at] = !text.empty();
    switch (parameter.parse) {  // not covered: there is no other way to parse
      case Parse::none:
        break;
      case Parse::dec:
        in.number[at] = Decimal(text);
        break;
      case Parse::num:
        in.number[at] = parameter.preset;
        in.parsed[at] = StringToNumber(text, in.number[at]);
        complete = complete && (in.parsed[at] || !parameter.required);
        break;
      case Parse::u64:
        in.id = std::strtoull(text.c_str(), nullptr, 0);
        break;
      case Parse::text:
        in.text = &text;
        break;
    }
  }
  return complete;
}

int RunCommand(const Command& command, CEmpTaskWindow& worker, const std::array<const std::string*, kParameters>& texts,
               CEmpEngineWindow::Reply& reply) {
  Arguments in;
  if (!ReadArguments(command, texts, in)) {
    reply.Integer(command.refusal);
    return command.refusal;
  }
  return command.run({command, worker, in, reply});
}

/// Reads a rectangle from four parameters. Returns false at the first one that does not parse.
bool ReadRect(const ParamList& params, std::size_t first, CEmpTaskWindow::Rect& rect) {
  return StringToNumber(params.At(first), rect.x) && StringToNumber(params.At(first + 1), rect.y) &&
         StringToNumber(params.At(first + 2), rect.width) && StringToNumber(params.At(first + 3), rect.height);
}

/// Crops as the list says: crop rectangle, display rectangle, plane. A list that does not parse gets no reply.
/// @return the result code.
int CropScreen(CEmpTaskWindow* worker, const ParamList& params, CEmpEngineWindow::Reply& reply) {
  constexpr int notRun = 1;
  constexpr int noWorker = -1;
  CEmpTaskWindow::Rect crop{};
  CEmpTaskWindow::Rect display{};
  if (!ReadRect(params, 0, crop) || !ReadRect(params, 4, display)) return notRun;
  int plane = 0;
  StringToNumber(params.At(8), plane);
  const int result = worker == nullptr ? noWorker : worker->SetScreenCropRect(&crop, &display, plane);
  reply.Integer(result);
  return result;
}

/// Runs the body of an entry. An exception that no operation has caught is logged, answered with -1 and finished.
template <typename Finish, typename Body>
bool Guarded(CEmpEngineWindow::Reply& reply, Finish finish, Body body) {
  constexpr int failed = -1;
  try {
    return body();
  } catch (const std::exception& exception) {
    LogException(exception.what());
  } catch (...) {
    LogException(kUnknownException);
  }
  reply.Integer(failed);
  return finish(failed);
}

}  // namespace

CEmpEngineWindow::CEmpEngineWindow() : m_pEmpTaskWindow(nullptr) {
  const LogScope scope(__func__);
  KEL_LOG(kRoutine, "[CEmpEngineWindow::CEmpEngineWindow][%p] begin.", static_cast<void*>(this));
  KEL_LOG_PLACE(kEngineFile, kRoutine);
  constexpr CEmpTaskWindow* none = nullptr;
  m_pEmpTaskWindow = Try(none, [] { return new CEmpTaskWindow; });
  const bool created =
      m_pEmpTaskWindow != nullptr && Try(false, [this] { return m_pEmpTaskWindow->Create("CEmpTaskWindow", this); });
  if (!created) KEL_LOG_ERROR(kEngineFile, kMissingWorker);
  KEL_LOG(kRoutine, "[CEmpEngineWindow::CEmpEngineWindow][%p] end.", static_cast<void*>(this));
}

CEmpEngineWindow::~CEmpEngineWindow() {
  const LogScope scope(__func__);
  KEL_LOG(kRoutine, "[CEmpEngineWindow::~CEmpEngineWindow][%p] begin.", static_cast<void*>(this));
  KEL_LOG_PLACE(kEngineFile, kRoutine);
  if (m_pEmpTaskWindow != nullptr) {
    if (m_pEmpTaskWindow->FlagCreate()) m_pEmpTaskWindow->Destroy();
    delete m_pEmpTaskWindow;
    m_pEmpTaskWindow = nullptr;
  }
  KEL_LOG(kRoutine, "[CEmpEngineWindow::~CEmpEngineWindow][%p] end.", static_cast<void*>(this));
}

bool CEmpEngineWindow::Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
                               const std::string& p3, const std::string& p4) {
  const LogScope scope(__func__);
  Reply reply(*this, ret);
  const auto finish = [&](int result) {
    KEL_LOG(kRoutine, "CEmpEngineWindow::Execute Command[%s] Finish result[%d].", cmd.c_str(), result);
    return true;
  };
  return Guarded(reply, finish, [&] {
    KEL_LOG(kRoutine, "[CEmpEngineWindow::%s][%p] [%s][%s][%s][%s][%s],pid = %lu", LogScope::Name(),
            static_cast<void*>(this), cmd.c_str(), p1.c_str(), p2.c_str(), p3.c_str(), p4.c_str(),
            static_cast<unsigned long>(pthread_self()));
    if (m_pEmpTaskWindow == nullptr) {
      KEL_LOG(kMissingWorker, "[CEmpEngineWindow::%s][%p] [%s][%s][%s][%s][%s] but m_pEmpTaskWindow is NULL!!",
              LogScope::Name(), static_cast<void*>(this), cmd.c_str(), p1.c_str(), p2.c_str(), p3.c_str(), p4.c_str());
      KEL_LOG_ERROR(kEngineFile, kMissingWorker);
      return false;
    }
    const Command* const command = FindCommand(cmd);
    if (command == nullptr) {
      KEL_LOG(kRoutine, "CEmpEngineWindow::Execute Command[%s] is NOT supported. return false", cmd.c_str());
      return false;
    }
    return finish(RunCommand(*command, *m_pEmpTaskWindow, {&p1, &p2, &p3, &p4}, reply));
  });
}

bool CEmpEngineWindow::ExecuteWithParamList(std::string& ret, const std::string& cmd, const ParamList& params) {
  const LogScope scope(__func__);
  Reply reply(*this, ret);
  const auto finish = [&](int result) {
    KEL_LOG(kRoutine, "CEmpEngineWindow::ExecuteWithParamList Command[%s] Finish result[%d].", cmd.c_str(), result);
    return true;
  };
  return Guarded(reply, finish, [&] {
    KEL_LOG(kRoutine, "CEmpEngineWindow::ExecuteWithParamList[%s]\n", cmd.c_str());
    if (cmd.empty()) {
      KEL_LOG(kRoutine, "Command length is <= 0.\n");
      return false;
    }
    if (cmd == "SetScreenCropRect") return finish(CropScreen(m_pEmpTaskWindow, params, reply));
    reply.Integer(-1);
    KEL_LOG(kRoutine, "CEmpEngineWindow::ExecuteWithParamList Command[%s] is NOT supported. return false", cmd.c_str());
    return false;
  });
}

}  // namespace kel
