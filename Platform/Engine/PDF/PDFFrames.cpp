#include "Platform/Engine/PDF/PDFFrames.h"

#include <algorithm>
#include <qpdf/QPDF.hh>
#include <string_view>

namespace qrv::engine {

namespace {

/// Points by which the ends of a frame's parts may be off.
constexpr double slack = 1;
constexpr int decimals = 3;

struct Spot {
    std::size_t page = 0;
    double x = 0;
    double y = 0;
};

/// The part of a frame that is on a page.
struct Part {
    std::size_t page = 0;
    QPDFObjectHandle::Rectangle area;

    bool contains(const Spot& spot) const {
        return spot.page == page && spot.x >= area.llx - slack && spot.x <= area.urx + slack &&
               spot.y >= area.lly - slack && spot.y <= area.ury + slack;
    }
};

std::string parentOf(const std::string& path) {
    const std::size_t point = path.rfind('.');
    return point == std::string::npos ? std::string() : path.substr(0, point);
}

std::string childOf(const std::string& path, std::size_t number) {
    return path.empty() ? std::to_string(number) : path + "." + std::to_string(number);
}

/// The place of every frame on the pages.
class FrameMap {
public:
    /// Takes the markers out of the document.
    FrameMap(QPDF& document, const std::vector<PDFFrame>& frames) {
        for (const PDFFrame& frame : frames) frames_[frame.path] = &frame;
        const std::vector<QPDFObjectHandle>& pages = document.getAllPages();
        for (std::size_t page = 0; page < pages.size(); ++page) takeMarkers(pages[page], page);
    }

    /// Nothing for a path of no frame.
    const PDFFrame* frame(const std::string& path) const {
        const auto found = frames_.find(path);
        return found == frames_.end() ? nullptr : found->second;
    }

    /// Nothing for what is not on any page, or outside of the frames around it.
    std::optional<Spot> spot(const PDFFrame& frame, const PDFFrame::Place& place) const {
        const auto parts = parts_.find(frame.path);
        if (parts == parts_.end() || frame.width <= 0) return std::nullopt;
        const QPDFObjectHandle::Rectangle& first = parts->second.front().area;
        const double unit = (first.urx - first.llx) / frame.width;
        double rest = place.top * unit;
        for (const auto& [page, area] : parts->second) {
            if (rest > area.ury - area.lly) {
                rest -= area.ury - area.lly;
                continue;
            }
            const Spot spot{page, area.llx + place.left * unit, area.ury - rest};
            return isInside(spot, parentOf(frame.path)) ? std::optional(spot) : std::nullopt;
        }
        return std::nullopt;
    }

    /// The innermost frame there; null outside of all.
    const PDFFrame* frameAt(const Spot& spot) const {
        const PDFFrame* innermost = nullptr;
        for (const auto& [path, parts] : parts_) {
            if (innermost && path.size() < innermost->path.size()) continue;
            if (isInside(spot, path)) innermost = frame(path);
        }
        return innermost;
    }

private:
    void takeMarkers(QPDFObjectHandle page, std::size_t number) {
        if (!page.getKey("/Annots").isArray()) return;
        QPDFObjectHandle kept = QPDFObjectHandle::newArray();
        for (const QPDFObjectHandle& annotation : page.getKey("/Annots").aitems()) {
            if (!takeMarker(annotation, number)) kept.appendItem(annotation);
        }
        page.replaceKey("/Annots", kept);
    }

    bool takeMarker(QPDFObjectHandle annotation, std::size_t page) {
        constexpr std::string_view marker = frameMarker;
        QPDFObjectHandle action = annotation.isDictionary() ? annotation.getKey("/A") : annotation;
        if (!action.isDictionary() || !action.getKey("/URI").isString()) return false;
        const std::string address = action.getKey("/URI").getStringValue();
        if (!address.starts_with(marker) || !annotation.getKey("/Rect").isRectangle()) return false;
        const std::string path = address.substr(marker.size());
        if (frame(path)) parts_[path].push_back({page, annotation.getKey("/Rect").getArrayAsRectangle()});
        return true;
    }

