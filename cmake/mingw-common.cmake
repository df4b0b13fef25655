# Settings shared by both MinGW toolchains.
set(CMAKE_C_COMPILER ${QV_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QV_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${QV_MINGW_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${QV_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# One .exe with no DLLs beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
