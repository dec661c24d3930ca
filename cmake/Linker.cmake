# SPDX-License-Identifier: MIT
# Links with lld where there is one: it takes a third of the time of the default linker, and tests link many programs.
find_program(LLD ld.lld)
mark_as_advanced(LLD)
if(LLD)
  add_link_options(-fuse-ld=lld)
endif()
# Each test program holds the whole set. Debuggers and sanitizers need line tables, which can be compressed, and no
# names of what only one source knows: this halves what a build takes of the disk.
add_link_options($<$<CONFIG:Debug>:LINKER:--compress-debug-sections=zlib,--discard-all,-O2>)
