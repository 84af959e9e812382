#include "Platform/Engine/PDF/Contents/PDFPatterns.h"

#include "Platform/Engine/PDF/Contents/PDFContents.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QUtil.hh>
#include <string_view>
#include <utility>

namespace qrv::engine {

namespace {

using Box = QPDFObjectHandle::Rectangle;

/// Soft edges reach this far beyond a shape, in units of its page or form.
constexpr double softEdge = 1;
constexpr int decimals = 8;
/// The most that a tile which is only a gradient has in the file.
constexpr std::size_t longestTile = 1024;

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string textOf(const QPDFMatrix& matrix) {
    std::string text;
    for (const double number : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f}) {
        text += QUtil::double_to_string(number, decimals, true) + " ";
    }
    return text;
}

/// Nothing for a matrix that makes a line of everything.
std::optional<QPDFMatrix> inverted(const QPDFMatrix& m) {
    const double area = m.a * m.d - m.b * m.c;
    const QPDFMatrix inverse(m.d / area, -m.b / area, -m.c / area, m.a / area, (m.c * m.f - m.d * m.e) / area,
                             (m.b * m.e - m.a * m.f) / area);
    for (const double number : {inverse.a, inverse.b, inverse.c, inverse.d, inverse.e, inverse.f}) {
        if (!std::isfinite(number)) return std::nullopt;
    }
    return inverse;
}

/// A path, or a block of text, that is not drawn yet.
struct Shape {
    std::string text;
    bool isText = false;
    bool clips = false;
    double left = std::numeric_limits<double>::infinity();
    double bottom = left;
    double right = -left;
    double top = -left;

    void reach(double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    }

    void reachPointsOf(const Operator& operation) {
        if (const auto point = operation.numbers<2>()) reach((*point)[0], (*point)[1]);
        if (const auto box = operation.numbers<4>()) { // a rectangle, or a curve of which two points differ
            const bool isSize = operation.name == "re";
            reach((*box)[0], (*box)[1]);
            reach((*box)[2] + (isSize ? (*box)[0] : 0), (*box)[3] + (isSize ? (*box)[1] : 0));
        }
        if (const auto curve = operation.numbers<6>()) {
            for (std::size_t i = 0; i < curve->size(); i += 2) reach((*curve)[i], (*curve)[i + 1]);
        }
    }
};

/// What a pattern is drawn as.
struct Ink {
    QPDFObjectHandle pattern;
    QPDFObjectHandle mask = QPDFObjectHandle::newNull(); // a graphics state that sets one

    bool isMasked() { return mask.isDictionary(); }

    /// A gradient whose colours are a function of the place.
    bool isFunction() {
        QPDFObjectHandle shading = subdictionary(pattern, "/Shading");
        return shading.getKey("/ShadingType").isInteger() &&
               shading.getKey("/ShadingType").getIntValue() == 1 && !shading.hasKey("/Matrix") &&
               shading.getKey("/Domain").isArray();
    }
};

/// What the engine writes for a gradient with translucent colours: a tile as large as the page, which is
/// filled with the colours, behind a mask. Nothing for other patterns.
std::optional<Ink> translucentGradient(QPDFObjectHandle tile) {
    if (!tile.isStream() || tile.getDict().hasKey("/Matrix") ||
        !tile.getDict().getKey("/BBox").isRectangle() || tile.getRawStreamData()->getSize() > longestTile) {
        return std::nullopt;
    }
    const Box box = tile.getDict().getKey("/BBox").getArrayAsRectangle();
    Ink ink{QPDFObjectHandle::newNull()};
    std::vector<std::string> names;
    bool covers = false;
    forEachOperator(tile, [&](const Operator& operation) {
        names.push_back(operation.name);
        if (operation.name == "gs") {
            ink.mask = subdictionary(subdictionary(resourcesOf(tile), "/ExtGState"), operation.lastName());
        } else if (operation.name == "scn") {
            ink.pattern = subdictionary(subdictionary(resourcesOf(tile), "/Pattern"), operation.lastName());
        } else if (const auto area = operation.numbers<4>()) {
            const auto [x, y, width, height] = *area;
            covers = x <= box.llx && y <= box.lly && x + width >= box.urx && y + height >= box.ury;
        }
    });
    const std::vector<std::string> expected{"gs", "CS", "cs", "SCN", "scn", "re", "f*", ""};
    const bool isOne =
        names == expected && covers && ink.pattern.hasKey("/Shading") && ink.mask.hasKey("/SMask");
    return isOne ? std::optional(ink) : std::nullopt;
}

/// What of the graphics state matters here.
struct State {
    struct Colour {
        double opacity = 1;
        std::string pattern; // empty for a colour
    };

