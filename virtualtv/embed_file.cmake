# SPDX-License-Identifier: MIT
# Writes SOURCE, a C++ file that holds the bytes of FILE as virtualtv::embedded::NAME.
file(READ ${FILE} bytes HEX)
string(REGEX REPLACE "(................................................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
file(WRITE ${SOURCE} "#include <string_view>
namespace virtualtv::embedded {
namespace {
constexpr char ${NAME}Bytes[] = {
${bytes}'\\0'};
}
extern const std::string_view ${NAME};
const std::string_view ${NAME}{${NAME}Bytes, sizeof ${NAME}Bytes - 1};
}
")
