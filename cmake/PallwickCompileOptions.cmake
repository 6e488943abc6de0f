# Options that every target of the project is built with, as one interface target.

add_library(pallwick-compile-options INTERFACE)
target_compile_features(pallwick-compile-options INTERFACE cxx_std_20)
target_include_directories(pallwick-compile-options INTERFACE ${PROJECT_SOURCE_DIR})

target_compile_options(pallwick-compile-options INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
    -Wnull-dereference -Wimplicit-fallthrough -Wextra-semi
    # Designated initializers leave the rest to the members' own defaults; that is what they are for.
    -Wno-missing-field-initializers
    # At -O3, GCC 12 sees overlapping copies in std::string's own concatenation (GCC bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>
    # The same bytes wherever the tree lies.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)

if(PALLWICK_SANITIZE)
    target_compile_options(pallwick-compile-options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(pallwick-compile-options INTERFACE -fsanitize=address,undefined)
else()
    target_compile_options(pallwick-compile-options INTERFACE
        -fstack-protector-strong -fstack-clash-protection
        $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>
        -D_GLIBCXX_ASSERTIONS)
    target_link_options(pallwick-compile-options INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
endif()

if(PALLWICK_COVERAGE)
    target_compile_options(pallwick-compile-options INTERFACE --coverage)
    target_link_options(pallwick-compile-options INTERFACE --coverage)
endif()

if(PALLWICK_BUILD_FUZZERS)
    # Clang knows other warnings than GCC, which decides what an error is.
    target_compile_options(pallwick-compile-options INTERFACE -Wno-error -fsanitize=fuzzer-no-link)
endif()