    QPDFMatrix matrix;
    Colour fill;
    Colour stroke;
    double lineWidth = 1;
    double miterLimit = 10;
};

/// Rewrites the contents of one page, form or pattern.
class Grouper {
public:
    Grouper(QPDF& document, const QPDFObjectHandle& owner)
        : document_(document), owner_(owner), resources_(resourcesOf(owner)),
          states_(subdictionary(resources_, "/ExtGState")), patterns_(subdictionary(resources_, "/Pattern")),
          forms_(subdictionary(resources_, "/XObject")) {}

    void run() {
        if (!isConcerned()) return;
        forEachOperator(owner_, [this](const Operator& operation) { handle(operation); });
        if (groups_.empty()) return;
        replaceContents(document_, owner_, contents_);
        // Others may share the resources.
        QPDFObjectHandle dictionary = owner_.isStream() ? owner_.getDict() : owner_;
        QPDFObjectHandle forms = dictionary.replaceKeyAndGetNew("/Resources", resources_.shallowCopy())
                                     .replaceKeyAndGetNew("/XObject", forms_.shallowCopy());
        for (const auto& [name, group] : groups_) forms.replaceKey(name, group);
    }

private:
    bool isConcerned() {
        bool isConcerned = false;
        for (const auto& [name, pattern] : patterns_.ditems()) {
            Ink& ink = inks_[name] = translucentGradient(pattern).value_or(Ink{pattern});
            isConcerned = isConcerned || ink.isMasked() || ink.isFunction();
        }
        for (auto [name, state] : states_.ditems()) {
            double opacity = 1;
            const bool isTranslucent =
                state.isDictionary() && state.getKey("/ca").getValueAsNumber(opacity) && opacity < 1;
            isConcerned = isConcerned || (isTranslucent && !inks_.empty());
        }
        return isConcerned;
    }

    void handle(const Operator& operation) {
        if (takesForShape(operation)) return;
        Shape shape = std::exchange(shape_, {});
        shape.text += operation.text;
        if (!drawsAsGroup(shape, operation.name)) contents_ += shape.text;
        updateState(operation);
    }

    /// Returns false for what is no part of a path or text, and for what ends it.
    bool takesForShape(const Operator& operation) {
        const std::string& name = operation.name;
        if (name == "BT") shape_.isText = true;
        const bool isText = shape_.isText && isOneOf(name, {"BT", "Tf", "Td", "TD", "Tm", "T*", "Tj", "TJ"});
        const bool clips = isOneOf(name, {"W", "W*"});
        const bool isPath = isOneOf(name, {"m", "l", "v", "y", "c", "re"});
        if (!isText && !clips && !isPath && name != "h") return false;
        shape_.text += operation.text;
        shape_.clips = shape_.clips || clips;
        if (isPath) shape_.reachPointsOf(operation);
        return true;
    }

    bool drawsAsGroup(const Shape& shape, const std::string& name) {
        const bool strokes = name == "S";
        const bool fills = shape.isText ? name == "ET" : isOneOf(name, {"f", "f*"});
        const State::Colour& colour = strokes ? state_.stroke : state_.fill;
        const auto found = inks_.find(colour.pattern);
        if ((!fills && !strokes) || shape.clips || found == inks_.end()) return false;
        Ink& ink = found->second;
        if (colour.opacity >= 1 && !ink.isMasked() && !ink.isFunction()) return false;
        const std::optional<QPDFMatrix> inverse = inverted(state_.matrix);
        const std::optional<Box> box = shape.isText ? ownerBox() : boxOf(shape, strokes);
        // A group is as translucent as fills are.
        if (!inverse || !box || colour.opacity != state_.fill.opacity) return false;
        // Pattern and mask stay where they are, since the group has the coordinates of what it is drawn in.
        QPDFObjectHandle group =
            makeGroup(document_,
                      (ink.isMasked() ? "/Mask gs " : "") + textOf(state_.matrix) + "cm /Pattern " +
                          (strokes ? "CS /Ink SCN" : "cs /Ink scn") + shape.text,
                      QPDFObjectHandle::newArray(*box));
        group.getDict().replaceKey("/Matrix", QPDFObjectHandle::parse("[" + textOf(*inverse) + "]"));
        QPDFObjectHandle resources = resourcesOf(group);
        resources.replaceKeyAndGetNew("/Pattern", QPDFObjectHandle::newDictionary())
            .replaceKey("/Ink", ink.isFunction() ? narrowed(ink.pattern, *box) : ink.pattern);
        resources.replaceKeyAndGetNew("/ExtGState", QPDFObjectHandle::newDictionary())
            .replaceKey("/Mask", ink.mask);
        if (shape.isText) resources.replaceKey("/Font", subdictionary(resources_, "/Font"));
        contents_ += "\n" + add(group) + " Do";
        return true;
    }

