#pragma once

// Objects of a PDF file that nobody needs to read. Reading an object and writing it again costs a hundred
// times as much as copying its text, and most objects of a large print are elements of its structure, of
// which nothing changes.
//
//     const UnreadObjects unread(*document, bytes, "<</Type /StructElem", {});
//     ... edit the document ...
//     NSData edited = serializePDF(*document, unread);

#include "Platform/Foundation/NSData.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class QPDF;

namespace qrv {

class UnreadObjects {
public:
    UnreadObjects() = default;
    /// Leaves the objects unread whose text begins like this, but for those with these numbers. In the
    /// document each becomes a number, which must not be changed; references to it stay. `bytes` are those
    /// that the document was opened with. What is not plainly written (a stream, an object in an object
    /// stream or of a later generation, one without an end) is read when needed, as usual. Throws what the
    /// PDF library throws.
    UnreadObjects(QPDF& document, const NSData& bytes, std::string_view beginning,
                  const std::set<int>& others);

    /// How the object with this number is written; empty for one that is not among these.
    std::string_view text(int number) const;

    /// The numbers of those whose text holds this, in ascending order.
    std::vector<int> numbersWith(std::string_view part) const;

    /// Has an object among these written in another way; other numbers are ignored.
    void replaceText(int number, std::string text);

private:
    NSData bytes_;
    std::unordered_map<int, std::string_view> texts_;
    std::unordered_map<int, std::string> replaced_;
};

/// Calls back with the number and the generation of each object that the text refers to, and perhaps with
/// others that a string in it seems to refer to.
void forEachReference(std::string_view text, const std::function<void(int, int)>& handle);

} // namespace qrv
