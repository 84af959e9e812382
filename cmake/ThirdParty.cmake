# Every library this project builds on, found in one place. Link them PRIVATE: their headers appear in .cpp
# files only.

find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED)
find_package(ICU 72 REQUIRED COMPONENTS uc i18n data)
find_package(EXPAT REQUIRED)

if(NOT WEB2PDF_BUILD_TOOL)
    return()
endif()

find_package(PkgConfig REQUIRED)
find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(CLI11 2.1 REQUIRED)
pkg_check_modules(NETTLE REQUIRED IMPORTED_TARGET nettle)
pkg_check_modules(QPDF REQUIRED IMPORTED_TARGET libqpdf)
pkg_check_modules(GMIME REQUIRED IMPORTED_TARGET gmime-3.0)
pkg_check_modules(SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
# The headers ask for a choice: standard smart pointers only.
target_compile_definitions(PkgConfig::QPDF INTERFACE POINTERHOLDER_TRANSITION=4)
