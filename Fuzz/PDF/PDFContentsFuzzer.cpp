// Any text as the contents of a page, which has patterns, masks, forms and fonts to use: they are edited, and
// what comes of it can be opened.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/PDFKit/PDFFile.h"

#include <array>

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

std::string stream(const std::string& entries, std::string_view contents) {
    return "<<" + entries + "/Length " + std::to_string(contents.size()) + ">>stream\n" +
           std::string(contents) + "\nendstream";
}

const std::string resources =
    "/Resources<</Pattern<</P1 7 0 R/P2 8 0 R>>/ExtGState<</G1<</ca .5/CA .5>>/G2 13 0 R/G3<</SMask"
    "/None/ca 1>>/G4<</ca 1>>>>/XObject<</F1 6 0 R>>/Font<</T1 10 0 R>>>>";

/// The contents of the page, of a form and of a pattern, and the text of a font's glyphs.
NSData document(const std::array<std::string_view, 4>& contents) {
    const std::string shading =
        "<</ShadingType 2/ColorSpace/DeviceRGB/Coords[0 0 1 1]/Function<</FunctionType 4"
        "/Domain[0 1]/Range[0 1 0 1 0 1]/Length 7>>>>";
    const std::array objects{
        std::string("<</Type/Catalog/Pages 2 0 R>>"),
        std::string("<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2/MediaBox[0 0 200 300]>>"),
        "<</Type/Page/Parent 2 0 R/Contents 5 0 R" + resources + ">>",
        "<</Type/Page/Parent 2 0 R/Contents 5 0 R" + resources + ">>",
        stream("", contents[0]),
        stream("/Type/XObject/Subtype/Form/BBox[0 0 50 50]/Group<</S/Transparency>>" + resources,
               contents[1]),
        stream("/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 9 9]/XStep 9/YStep 9" +
                   resources,
               contents[2]),
        "<</Type/Pattern/PatternType 2/Matrix[1 0 0 1 0 0]/Shading" + shading + ">>",
        std::string("<</Type/Mask/S/Alpha/G 6 0 R/TR 11 0 R>>"),
        std::string("<</Type/Font/Subtype/Type0/BaseFont/A/ToUnicode 12 0 R>>"),
        stream("/FunctionType 4/Domain[0 1]/Range[0 1]", "{1 exch sub}"),
        stream("", contents[3]),
        std::string("<</SMask 9 0 R>>"),
    };
    std::string text = "%PDF-1.7\n";
    std::string table = "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string offset = std::to_string(text.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        text += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string start = std::to_string(text.size());
    return NSData(text + table + "trailer<</Size " + std::to_string(objects.size() + 1) +
                  "/Root 1 0 R>>\nstartxref\n" + start + "\n%%EOF\n");
}

/// The part up to the next "%%%", which is then gone.
std::string_view takePart(std::string_view& text) {
    constexpr std::string_view mark = "%%%\n";
    const std::size_t end = std::min(text.find(mark), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + mark.size(), text.size()));
    return part;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string_view text = FuzzInput(bytes, size).rest();
    std::array<std::string_view, 4> contents;
    for (std::string_view& part : contents) part = takePart(text);
    const NSData data = document(contents);
    require(openPDF(data) != nullptr);
    PDFPageEdits edits;
    edits.removesEmptySheetsAtEnd = true;
    edits.scale = 0.5;
    const NSData edited = pdfByApplying(edits, data);
    require(!edited || openPDF(edited) != nullptr);
    return 0;
}
