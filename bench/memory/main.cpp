// SPDX-License-Identifier: MIT
// Measures the memory for the document of a full channel list: allocations per service, bytes per service held when
// writing begins, and the peak of the whole command.
#include <json/value.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "framework/Reply.h"
#include "seam/Seam.h"
#include "support/Television.h"
#include "support/Tree.h"

namespace {

struct Memory {
  std::int64_t allocations = 0;
  std::int64_t live = 0;  ///< allocated bytes, including the allocator's rounding
  std::int64_t most = 0;
};

Memory memory;
bool counting = false;
bool inSet = false;             ///< during a call to the set, whose allocations do not count
bool inWriter = false;          ///< during the JSON library's writing, whose allocations do not count
std::int64_t mostAtWriter = 0;  ///< most bytes held when writing began

void grown(void* block) {
  if (block == nullptr) return;
  memory.live += static_cast<std::int64_t>(::malloc_usable_size(block));
  if (memory.live > memory.most) memory.most = memory.live;
  if (counting && !inSet && !inWriter) ++memory.allocations;
}

void shrunk(void* block) {
  if (block != nullptr) memory.live -= static_cast<std::int64_t>(::malloc_usable_size(block));
}

}  // namespace

// The names are the C library's. NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t __size) {
  void* const block = __libc_malloc(__size);
  grown(block);
  return block;
}

void* calloc(std::size_t __nmemb, std::size_t __size) {
  void* const block = __libc_calloc(__nmemb, __size);
  grown(block);
  return block;
}

void* realloc(void* __ptr, std::size_t __size) {
  shrunk(__ptr);
  void* const moved = __libc_realloc(__ptr, __size);
  grown(moved);
  return moved;
}

void free(void* __ptr) {
  shrunk(__ptr);
  __libc_free(__ptr);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

// The names for the linker's wrap option: calls of the writer go to the second function, and the first is the library's
// own.
std::string write(void* writer, const Json::Value& root) asm("__real__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE");
std::string countedWrite(void* writer,
                         const Json::Value& root) asm("__wrap__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE");

std::string countedWrite(void* writer, const Json::Value& root) {
  mostAtWriter = std::max(mostAtWriter, memory.live);
  inWriter = true;
  std::string text = write(writer, root);
  inWriter = false;
  return text;
}

namespace {

constexpr std::size_t services = 100'000;
constexpr const char* command = "GetFullChannelList";

/// Runs the command. @return the document.
std::string answered(bench::Television& television) {
  const auto reply = virtualtv::framework::decode(television.execute(command));
  if (!reply || reply->kind != virtualtv::framework::Reply::Kind::ascii) throw std::runtime_error("there is no list");
  return reply->text;
}

void figure(const char* name, double value) {
  std::cout << "figure: " << name << " = " << std::fixed << value << '\n';
}

void measure() {
  bench::Television television(services);
  const std::string text = answered(television);
  const std::int64_t beforeTree = memory.live;
  std::int64_t smallest = 0;
  {
    const Json::Value tree = bench::channelTree(text);
    smallest = memory.live - beforeTree;
  }
  television.forgetReply();

  const std::int64_t before = memory.live;
  memory.most = before;
  mostAtWriter = before;
  television.execute(command);
  const std::int64_t most = memory.most;
  const std::int64_t heldAtWriter = mostAtWriter;

  // Run it once before, since the seam allocates memory to report a call.
  virtualtv::seam::Seam::instance().onPassage([](const auto* begun) { inSet = begun != nullptr; });
  counting = true;
  television.execute(command);
  counting = false;
  virtualtv::seam::Seam::instance().onPassage({});
  const auto each = static_cast<double>(services);
  figure("allocations a service", static_cast<double>(memory.allocations) / each);
  figure("live bytes a service", static_cast<double>(heldAtWriter - before) / each);
  figure("live bytes a service in the smallest tree", static_cast<double>(smallest) / each);
  figure("bytes of text a service", static_cast<double>(text.size()) / each);
  figure("peak bytes a service", static_cast<double>(most - before) / each);
}

}  // namespace

int main() {
  try {
    measure();
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_memory: " << exception.what() << '\n';
    return 1;
  }
}
