#include "Platform/Engine/PDF/PDFPageEdits.h"

#include "Platform/Engine/PDF/Contents/PDFEmptySheets.h"
#include "Platform/Engine/PDF/Contents/PDFMasks.h"
#include "Platform/Engine/PDF/Contents/PDFPatterns.h"
#include "Platform/Engine/PDF/PDFElementIDs.h"
#include "Platform/Engine/PDF/PDFGlyphTexts.h"
#include "Platform/Engine/PDF/PDFOutline.h"
#include "Platform/Engine/PDF/PDFParts.h"
#include "Platform/Engine/PDF/PDFReaderLimits.h"
#include "Platform/Engine/PDF/PDFStructure.h"
#include "Platform/PDFKit/ConfinedPDF.h"
#include "Platform/PDFKit/PDFDate.h"
#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFWriting.h"

#include <cmath>
#include <initializer_list>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QUtil.hh>
#include <set>
#include <stdexcept>
#include <string_view>

namespace qrv::engine {

namespace {

constexpr double largest = 1e8;
constexpr int decimals = 8;
constexpr const char* mediaBox = "/MediaBox";
constexpr const char* innerBoxes[] = {"/CropBox", "/BleedBox", "/TrimBox", "/ArtBox"};

bool isUsable(double value) {
    return std::isfinite(value) && value > 0 && value <= largest;
}

std::string text(double number) {
    return QUtil::double_to_string(number, decimals, true);
}

/// The matrices here scale and move, and do not rotate, so that the coordinates are independent.
double movedX(const QPDFMatrix& placement, double x) {
    return placement.a * x + placement.e;
}

double movedY(const QPDFMatrix& placement, double y) {
    return placement.d * y + placement.f;
}

bool isIdentity(const QPDFMatrix& placement) {
    return placement == QPDFMatrix();
}

/// Makes an array with as many decimals as an exact size needs; the library's own conversion has fewer.
QPDFObjectHandle makeNumbers(std::initializer_list<double> numbers) {
    QPDFObjectHandle array = QPDFObjectHandle::newArray();
    for (const double number : numbers) array.appendItem(QPDFObjectHandle::newReal(number, decimals));
    return array;
}

QPDFObjectHandle makeBox(const QPDFObjectHandle::Rectangle& box) {
    return makeNumbers({box.llx, box.lly, box.urx, box.ury});
}

/// Moves an array of alternating x and y.
void movePoints(QPDFObjectHandle points, const QPDFMatrix& placement) {
    for (int i = 0; points.isArray() && i < points.getArrayNItems(); ++i) {
        QPDFObjectHandle item = points.getArrayItem(i);
        double number = 0;
        if (!item.getValueAsNumber(number)) continue;
        number = i % 2 == 0 ? movedX(placement, number) : movedY(placement, number);
        points.setArrayItem(i, QPDFObjectHandle::newReal(number, decimals));
    }
}

/// The axes of each kind of destination's coordinates, from the third element on; other kinds have none.
std::string_view destinationAxes(const std::string& kind) {
    if (kind == "/XYZ") return "xy"; // and a zoom, which stays
    if (kind == "/FitH" || kind == "/FitBH") return "y";
    if (kind == "/FitV" || kind == "/FitBV") return "x";
    if (kind == "/FitR") return "xyxy";
    return "";
}

/// Edits one document.
class PageEditor {
public:
    PageEditor(QPDF& document, const PDFPageEdits& edits) : document_(document), edits_(edits) {}

    void run() {
        for (const QPDFObjectHandle& page : document_.getAllPages()) placePage(page);
        // Destinations may be in annotations, actions, outlines or name trees; they are recognised by their
        // form.
        for (const QPDFObjectHandle& object : document_.getAllObjects()) moveDestinations(object);
        for (const QPDFObjectHandle& page : document_.getAllPages()) {
            editAnnotations(page);
            if (!isIdentity(placements_.at(page.getObjGen()))) moveContents(page);
        }
    }

private:
    void placePage(QPDFObjectHandle page) {
        if (!page.getKey(mediaBox).isRectangle()) throw std::runtime_error("page without a size");
        const QPDFObjectHandle::Rectangle old = page.getKey(mediaBox).getArrayAsRectangle();
        QPDFMatrix placement(edits_.scale, 0, 0, edits_.scale, 0, 0);
        if (edits_.size) {
            placement.e = -movedX(placement, old.llx);
            placement.f = edits_.size->height - movedY(placement, old.ury);
        }
        const double width = edits_.scale * (old.urx - old.llx);
        const double height = edits_.scale * (old.ury - old.lly);
        if (!isUsable(width) || !isUsable(height)) throw std::runtime_error("page of an absurd size");
        placements_[page.getObjGen()] = placement;
        placeBox(page, mediaBox, placement);
        for (const char* name : innerBoxes) placeBox(page, name, placement);
    }

