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
  dec,   ///< the decimal number at the front, behind white space and a sign; 0 for garbage, clamped to `int`
  num,   ///< the whole text as a decimal number with an optional sign; otherwise not parsed, and the preset applies
  u64,   ///< unsigned 64-bit at the front, behind white space and a sign, decimal, 0x hexadecimal or 0 octal; -1 is all
         ///< ones, and so is a number beyond the range; 0 for garbage
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
  /// Runs the row: calls the worker, answers, and returns the result code. A negative result code is answered as a
  /// number, unless stated otherwise at the handler.
  int (*run)(const Run& run);
  int preset = 0;    ///< default for the number that is answered, if the worker does not write it
  int refusal = -1;  ///< answer and result code when a required parameter does not parse
};

/// The row with this name; null when there is none. Of several rows with one name the first counts.
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
