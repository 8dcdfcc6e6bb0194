include_guard(GLOBAL)
# The header-only libraries come from the host's packages, also for the cross-builds. /usr/include
# itself must not be searched there: it holds the host's C library. So each library is reached
# through a link of its own in the build folder.
set(headers ${CMAKE_BINARY_DIR}/host-headers)
file(MAKE_DIRECTORY ${headers})
foreach(library CLI nlohmann stb)
    if(NOT IS_DIRECTORY /usr/include/${library})
        message(FATAL_ERROR "/usr/include/${library} is missing: scripts/setup installs it")
    endif()
    file(CREATE_LINK /usr/include/${library} ${headers}/${library} SYMBOLIC)
endforeach()

# <CLI/CLI.hpp>, <nlohmann/json.hpp>, <stb/stb_image_write.h>
add_library(facetor_host_headers INTERFACE)
target_include_directories(facetor_host_headers SYSTEM INTERFACE ${headers})
