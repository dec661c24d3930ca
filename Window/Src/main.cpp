// SPDX-License-Identifier: MIT
// Process entry of the plug-in.
#include "EmpAppWindow.h"
#include "kel/EmpMain.h"

int main(int argc, char** argv) {
  kel::EmpMain(argc, argv, new kel::CEmpAppWindow);
  return 0;
}
