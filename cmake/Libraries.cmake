# SPDX-License-Identifier: MIT
# The libraries of this machine that the programs need.
find_package(PkgConfig REQUIRED)
pkg_check_modules(jsoncpp REQUIRED IMPORTED_TARGET jsoncpp)
pkg_check_modules(sqlite3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(libedit REQUIRED IMPORTED_TARGET libedit)
find_package(CLI11 REQUIRED)
find_package(Boost 1.81 REQUIRED CONFIG)