    /// MuPDF computes a function at a fixed number of places, and pdf.js at one for each unit of the pattern:
    /// so the function is asked for no more than is drawn, and its units become those of the page or form.
    static QPDFObjectHandle narrowed(QPDFObjectHandle pattern, const Box& box) {
        QPDFObjectHandle matrix = pattern.getKey("/Matrix");
        const std::optional<QPDFMatrix> inverse =
            inverted(matrix.isMatrix() ? QPDFMatrix(matrix.getArrayAsMatrix()) : QPDFMatrix());
        QPDFObjectHandle copy = pattern.shallowCopy();
        QPDFObjectHandle shading =
            copy.replaceKeyAndGetNew("/Shading", copy.getKey("/Shading").shallowCopy());
        std::vector<double> domain;
        for (QPDFObjectHandle item : shading.getKey("/Domain").aitems()) {
            double limit = 0;
            if (item.getValueAsNumber(limit)) domain.push_back(limit);
        }
        if (!inverse || domain.size() != 4) return pattern;
        const Box part = inverse->transformRectangle(box);
        domain = {std::max(domain[0], part.llx), std::min(domain[1], part.urx), std::max(domain[2], part.lly),
                  std::min(domain[3], part.ury)};
        if (domain[0] >= domain[1] || domain[2] >= domain[3]) return pattern;
        QPDFObjectHandle narrow = QPDFObjectHandle::newArray();
        for (const double limit : domain) narrow.appendItem(QPDFObjectHandle::newReal(limit, decimals));
        shading.replaceKey("/Domain", narrow);
        shading.replaceKey("/Matrix", matrix);
        copy.removeKey("/Matrix");
        return copy;
    }

    std::optional<Box> boxOf(const Shape& shape, bool strokes) const {
        if (!(shape.left <= shape.right)) return std::nullopt;
        const double reach = strokes ? state_.lineWidth * std::max(1.0, state_.miterLimit) / 2 : 0;
        const Box box = state_.matrix.transformRectangle(
            {shape.left - reach, shape.bottom - reach, shape.right + reach, shape.top + reach});
        return Box{box.llx - softEdge, box.lly - softEdge, box.urx + softEdge, box.ury + softEdge};
    }

    std::optional<Box> ownerBox() {
        QPDFObjectHandle box =
            owner_.isStream() ? owner_.getDict().getKey("/BBox") : owner_.getKey("/MediaBox");
        return box.isRectangle() ? std::optional(box.getArrayAsRectangle()) : std::nullopt;
    }

    /// Returns the group's name.
    std::string add(const QPDFObjectHandle& group) {
        std::string name;
        do name = "/Group" + std::to_string(++number_);
        while (forms_.hasKey(name));
        groups_[name] = group;
        return name;
    }

    void updateState(const Operator& operation) {
        const std::string& name = operation.name;
        if (name == "q") {
            saved_.push_back(state_);
        } else if (name == "Q" && !saved_.empty()) {
            state_ = std::move(saved_.back());
            saved_.pop_back();
        } else if (name == "cm") {
            if (const auto m = operation.numbers<6>()) {
                state_.matrix.concat({(*m)[0], (*m)[1], (*m)[2], (*m)[3], (*m)[4], (*m)[5]});
            }
        } else if (name == "w") {
            if (const auto width = operation.numbers<1>()) state_.lineWidth = (*width)[0];
        } else if (name == "M") {
            if (const auto limit = operation.numbers<1>()) state_.miterLimit = (*limit)[0];
        } else if (name == "gs") {
            QPDFObjectHandle state = subdictionary(states_, operation.lastName());
            update(state_.fill.opacity, state, "/ca");
            update(state_.stroke.opacity, state, "/CA");
            update(state_.lineWidth, state, "/LW");
            update(state_.miterLimit, state, "/ML");
        } else if (isOneOf(name, {"scn", "cs", "sc", "g", "rg", "k"})) {
            state_.fill.pattern = name == "scn" ? operation.lastName() : std::string();
        } else if (isOneOf(name, {"SCN", "CS", "SC", "G", "RG", "K"})) {
            state_.stroke.pattern = name == "SCN" ? operation.lastName() : std::string();
        }
    }

    static void update(double& value, QPDFObjectHandle state, const char* key) {
        double number = 0;
        if (state.getKey(key).getValueAsNumber(number)) value = number;
    }

    QPDF& document_;
    QPDFObjectHandle owner_;
    QPDFObjectHandle resources_;
    QPDFObjectHandle states_;
    QPDFObjectHandle patterns_;
    QPDFObjectHandle forms_;
    std::string contents_;
    State state_;
    std::vector<State> saved_;
    Shape shape_;
    std::map<std::string, Ink> inks_;
    std::map<std::string, QPDFObjectHandle> groups_;
    int number_ = 0;
};

} // namespace

void groupPatterns(QPDF& document) {
    for (const QPDFObjectHandle& owner : contentOwners(document)) Grouper(document, owner).run();
}

} // namespace qrv::engine
