# Cross build for 64-bit Windows with MinGW-w64 (posix threads: GoogleTest needs them).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(QV_MINGW_TRIPLE x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
# The 64-bit build is the one that runs here: tests go through Wine.
find_program(QV_WINE wine PATHS /usr/bin /usr/local/bin NO_CMAKE_FIND_ROOT_PATH)
if(QV_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${QV_WINE})
endif()
