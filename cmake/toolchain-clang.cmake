# Native clang, for the libFuzzer targets.
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
