# Writes SOURCE, a C++ file that holds the bytes of FILES, with their paths below BASE, as virtualtv::embedded::NAME.
set(arrays)
set(entries)
set(number 0)
foreach(file IN LISTS FILES)
  file(RELATIVE_PATH path ${BASE} ${file})
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(................................................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(APPEND arrays "constexpr char bytes${number}[] = {\n${bytes}'\\0'};\n")
  string(APPEND entries "  Entry{\"${path}\", {bytes${number}, sizeof bytes${number} - 1}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${SOURCE} "#include <array>
#include <span>
#include <string_view>
#include <utility>
namespace virtualtv::embedded {
namespace {
using Entry = std::pair<std::string_view, std::string_view>;
${arrays}constexpr std::array entries{
${entries}};
}
extern const std::span<const Entry> ${NAME};
const std::span<const Entry> ${NAME}{entries};
}
")