    void placeBox(QPDFObjectHandle page, const char* name, const QPDFMatrix& placement) {
        QPDFObjectHandle box = page.getKey(name);
        if (!box.isRectangle()) return;
        page.replaceKey(name, makeBox(edits_.size ? QPDFObjectHandle::Rectangle(0, 0, edits_.size->width,
                                                                                edits_.size->height)
                                                  : placement.transformRectangle(box.getArrayAsRectangle())));
    }

    /// Moves the destinations in one object and its direct parts. References are not followed, so each is
    /// moved once.
    void moveDestinations(QPDFObjectHandle object) {
        if (object.isArray()) {
            moveDestination(object);
            for (const QPDFObjectHandle& item : object.aitems()) {
                if (!item.isIndirect()) moveDestinations(item);
            }
        } else if (object.isDictionary()) {
            for (const auto& [name, value] : object.ditems()) {
                if (!value.isIndirect()) moveDestinations(value);
            }
        }
    }

    void moveDestination(QPDFObjectHandle array) {
        if (array.getArrayNItems() < 3 || !array.getArrayItem(1).isName()) return;
        const auto placement = placements_.find(array.getArrayItem(0).getObjGen());
        if (placement == placements_.end() || isIdentity(placement->second)) return;
        int place = 2;
        const std::string kind = array.getArrayItem(1).getName();
        for (const char axis : destinationAxes(kind)) {
            double number = 0;
            if (place < array.getArrayNItems() && array.getArrayItem(place).getValueAsNumber(number)) {
                number = axis == 'x' ? movedX(placement->second, number) : movedY(placement->second, number);
                array.setArrayItem(place, QPDFObjectHandle::newReal(number, decimals));
            }
            ++place;
        }
    }

    void editAnnotations(QPDFObjectHandle page) {
        const QPDFMatrix& placement = placements_.at(page.getObjGen());
        if (!page.getKey("/Annots").isArray()) return;
        QPDFObjectHandle kept = QPDFObjectHandle::newArray();
        for (QPDFObjectHandle annotation : page.getKey("/Annots").aitems()) {
            if (annotation.isDictionary() && isNew(annotation)) {
                movePoints(ownArray(annotation, "/Rect"), placement);
                movePoints(ownArray(annotation, "/QuadPoints"), placement);
                if (!mapLink(annotation)) continue;
            }
            kept.appendItem(annotation);
        }
        page.replaceKey("/Annots", kept);
    }

    /// Returns false for an object that was seen before; direct objects are always new.
    bool isNew(const QPDFObjectHandle& object) {
        return !object.isIndirect() || seen_.insert(object.getObjGen()).second;
    }

    /// Replaces an array, which may be shared, by a copy.
    static QPDFObjectHandle ownArray(QPDFObjectHandle dictionary, const char* key) {
        QPDFObjectHandle value = dictionary.getKey(key);
        return value.isArray() ? dictionary.replaceKeyAndGetNew(key, value.shallowCopy()) : value;
    }

    /// Returns false if the link is to be removed; a link without an action would crash some viewers.
    bool mapLink(QPDFObjectHandle annotation) {
        QPDFObjectHandle action = annotation.getKey("/A");
        if (!edits_.mapLink || !action.isDictionary() || !action.getKey("/URI").isString()) return true;
        const std::string address = edits_.mapLink(action.getKey("/URI").getStringValue());
        QPDFObjectHandle changed = annotation.replaceKeyAndGetNew("/A", action.shallowCopy());
        changed.replaceKey("/URI", QPDFObjectHandle::newString(address));
        return !address.empty();
    }

