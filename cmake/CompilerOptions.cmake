# Warnings, sanitizers and the compiler cache, for every target of this project.

option(WEB2PDF_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
set(WEB2PDF_SANITIZE "" CACHE STRING "Sanitizers to build with, separated by commas (address,undefined or thread)")
option(WEB2PDF_COVERAGE "Record line coverage" OFF)

add_library(web2pdf_options INTERFACE)
target_include_directories(web2pdf_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(web2pdf_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Woverloaded-virtual
    -Wformat=2 -Wundef)
if(WEB2PDF_WARNINGS_AS_ERRORS)
    target_compile_options(web2pdf_options INTERFACE -Werror)
endif()
if(WEB2PDF_SANITIZE)
    target_compile_options(web2pdf_options INTERFACE
        -fsanitize=${WEB2PDF_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(web2pdf_options INTERFACE -fsanitize=${WEB2PDF_SANITIZE})
endif()
if(WEB2PDF_COVERAGE)
    target_compile_options(web2pdf_options INTERFACE --coverage)
    target_link_options(web2pdf_options INTERFACE --coverage)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
