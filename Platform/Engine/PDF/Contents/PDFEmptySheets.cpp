#include "Platform/Engine/PDF/Contents/PDFEmptySheets.h"

#include "Platform/Engine/PDF/Contents/PDFContents.h"

#include <algorithm>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <set>
#include <string>
#include <vector>

namespace qrv::engine {

namespace {

/// Forms within forms beyond this count as something.
constexpr int deepest = 8;

using Box = QPDFObjectHandle::Rectangle;
using Pictures = std::set<std::string>;

const std::set<std::string> texts = {"Tj", "TJ", "'", "\""};
const std::set<std::string> fills = {"f", "F", "f*"};
const std::set<std::string> strokes = {"S", "s", "B", "B*", "b", "b*"};
const std::set<std::string> pathParts = {"m", "l", "c", "v", "y", "h"};

bool isPicture(QPDFObjectHandle object) {
    return object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image");
}

std::string dataOf(QPDFObjectHandle picture) {
    const auto data = picture.getRawStreamData();
    return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
}

/// Looks for whatever does not fill all of an area.
class SheetReader {
public:
    /// The first page's pictures have the background among them.
    SheetReader(const Box& area, const Pictures& background, const QPDFMatrix& matrix = {}, int depth = 0)
        : area_(area), background_(background), matrix_(matrix), depth_(depth) {}

    void read(const QPDFObjectHandle& owner) {
        objects_ = subdictionary(resourcesOf(owner), "/XObject");
        forEachOperator(owner, [this](const Operator& operation) { take(operation); });
    }

    bool showsSomething() const { return showsSomething_; }

private:
    void take(const Operator& operation) {
        const std::string& name = operation.name;
        if (name == "q") {
            saved_.push_back(matrix_);
        } else if (name == "Q" && !saved_.empty()) {
            matrix_ = saved_.back();
            saved_.pop_back();
        } else if (const auto numbers = operation.numbers<6>(); name == "cm" && numbers) {
            const auto& [a, b, c, d, e, f] = *numbers;
            matrix_.concat(QPDFMatrix(a, b, c, d, e, f));
        } else if (const auto sides = operation.numbers<4>(); name == "re" && sides) {
            const auto& [x, y, width, height] = *sides;
            isFilling_ = isFilling_ || covers({x, y, x + width, y + height});
        } else if (pathParts.contains(name)) {
            isFilling_ = false;
            hasOtherShapes_ = true;
        } else if (name == "n") {
            endPath();
        } else if (fills.contains(name)) {
            showsSomething_ = showsSomething_ || !isFilling_ || hasOtherShapes_;
            endPath();
        } else if (name == "Do") {
            showsSomething_ = showsSomething_ || showsSomething(operation.lastName());
        } else if (texts.contains(name) || strokes.contains(name) || name == "sh" || name == "BI") {
            showsSomething_ = true;
        }
    }

    void endPath() {
        isFilling_ = false;
        hasOtherShapes_ = false;
    }

    bool showsSomething(const std::string& name) {
        QPDFObjectHandle object = objects_.hasKey(name) ? objects_.getKey(name) : QPDFObjectHandle::newNull();
        if (!object.isStream()) return false;
        QPDFObjectHandle dictionary = object.getDict();
        // What a filter works on is one picture, too, but another on each page.
        if (isPicture(object)) return !covers({0, 0, 1, 1}) || !background_.contains(dataOf(object));
        QPDFMatrix placed = matrix_;
        if (dictionary.getKey("/Matrix").isMatrix())
            placed.concat(dictionary.getKey("/Matrix").getArrayAsMatrix());
        if (depth_ == deepest) return true;
        SheetReader form(area_, background_, placed, depth_ + 1);
        form.isCut_ = isCut_ || !dictionary.getKey("/BBox").isRectangle() ||
                      !form.covers(dictionary.getKey("/BBox").getArrayAsRectangle());
        form.read(object);
        return form.showsSomething();
    }

    bool covers(const Box& box) const {
        if (isCut_) return false;
        constexpr double rounding = 1;
        const Box drawn = matrix_.transformRectangle(box);
        return drawn.llx <= area_.llx + rounding && drawn.lly <= area_.lly + rounding &&
               drawn.urx >= area_.urx - rounding && drawn.ury >= area_.ury - rounding;
    }

    Box area_;
    const Pictures& background_;
    QPDFMatrix matrix_;
    int depth_;
    bool isCut_ = false;
    QPDFObjectHandle objects_ = QPDFObjectHandle::newDictionary();
    std::vector<QPDFMatrix> saved_;
    bool isFilling_ = false;
    bool hasOtherShapes_ = false;
    bool showsSomething_ = false;
};

/// The data of the pictures that a page uses itself.
Pictures picturesOf(const QPDFObjectHandle& page) {
    Pictures pictures;
    for (auto& [name, object] : subdictionary(resourcesOf(page), "/XObject").ditems()) {
        if (isPicture(object)) pictures.insert(dataOf(object));
    }
    return pictures;
}

bool isEmpty(const QPDFObjectHandle& page, const Pictures& background, double margin) {
    QPDFObjectHandle box = QPDFPageObjectHelper(page).getMediaBox();
    if (!box.isRectangle()) return false;
    const Box sheet = box.getArrayAsRectangle();
    SheetReader reader({sheet.llx + margin, sheet.lly + margin, sheet.urx - margin, sheet.ury - margin},
                       background);
    reader.read(page);
    return !reader.showsSomething();
}

} // namespace

void removeEmptySheetsAtEnd(QPDF& document, double margin) {
    std::vector<QPDFObjectHandle> pages = document.getAllPages();
    const Pictures background = pages.empty() ? Pictures() : picturesOf(pages.front());
    for (; pages.size() > 1 && isEmpty(pages.back(), background, margin); pages.pop_back()) {
        document.removePage(pages.back());
    }
}

} // namespace qrv::engine
