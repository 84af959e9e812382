# Warnings, sanitizers and the compiler cache, for every target of this project.

option(WEB2PDF_WARNINGS_AS_ERRORS "Treat warnings of GCC 12 as errors" OFF)
set(WEB2PDF_SANITIZE "" CACHE STRING "Sanitizers to build with, separated by commas (address,undefined or thread)")
option(WEB2PDF_COVERAGE "Record line coverage" OFF)

add_library(web2pdf_options INTERFACE)
target_include_directories(web2pdf_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(web2pdf_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Woverloaded-virtual
    -Wformat=2 -Wundef
    # GCC 12 finds overlaps in every std::string that is put together (its bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
# GCC 12 is Debian 12's, with which .ci/run builds. A later one knows other warnings, and they must not keep anybody from
# building.
if(WEB2PDF_WARNINGS_AS_ERRORS AND CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION MATCHES "^12\\.")
    target_compile_options(web2pdf_options INTERFACE -Werror)
endif()

# What every program has to be linked with, because the libraries are compiled with it.
set(WEB2PDF_INSTRUMENTATION "")
if(WEB2PDF_SANITIZE)
    list(APPEND WEB2PDF_INSTRUMENTATION -fsanitize=${WEB2PDF_SANITIZE})
    target_compile_options(web2pdf_options INTERFACE -fno-omit-frame-pointer -fno-sanitize-recover=all)
endif()
if(WEB2PDF_COVERAGE)
    list(APPEND WEB2PDF_INSTRUMENTATION --coverage)
    # What a process counted before it became another program is kept only if the compiler knows execve, which it
    # does in its own dialect.
    set(CMAKE_CXX_EXTENSIONS ON)
endif()
target_compile_options(web2pdf_options INTERFACE ${WEB2PDF_INSTRUMENTATION})
target_link_options(web2pdf_options INTERFACE ${WEB2PDF_INSTRUMENTATION})

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
