# Fuzzing of every parser of bytes that come from outside the studio (the fuzz/ folder).
# With CLIPQUILL_FUZZ=ON, in a build folder of its own configured with clang (scripts/fuzz.sh),
# everything is compiled for libFuzzer with the address and undefined-behaviour sanitizers, and
# only the harnesses are built (target cq_fuzz). In the normal build every harness is also a
# plain program that replays its corpus and its regressions as a test, so a fixed fault stays
# fixed.
option(CLIPQUILL_FUZZ "Build the libFuzzer harnesses of fuzz/ (clang only; see scripts/fuzz.sh)" OFF)

if(CLIPQUILL_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "CLIPQUILL_FUZZ=ON needs clang: configure with "
                            "-DCMAKE_CXX_COMPILER=clang++-14 in a build folder of its own.")
    endif()
    # A sanitizer's finding ends the run at once, so that libFuzzer keeps the input.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
endif()

add_subdirectory(fuzz)
