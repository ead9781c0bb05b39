# Compiler and linker flags that every target shares.
option(RETOUCH_SANITIZE "Build with the address and undefined-behaviour sanitizers (native only)" OFF)

add_library(retouch_flags INTERFACE)
target_compile_options(retouch_flags INTERFACE
  -Wall -Wextra
  -ffp-contract=off          # both builds must give the same bytes
  -fno-strict-aliasing       # packed bitmaps are read through header and byte pointers
)
if(WIN32)
  target_compile_definitions(retouch_flags INTERFACE
    WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX STRICT)
  target_compile_options(retouch_flags INTERFACE -fstack-protector-strong)
  target_link_options(retouch_flags INTERFACE -fstack-protector-strong)  # brings libssp
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
    # SSE2 arithmetic, never x87: truncations must not depend on excess precision. A host may call
    # with a stack that is aligned to 4 bytes only.
    target_compile_options(retouch_flags INTERFACE -msse2 -mfpmath=sse -mstackrealign)
  else()
    target_link_options(retouch_flags INTERFACE -Wl,--high-entropy-va)
  endif()
  # -static keeps the compiler's runtime and libwinpthread out of the import table.
  target_link_options(retouch_flags INTERFACE
    -static -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp)
endif()
if(RETOUCH_SANITIZE)
  target_compile_options(retouch_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(retouch_flags INTERFACE -fsanitize=address,undefined)
endif()

# The product's own code: nothing is thrown across a module border, no type information is used.
add_library(retouch_product_flags INTERFACE)
target_link_libraries(retouch_product_flags INTERFACE retouch_flags)
target_compile_options(retouch_product_flags INTERFACE -fno-exceptions -fno-rtti)

# Test programs: compiled soon rather than run fast, since most of the time from nothing to the last test is
# compilation of tests. Link it behind all others, so that these options come last. What the sanitizers watch is the
# product's own code, which keeps all checks, also over the memory that tests hand to it: that still has guards around it.
add_library(retouch_test_flags INTERFACE)
target_compile_options(retouch_test_flags INTERFACE -O1)
if(RETOUCH_SANITIZE)
  target_compile_options(retouch_test_flags INTERFACE
    -g1  # lines are all that a report needs
    -fno-sanitize=undefined
    $<$<CXX_COMPILER_ID:GNU>:--param=asan-instrument-reads=0>
    $<$<CXX_COMPILER_ID:GNU>:--param=asan-instrument-writes=0>)
endif()
