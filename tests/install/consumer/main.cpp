// SPDX-License-Identifier: MIT
// A program of another project: a set in memory with the plug-in on it, built on the installed files.
#include <EmpAppWindow.h>
#include <device/Device.h>
#include <set/Tv.h>
#include <shell/Session.h>

#include <iostream>

int main(int count, char** words) {
  kel::CEmpAppWindow plugin;
  virtualtv::Storage storage;
  virtualtv::device::Device device(plugin, storage);
  virtualtv::shell::Session session(device, ".");
  for (int at = 1; at < count; ++at) {
    for (const std::string& line : session.run(words[at])) std::cout << line << "\n";
  }
}
