# Counters of the lines and branches that run, by clang's own instrumentation; the preset "coverage" turns them on. They
# lie in a mapped file, which needs their place to be found at run time: a process that ends through _Exit, or is killed,
# and a fork of a test program are counted like any other.
option(CAMERA_COVERAGE "Count the lines and branches that run; takes clang" OFF)
if(CAMERA_COVERAGE)
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
    add_link_options(-fprofile-instr-generate)
endif()
