#include "Platform/Engine/PDF/PDFDestinations.h"

#include "Platform/Engine/PDF/LengthUnits.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <qpdf/QPDF.hh>

namespace qrv::engine {

namespace {

/// A destination this close to the end of a page leads to the next page.
constexpr double slack = 0.5;
constexpr int decimals = 3;

class DestinationEditor {
public:
    DestinationEditor(QPDF& document, const DestinationLayout& layout)
        : document_(document), layout_(layout), pages_(document.getAllPages()) {
        for (std::size_t page = 0; page < pages_.size(); ++page) numbers_[pages_[page].getObjGen()] = page;
    }

    void run() {
        QPDFObjectHandle destinations = document_.getRoot().getKey("/Dests");
        if (!destinations.isDictionary()) {
            if (layout_.missing.empty()) return;
            destinations =
                document_.getRoot().replaceKeyAndGetNew("/Dests", QPDFObjectHandle::newDictionary());
        }
        for (const auto& [name, destination] : destinations.ditems()) place(destination);
        for (const auto& [name, distance] : layout_.missing) {
            const std::string key = "/" + name;
            if (!destinations.hasKey(key)) destinations.replaceKey(key, atDistance(distance, 0));
        }
    }

private:
    /// Moves [page /XYZ left top zoom] in place: several names may share an array.
    void place(QPDFObjectHandle destination) {
        if (!destination.isArray() || destination.getArrayNItems() < 4 ||
            !destination.getArrayItem(1).isNameAndEquals("/XYZ")) {
            return;
        }
        const auto page = numbers_.find(destination.getArrayItem(0).getObjGen());
        double left = 0;
        double top = 0;
        if (page == numbers_.end() || !destination.getArrayItem(2).getValueAsNumber(left) ||
            !destination.getArrayItem(3).getValueAsNumber(top)) {
            return;
        }
        const auto number = static_cast<double>(page->second);
        const double distance = layout_.firstPageLength + number * layout_.pageLength +
                                (topOf(pages_[page->second]) - top) / pointsPerPixel;
        QPDFObjectHandle placed = atDistance(distance, left / pointsPerPixel);
        for (int i = 0; i < 4; ++i) destination.setArrayItem(i, placed.getArrayItem(i));
    }

    /// Makes a destination from lengths in px from the start of the document.
    QPDFObjectHandle atDistance(double down, double across) {
        const auto last = static_cast<double>(pages_.size() - 1);
        const double number = std::clamp(std::floor((down + slack) / layout_.pageLength), 0.0, last);
        const QPDFObjectHandle& page = pages_[static_cast<std::size_t>(number)];
        const double rest = std::max(0.0, down - number * layout_.pageLength);
        QPDFObjectHandle destination = QPDFObjectHandle::newArray();
        destination.appendItem(page);
        destination.appendItem(QPDFObjectHandle::newName("/XYZ"));
        destination.appendItem(real(layout_.margin + across * layout_.unit));
        destination.appendItem(real(topOf(page) - layout_.margin - rest * layout_.unit));
        destination.appendItem(QPDFObjectHandle::newNull());
        return destination;
    }

    static QPDFObjectHandle real(double number) { return QPDFObjectHandle::newReal(number, decimals); }

    static double topOf(QPDFObjectHandle page) { return page.getKey("/MediaBox").getArrayAsRectangle().ury; }

    QPDF& document_;
    const DestinationLayout& layout_;
    const std::vector<QPDFObjectHandle>& pages_;
    std::map<QPDFObjGen, std::size_t> numbers_; // of the pages
};

} // namespace

void placeDestinations(QPDF& document, const DestinationLayout& layout) {
    if (layout.pageLength > 0 && !document.getAllPages().empty()) DestinationEditor(document, layout).run();
}

} // namespace qrv::engine
