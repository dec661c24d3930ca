// What the document of a full channel list takes: allocations and live bytes a service, and the most that the whole
// command holds.
#include <json/json.h>
#include <malloc.h>

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
  std::int64_t live = 0;  ///< bytes that are held, as the allocator rounds them
  std::int64_t most = 0;
};

Memory memory;
bool counting = false;
bool inSet = false;  ///< a call to the set is under way, whose allocations are the set's
Memory atWriter;     ///< when the document's writer was last called

void grown(void* block) {
  if (block == nullptr) return;
  memory.live += static_cast<std::int64_t>(::malloc_usable_size(block));
  if (memory.live > memory.most) memory.most = memory.live;
  if (counting && !inSet) ++memory.allocations;
}

void shrunk(void* block) {
  if (block != nullptr) memory.live -= static_cast<std::int64_t>(::malloc_usable_size(block));
}

}  // namespace

// The names are the C library's and the linker's. NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
  void* const block = __libc_malloc(size);
  grown(block);
  return block;
}

void* calloc(std::size_t count, std::size_t size) {
  void* const block = __libc_calloc(count, size);
  grown(block);
  return block;
}

void* realloc(void* block, std::size_t size) {
  shrunk(block);
  void* const moved = __libc_realloc(block, size);
  grown(moved);
  return moved;
}

void free(void* block) {
  shrunk(block);
  __libc_free(block);
}

Json::String __real__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE(Json::StyledWriter* writer, const Json::Value& root);
Json::String __wrap__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE(Json::StyledWriter* writer, const Json::Value& root);

Json::String __wrap__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE(Json::StyledWriter* writer,
                                                                     const Json::Value& root) {
  atWriter = memory;
  return __real__ZN4Json12StyledWriter5writeB5cxx11ERKNS_5ValueE(writer, root);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

constexpr std::size_t services = 100'000;
constexpr const char* command = "GetFullChannelList";

/// The document, which the command is asked for.
std::string answered(bench::Television& television) {
  const auto reply = virtualtv::framework::decode(television.execute(command));
  if (!reply || reply->kind != virtualtv::framework::Reply::Kind::ascii) throw std::runtime_error("there is no list");
  return reply->text;
}

void figure(const char* name, double value) {
  std::cout << "figure: " << name << " = " << value << '\n';
}

void measure() {
  bench::Television& television = bench::Television::with(services);
  const std::string text = answered(television);
  const std::int64_t beforeTree = memory.live;
  std::int64_t smallest = 0;
  {
    const Json::Value tree = bench::channelTree(text);
    smallest = memory.live - beforeTree;
  }
  television.forgetReply();

  virtualtv::seam::Seam::instance().onPassage([](const auto* begun) { inSet = begun != nullptr; });
  const Memory before = memory;
  memory.most = memory.live;
  counting = true;
  television.execute(command);
  counting = false;
  const std::int64_t tree = atWriter.live - before.live;
  const auto each = static_cast<double>(services);
  figure("allocations a service", static_cast<double>(atWriter.allocations - before.allocations) / each);
  figure("live bytes a service", static_cast<double>(tree) / each);
  figure("live bytes a service in the smallest tree", static_cast<double>(smallest) / each);
  figure("bytes of text a service", static_cast<double>(text.size()) / each);
  figure("peak bytes a service", static_cast<double>(memory.most - before.live) / each);
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
