// SPDX-License-Identifier: MIT
#include "EmpAppWindow.h"

#include <exception>

#include "EmpEngineWindow.h"

namespace kel {

CEmpAppWindow::CEmpAppWindow() {
  m_name = "Window";
  m_id = "0001";
  m_version = "1.003";
}

CEmpAppWindow::~CEmpAppWindow() = default;

CEmpEngineBase* CEmpAppWindow::CreateEmpEngine() {
  try {
    return new CEmpEngineWindow;
  } catch (const std::exception&) {
    return nullptr;  // out of memory: null reports it to the framework
  }
}

}  // namespace kel
