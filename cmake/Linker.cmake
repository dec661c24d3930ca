# SPDX-License-Identifier: MIT
# Links with lld if it is installed: it takes a third of the default linker's time, and the tests link many programs.
find_program(LLD ld.lld)
mark_as_advanced(LLD)
if(LLD)
  add_link_options(-fuse-ld=lld)
endif()
# Each test program contains the whole set. Debuggers and sanitizers need line tables, which can be compressed, but no
# names of local symbols. This halves the size of a build.
add_link_options($<$<CONFIG:Debug>:LINKER:--compress-debug-sections=zlib,--discard-all,-O2>)
