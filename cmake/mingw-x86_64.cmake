# MinGW-w64 for x86_64 Windows. The posix thread model: with the win32 one, std::mutex is missing
# and GoogleTest does not build.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Header-only libraries (CLI11, nlohmann-json, stb) serve the cross-build from the host's /usr/include;
# the targets that use them add their folders one by one, so the host's C library never gets in.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
