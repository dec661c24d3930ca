# Links with lld where there is one: it takes a third of the time of the default linker, and tests link many programs.
find_program(LLD ld.lld)
mark_as_advanced(LLD)
if(LLD)
  add_link_options(-fuse-ld=lld)
endif()
