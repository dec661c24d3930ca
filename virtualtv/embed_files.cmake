# SPDX-License-Identifier: MIT
# Writes SOURCE, a C++ file that holds FILES as virtualtv::embedded::NAME: paths below BASE, bytes, and the same by gzip.
function(add_array name file)
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(................................................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  set(arrays "${arrays}constexpr char ${name}[] = {\n${bytes}'\\0'};\n" PARENT_SCOPE)
endfunction()

set(arrays)
set(entries)
set(number 0)
foreach(file IN LISTS FILES)
  file(RELATIVE_PATH path ${BASE} ${file})
  file(ARCHIVE_CREATE OUTPUT ${SOURCE}.gz PATHS ${file} FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
  add_array(${NAME}Plain${number} ${file})
  add_array(${NAME}Gzip${number} ${SOURCE}.gz)
  string(APPEND entries
    "  Entry{\"${path}\", {${NAME}Plain${number}, sizeof ${NAME}Plain${number} - 1}, {${NAME}Gzip${number}, sizeof ${NAME}Gzip${number} - 1}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(REMOVE ${SOURCE}.gz)
file(WRITE ${SOURCE} "#include <array>
#include <span>
#include <string_view>
namespace virtualtv::embedded {
namespace {
using Entry = std::array<std::string_view, 3>;
${arrays}constexpr std::array ${NAME}Entries{
${entries}};
}
extern const std::span<const Entry> ${NAME};
const std::span<const Entry> ${NAME}{${NAME}Entries};
}
")
