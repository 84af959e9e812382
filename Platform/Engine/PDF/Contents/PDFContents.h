#pragma once

// The contents of pages, forms and patterns, operator by operator.
//
//     for (QPDFObjectHandle owner : contentOwners(document)) {
//         std::string contents;
//         forEachOperator(owner, [&](const Operator& operation) {
//             if (operation.name != "Do") contents += operation.text;
//         });
//         replaceContents(document, owner, contents);
//     }

#include <array>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QPDF;
class QPDFObjectHandle;

namespace qrv::engine {

struct Operator {
    /// Empty for an inline image's data, and for the blanks after the last operator.
    std::string name;
    /// The first nine at most, with those within arrays. Names have their slash, and no escapes.
    std::vector<std::string> operands;
    /// As it is written, with its operands and the blanks before them.
    std::string text;

    /// The operands, if they are as many numbers as are asked for.
    template <std::size_t count>
    std::optional<std::array<double, count>> numbers() const {
        std::array<double, count> values{};
        if (operands.size() != count) return std::nullopt;
        for (std::size_t i = 0; i < count; ++i) {
            char* end = nullptr;
            values[i] = std::strtod(operands[i].c_str(), &end);
            if (end == operands[i].c_str()) return std::nullopt;
        }
        return values;
    }

    /// The last operand if it is a name, else an empty text.
    std::string lastName() const;
};

/// Forms and patterns, and after them the pages.
std::vector<QPDFObjectHandle> contentOwners(QPDF& document);

/// The dictionary of what a page, form or pattern uses; an empty one that belongs to nothing if there is
/// none.
QPDFObjectHandle resourcesOf(QPDFObjectHandle owner);

/// The dictionary under this key; an empty one that belongs to nothing if there is none.
QPDFObjectHandle subdictionary(QPDFObjectHandle dictionary, const std::string& key);

void forEachOperator(QPDFObjectHandle owner, const std::function<void(const Operator&)>& handle);

void replaceContents(QPDF& document, QPDFObjectHandle owner, const std::string& contents);

/// An isolated group with these contents. The box is an array, the colour space a name, or empty for that of
/// what it is drawn on.
QPDFObjectHandle makeGroup(QPDF& document, const std::string& contents, const QPDFObjectHandle& box,
                           const std::string& colours = "");

} // namespace qrv::engine
