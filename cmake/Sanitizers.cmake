# CLIPQUILL_SANITIZE=ON builds everything, the studio, Emailer and the tests alike, with
# AddressSanitizer and UndefinedBehaviorSanitizer (scripts/test.sh --sanitize uses its own build
# folder). Every report ends the program: nothing is recovered from, so a test cannot pass over one.
option(CLIPQUILL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

if(CLIPQUILL_SANITIZE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "CLIPQUILL_SANITIZE needs clang (CMAKE_CXX_COMPILER=clang++-14); "
                            "this build uses ${CMAKE_CXX_COMPILER_ID}.")
    endif()
    set(cq_sanitize_flags -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_compile_options(${cq_sanitize_flags})
    add_link_options(${cq_sanitize_flags})
    # Programs that leave with _Exit skip the leak check that runs at exit; they ask for it first.
    add_compile_definitions(CQ_SANITIZE=1)
endif()
