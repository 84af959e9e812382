// Read by clang, also as clang-tidy, before each source. clang cannot read the headers of libqpdf together
// with the standard library of the compiler that the project is built with: they have a std::vector of a
// class that is not complete yet, whose constexpr functions clang looks into at once. Without constexpr it
// does not.
#include <memory>
#include <string>

#undef _GLIBCXX20_CONSTEXPR
#define _GLIBCXX20_CONSTEXPR
#define __fill_a1 fill_bits // declared as constexpr before
#include <vector>
#undef __fill_a1
#undef _GLIBCXX20_CONSTEXPR
#define _GLIBCXX20_CONSTEXPR constexpr
