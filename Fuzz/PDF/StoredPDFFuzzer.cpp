// Any bytes as a PDF file: it is judged, opened, edited in every way and written. What is written can be
// opened.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFUpdate.h"
#include "Platform/PDFKit/PDFWriting.h"

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

PDFPageEdits everyEdit() {
    PDFPageEdits edits;
    edits.size = NSSize{300, 400};
    edits.scale = 0.5;
    edits.removesEmptySheetsAtEnd = true;
    edits.mapLink = [](const std::string& url) { return url.size() % 3 == 0 ? std::string() : "http://b/"; };
    edits.destinations = {
        .firstPageLength = 800, .pageLength = 1000, .unit = 0.5, .margin = 10, .missing = {{"top", 5.0}}};
    edits.language = "de";
    edits.headings = {"One", "Two  words", "Three"};
    PDFFrame document;
    document.contents = {PDFFrame::Heading{{"One", 1}, {}}, std::size_t{1}};
    PDFFrame frame;
    frame.path = "0";
    frame.width = 100;
    frame.contents = {PDFFrame::Heading{{"Framed", 2}, PDFFrame::Place{1, 2}}};
    frame.anchors = {{"a", PDFFrame::Place{3, 4}}, {"hidden", {}}};
    edits.frames = {document, frame};
    return edits;
}

/// With another title the file can be opened as before.
void requireUpdate(QPDF& document, const NSData& file) {
    const PDFEnding ending = endingOf(document, file);
    const std::string update =
        updateOfPDF(ending, file.length(), {{"/Title", PDFAttributeChange::Kind::text, "New"}});
    const NSData updated(std::string(file.bytes()) + update);
    const auto reopened = openPDF(updated);
    require(reopened != nullptr);
    require(
        endingOf(*reopened, updated).attributes.objectForKey(NSString(u"Title")).isEqual(NSString(u"New")));
}

/// With metadata and an attachment, too, and it keeps what is attached already.
void requireAdditions(QPDF& document, const NSData& file) {
    const PDFEnding ending = endingOf(document, file);
    const auto before = catalogOf(document);
    if (!before) return;
    const PDFAdditions additions{NSData("<x:xmpmeta/>"),
                                 PDFAttachment{u"a", u"b", "text/plain", {}, NSData("contents")}};
    std::string updated(file.bytes());
    writeUpdateOfPDF(ending, *before, file.length(), {}, additions,
                     [&](std::string_view piece) { updated += piece; });
    const auto reopened = openPDF(NSData(updated));
    require(reopened != nullptr);
    const auto after = catalogOf(*reopened);
    require(after.has_value());
    require(after->entries.contains("/Metadata"));
    require(after->files.size() == before->files.size() + 1);
    for (const auto& [name, value] : before->files) require(after->files.contains(name));
    require(after->associatedFiles.size() == before->associatedFiles.size() + 1);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const NSData data(std::string(FuzzInput(bytes, size).rest()));
    const bool isReadable = isReadablePDF(data);
    if (const auto document = openPDF(data)) {
        requireUpdate(*document, data);
        requireAdditions(*document, data);
        if (const NSData written = serializePDF(*document)) require(openPDF(written) != nullptr);
    }
    const NSData edited = pdfByApplying(everyEdit(), data);
    require(!edited || openPDF(edited) != nullptr);
    require(!edited || isReadable || !isReadablePDF(edited));
    return 0;
}