    /// Prepends a transformation to a page's contents. Patterns use the page's own coordinates whatever the
    /// contents set, so they get the transformation as well.
    void moveContents(QPDFObjectHandle page) {
        const QPDFMatrix& placement = placements_.at(page.getObjGen());
        std::string operation;
        for (const double number :
             {placement.a, placement.b, placement.c, placement.d, placement.e, placement.f}) {
            operation += text(number) + " ";
        }
        operation += "cm\n";
        page.addPageContents(document_.newStream(operation), true);
        QPDFObjectHandle patterns = page.getKey("/Resources");
        patterns = patterns.isDictionary() ? patterns.getKey("/Pattern") : QPDFObjectHandle::newNull();
        if (!patterns.isDictionary()) return;
        QPDFObjectHandle moved = QPDFObjectHandle::newDictionary();
        for (const auto& [name, pattern] : patterns.ditems()) {
            moved.replaceKey(name, movedPattern(pattern, placement));
        }
        // Pages may share resources, and forms may share patterns: this page gets its own.
        page.replaceKeyAndGetNew("/Resources", page.getKey("/Resources").shallowCopy())
            .replaceKey("/Pattern", moved);
    }

    QPDFObjectHandle movedPattern(QPDFObjectHandle pattern, const QPDFMatrix& placement) {
        if (!pattern.isStream() && !pattern.isDictionary()) return pattern;
        QPDFObjectHandle copy =
            pattern.isStream() ? pattern.copyStream() : document_.makeIndirectObject(pattern.shallowCopy());
        QPDFObjectHandle dictionary = copy.isStream() ? copy.getDict() : copy;
        QPDFObjectHandle old = dictionary.getKey("/Matrix");
        QPDFMatrix matrix = placement;
        if (old.isMatrix()) matrix.concat(old.getArrayAsMatrix());
        dictionary.replaceKey("/Matrix",
                              makeNumbers({matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f}));
        return copy;
    }

    QPDF& document_;
    const PDFPageEdits& edits_;
    std::map<QPDFObjGen, QPDFMatrix> placements_;
    std::set<QPDFObjGen> seen_;
};

/// What is to be done to each part alone: the engine counts from its start.
void prepare(const PDFPageEdits& edits, QPDF& part, const DestinationLayout& destinations) {
    part.pushInheritedAttributesToPage();
    if (edits.removesEmptySheetsAtEnd) removeEmptySheetsAtEnd(part, edits.destinations.margin);
    placeDestinations(part, destinations);
}

void setDates(QPDF& document, const NSDate& date) {
    QPDFObjectHandle information = document.getTrailer().getKey("/Info");
    if (!information.isDictionary()) return;
    for (const char* key : {"/CreationDate", "/ModDate"})
        information.replaceKey(key, QPDFObjectHandle::newString(pdfTextFromDate(date)));
}

} // namespace

NSData pdfByApplying(const PDFPageEdits& edits, const NSData& pdf, std::string* notes, PDFEnding* ending) {
    if (!isUsable(edits.scale)) return {};
    if (edits.size && !(isUsable(edits.size->width) && isUsable(edits.size->height))) return {};
    const std::shared_ptr<QPDF> document = openPDF(pdf);
    if (!document) return {};
    std::vector<std::shared_ptr<QPDF>> parts; // to live as long as the document
    std::string limitNotes;
    UnreadObjects elements;
    try {
        // Those of several parts become one tree.
        if (edits.furtherParts.empty()) elements = unreadElements(*document, pdf);
        prepare(edits, *document, edits.destinations);
        for (const PDFPart& further : edits.furtherParts) {
            parts.push_back(openPDF(further.pdf));
            if (!parts.back()) return {};
            DestinationLayout layout = edits.destinations;
            layout.missing = further.missingDestinations;
            prepare(edits, *parts.back(), layout);
            appendPart(*document, *parts.back());
        }
        resolveInvertedMasks(*document);
        groupPatterns(*document);
        PageEditor(*document, edits).run();
        if (edits.date) setDates(*document, edits.date);
        if (edits.language) setLanguage(*document, *edits.language);
        correctOutline(*document, edits.headings);
        addFrames(*document, edits.frames, edits.hasOutline);
        mapStructureRoles(*document);
        numberElementIDs(*document, elements);
        correctGlyphTexts(*document);
        keepWithinReaderLimits(*document, limitNotes);
    } catch (const std::exception&) {
        return {};
    }
    if (notes) *notes += limitNotes;
    return serializePDF(*document, elements, ending);
}

NSData confinedPDFByApplying(const PDFPageEdits& edits, const NSData& pdf) {
    std::size_t length = pdf.length();
    for (const PDFPart& further : edits.furtherParts) length += further.pdf.length();
    return makeFromPDF("editing the engine's PDF", length, [&](std::string& notes, PDFEnding& ending) {
        return pdfByApplying(edits, pdf, &notes, &ending);
    });
}

} // namespace qrv::engine