    /// Whether a frame and all frames around it show what is there.
    bool isInside(const Spot& spot, std::string path) const {
        for (; !path.empty(); path = parentOf(path)) {
            const auto parts = parts_.find(path);
            if (parts == parts_.end()) return false;
            if (std::none_of(parts->second.begin(), parts->second.end(),
                             [&](const Part& part) { return part.contains(spot); })) {
                return false;
            }
        }
        return true;
    }

    std::map<std::string, const PDFFrame*> frames_;
    std::map<std::string, std::vector<Part>> parts_; // of each frame in the order of the pages
};

QPDFObjectHandle destinationAt(QPDF& document, const Spot& spot) {
    QPDFObjectHandle destination = QPDFObjectHandle::newArray();
    destination.appendItem(document.getAllPages()[spot.page]);
    destination.appendItem(QPDFObjectHandle::newName("/XYZ"));
    destination.appendItem(QPDFObjectHandle::newReal(spot.x, decimals));
    destination.appendItem(QPDFObjectHandle::newReal(spot.y, decimals));
    destination.appendItem(QPDFObjectHandle::newNull());
    return destination;
}

/// A target that is not seen is where its frame begins.
void leadLinksInFrames(QPDF& document, const FrameMap& map) {
    std::vector<QPDFObjectHandle> pages = document.getAllPages();
    for (std::size_t page = 0; page < pages.size(); ++page) {
        QPDFObjectHandle annotations = pages[page].getKey("/Annots");
        for (int i = 0; annotations.isArray() && i < annotations.getArrayNItems(); ++i) {
            QPDFObjectHandle link = annotations.getArrayItem(i);
            if (!link.isDictionary() || !link.getKey("/Dest").isName() || !link.getKey("/Rect").isRectangle())
                continue;
            const auto area = link.getKey("/Rect").getArrayAsRectangle();
            const PDFFrame* frame = map.frameAt({page, (area.llx + area.urx) / 2, (area.lly + area.ury) / 2});
            if (!frame) continue;
            const auto anchor = frame->anchors.find(link.getKey("/Dest").getName().substr(1));
            if (anchor == frame->anchors.end()) continue;
            const auto spot = map.spot(*frame, anchor->second.value_or(PDFFrame::Place()));
            if (spot) link.replaceKey("/Dest", destinationAt(document, *spot));
        }
    }
}

/// Collects the headings of the document, and those of frames with their places among them.
class FrameHeadings {
public:
    explicit FrameHeadings(const FrameMap& map) : map_(map) { visit("", true); }

    std::vector<OutlineHeading> own;
    std::vector<OutlineAddition> additions;

private:
    void visit(const std::string& path, bool isDocument) {
        const PDFFrame* frame = map_.frame(path);
        if (!frame) return;
        for (const PDFFrame::Content& content : frame->contents) {
            if (const auto* inner = std::get_if<std::size_t>(&content)) {
                visit(childOf(path, *inner), false);
                continue;
            }
            const auto& heading = std::get<PDFFrame::Heading>(content);
            if (isDocument) {
                own.push_back(heading.heading);
            } else if (const auto spot = heading.place ? map_.spot(*frame, *heading.place) : std::nullopt) {
                additions.push_back({heading.heading, own.size(), spot->page, spot->x, spot->y});
            }
        }
    }

    const FrameMap& map_;
};

} // namespace

void addFrames(QPDF& document, const std::vector<PDFFrame>& frames, bool hasOutline) {
    if (frames.empty()) return;
    const FrameMap map(document, frames);
    leadLinksInFrames(document, map);
    if (!hasOutline) return;
    const FrameHeadings headings(map);
    addToOutline(document, headings.own, headings.additions);
}

} // namespace qrv::engine
