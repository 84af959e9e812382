// Any text as a page or a style sheet that becomes a file: only references change, what has taken their place
// is found in it, and whatever an address is, its file's name leads nowhere else.

#include "Fuzz/FuzzInput.h"
#include "Source/Tools/webarchive/Extract/CharacterReferences.h"
#include "Source/Tools/webarchive/Extract/FileNames.h"
#include "Source/Tools/webarchive/Extract/PageText.h"
#include "Source/Tools/webarchive/Extract/PictureChoice.h"

using namespace qrv;
using namespace qrv::fuzz;
using namespace qrv::webarchive;

namespace {

const Replacement none = [](const std::string&) { return std::optional<std::string>(); };
const Replacement file = [](const std::string&) { return std::optional<std::string>("files/a-1.png#x"); };

void checkStyle(std::string_view style) {
    require(withStyleReferences(style, none) == style);
    std::size_t count = 0;
    const std::string rewritten = withStyleReferences(style, [&](const std::string& reference) {
        ++count;
        return file(reference);
    });
    require(withStyleReferences(rewritten, [&](const std::string& reference) {
                --count;
                require(reference == "files/a-1.png#x");
                return std::optional<std::string>();
            }) == rewritten);
    require(count == 0);
}

void checkPage(std::string_view page) {
    baseReference(page);
    const auto noFrame = [](const std::string&, const std::string&) { return std::optional<std::string>(); };
    const auto frame = [](const std::string&, const std::string&) {
        return std::optional<std::string>("f.html");
    };
    for (const PageLinks& links : {PageLinks{none, none, noFrame}, PageLinks{file, file, noFrame}}) {
        const std::string once = withPageReferences(page, links);
        require(withPageReferences(once, links) == once);
    }
    withPageReferences(page, {file, none, frame});
}

void checkName(std::string_view address, std::string_view type) {
    FileNames names;
    const std::string name = names.take(address, engine::MIMEType(type));
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";
    require(name.size() < 100 && name.find_first_not_of(plain) == name.npos && name.find("..") == name.npos);
    require(name.find_first_of("-_.") != 0);
    require(names.take(address, engine::MIMEType(type)) != name);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const std::string_view kind = input.line();
    const std::string_view address = input.line();
    const std::string_view text = input.rest();
    checkName(address, kind);
    if (kind == "text/css") {
        checkStyle(text);
    } else if (kind == "srcset") {
        const std::string chosen = withPictures(text, file);
        require(withPictures(chosen, file) == chosen);
    } else if (kind == "value") {
        require(withoutReferences(withReferences(text)) == text);
        withoutReferences(text);
    } else {
        checkPage(text);
    }
    return 0;
}
