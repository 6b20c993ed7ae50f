# What every target of this project has in common: C++20, hidden symbols, warnings
# as errors, bit-exact arithmetic, hardening, and the sanitizers or coverage asked for.

include(CheckPIESupported)
check_pie_supported()  # programs are then linked as they are compiled: at no fixed address

set(TQBINNING_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${TQBINNING_WARNINGS_AS_ERRORS}>:-Werror>
  $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>)

# What Debian builds its packages with: checked calls into the C library, guarded stacks,
# and linkage that is read-only once the program runs.  They cost the library nothing, and
# tqbin 2 of 100 instructions, where it reads numbers from files that anyone may have
# written.  Not for unoptimised builds, which cannot check, nor beside the sanitizers.
set(TQBINNING_HARDEN OFF)
if(NOT TQBINNING_SANITIZE AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  set(TQBINNING_HARDEN ON)
endif()
function(tq_harden target)
  target_compile_options(${target} PRIVATE -fstack-protector-strong -Wformat -Wformat-security)
  if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")  # whoever packages us may want more
    target_compile_definitions(${target} PRIVATE _FORTIFY_SOURCE=2)
  endif()
  target_link_options(${target} PRIVATE LINKER:-z,relro LINKER:-z,now)
endfunction()

function(tq_set_target_defaults target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  # No contraction of a * b + c: the same input gives the same doubles on every build.
  target_compile_options(${target} PRIVATE ${TQBINNING_WARNINGS} -ffp-contract=off)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(TQBINNING_HARDEN)
    tq_harden(${target})
  endif()
  if(TQBINNING_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${TQBINNING_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
    target_link_options(${target} PRIVATE -fsanitize=${TQBINNING_SANITIZE})
  endif()
  if(TQBINNING_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(TQBINNING_COVERAGE)
    # Atomic counters: tests run the library on several threads.
    target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path
                                             -fprofile-update=atomic)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# The same for a test program: its own code is compiled without optimisation and its
# framework once for all, which takes a quarter of the time; what it tests is compiled
# as ever.
function(tq_set_test_defaults target)
  tq_set_target_defaults(${target})
  target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE)
  target_precompile_headers(${target} REUSE_FROM test_framework)
endfunction()

# The tests of a program one by one; all in one process with a sanitizer, whose start
# takes longer than most tests.
function(tq_register_tests program)
  if(TQBINNING_SANITIZE)
    add_test(NAME ${program} COMMAND ${program})
  else()
    gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60)
  endif()
endfunction()

# Keeps the standard library's template instances out of a shared library's exports.
function(tq_export_only_our_own target)
  set(map ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(${target} PRIVATE LINKER:--version-script=${map})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()
