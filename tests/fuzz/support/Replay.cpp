// SPDX-License-Identifier: MIT
// Runs a fuzz target once on each given file, like the fuzzer's own main, but without the fuzzer.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(path)) files.push_back(entry.path());
  return files;
}

void run(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  std::cerr << file.string() << std::endl;  // after a crash, the last name is the file that caused it
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::size_t count = 0;
    for (int at = 1; at < argc; ++at) {
      for (const fs::path& file : filesIn(argv[at])) {
        run(file);
        ++count;
      }
    }
    std::cout << count << " inputs\n";
    return count > 0 ? 0 : 1;
  } catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
  }
}
