// Any text whose references are rewritten: nothing but the stems changes.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/Archive/ReferenceRewriter.h"

using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size()))
        ++found;
    return found;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const auto syntax = static_cast<ReferenceSyntax>(input.below(3));
    referenceSyntax(MIMEType(input.line()));
    const std::string text(input.rest());
    const std::string stem = "file:///";
    const std::string other = "file://localhost/";
    require(withReplacedReferences(text, syntax, {stem}, stem) == text);
    require(withReplacedReferences(text, syntax, {}, "x") == text);

    const std::string marked = withReplacedReferences(text, syntax, {stem, other}, "\1");
    const std::size_t replaced = count(marked, "\1") - count(text, "\1");
    require(marked.size() <= text.size() - replaced * (stem.size() - 1));
    require(syntax != ReferenceSyntax::none || replaced == 0);
    require(syntax != ReferenceSyntax::anywhere || (count(marked, stem) == 0 && count(marked, other) == 0));
    return 0;
}
