// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "EmpEngineWindow.h"
#include "EmpTaskWindow.h"

// The command table: the structure of a row. The rows are in Commands.cpp. Used by the engine, and by the tools that
// write the catalogue of commands. The only command with a parameter list has no row; the engine handles it separately.

namespace kel {

/// How a text parameter is read.
enum class Parse {
  none,  ///< the command has no such parameter
  dec,   ///< the decimal number at the start, after optional white space and an optional sign; clamped to `int`; 0 when
         ///< there is no number
  num,   ///< the whole text as a decimal number with an optional sign; otherwise not parsed, and the preset applies
  u64,   ///< the unsigned 64-bit number at the start, after optional white space and sign: decimal, 0x hexadecimal or 0
         ///< octal; all bits set for -1 and for a number out of range; 0 when there is no number
  text,  ///< the text unchanged
};

struct Parameter {
  Parse parse = Parse::none;
  int preset = 0;         ///< default for `num`
  bool required = false;  ///< for `num`: a text that does not parse is refused as the row says
};

inline constexpr std::size_t kParameters = 4;

/// The parameters of a call, read as its row says.
struct Arguments {
  std::array<int, kParameters> number{};   ///< for `dec` and `num`
  std::array<bool, kParameters> parsed{};  ///< for `num`
  std::array<bool, kParameters> given{};   ///< the text is not empty
  unsigned long long id = 0;               ///< for `u64`
  const std::string* text = nullptr;       ///< for `text`
};

struct Command;

/// A command being run.
struct Run {
  const Command& command;
  CEmpTaskWindow& worker;
  const Arguments& in;
  CEmpEngineWindow::Reply& reply;
};

struct Command {
  std::string_view name;
  std::array<Parameter, kParameters> parameters;
  /// Runs the row: calls the worker, writes the reply, and returns the result code. The reply for a negative result
  /// code is that number, unless the handler states otherwise.
  int (*run)(const Run& run);
  int preset = 0;    ///< the number in the reply, if the worker does not write it
  int refusal = -1;  ///< reply and result code when a required parameter does not parse
};

/// The row with this name; null when there is none. If several rows have the name, the first one counts.
const Command* FindCommand(std::string_view name);

/// All rows, in comparison order.
const Command* CommandTable(std::size_t& count);

/// See `CEmpEngineWindow`.
class CEmpEngineWindow::Reply {
 public:
  Reply(CEmpEngineWindow& engine, std::string& ret) : m_engine(engine), m_ret(ret) {}

  void Integer(int value) { m_engine.SetReturnValueInteger(m_ret, value); }
  void Ascii(const char* text) { m_engine.SetReturnValueASCII(m_ret, text); }
  void Ascii(std::string& text) { m_engine.SetReturnValueASCII(m_ret, text); }
  void Unicode(unsigned short* text) { m_engine.SetReturnValueUNICODE(m_ret, text); }

 private:
  CEmpEngineWindow& m_engine;
  std::string& m_ret;
};

}  // namespace kel
