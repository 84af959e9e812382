#include "Platform/Engine/PDF/Contents/PDFMasks.h"

#include "Platform/Engine/PDF/Contents/PDFContents.h"

#include <map>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QUtil.hh>
#include <string_view>
#include <utility>

namespace qrv::engine {

namespace {

using Box = QPDFObjectHandle::Rectangle;

/// The function by which the engine inverts masks, and what it may be long in the file.
constexpr std::string_view inversion = "{1 exch sub}";
constexpr std::size_t longestInversion = 64;
/// The most that a mask which covers its whole box has in the file.
constexpr std::size_t longestCover = 4096;

bool contains(const Box& outer, const Box& inner) {
    return outer.llx <= inner.llx && outer.lly <= inner.lly && outer.urx >= inner.urx &&
           outer.ury >= inner.ury;
}

/// The box of a form that is not moved.
std::optional<Box> boxOf(QPDFObjectHandle form) {
    if (!form.isStream() || form.getDict().hasKey("/Matrix")) return std::nullopt;
    QPDFObjectHandle box = form.getDict().getKey("/BBox");
    return box.isRectangle() ? std::optional(box.getArrayAsRectangle()) : std::nullopt;
}

bool inverts(QPDFObjectHandle function) {
    if (!function.isStream() || function.getRawStreamData()->getSize() > longestInversion) return false;
    const std::shared_ptr<Buffer> data = function.getStreamData(qpdf_dl_generalized);
    return std::string_view(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()) == inversion;
}

bool hasInvertedMask(const QPDFObjectHandle& state) {
    QPDFObjectHandle mask = subdictionary(state, "/SMask");
    return boxOf(mask.getKey("/G")) && mask.getKey("/S").isNameAndEquals("/Alpha") &&
           inverts(mask.getKey("/TR"));
}

bool isOpaque(QPDFObjectHandle state) {
    double opacity = 0;
    return !state.hasKey("/SMask") && state.getKey("/ca").getValueAsNumber(opacity) && opacity == 1;
}

/// Whether a form is nothing but opaque rectangles, of which one covers its box.
bool coversItsBox(QPDFObjectHandle form, const Box& box) {
    if (form.getRawStreamData()->getSize() > longestCover) return false;
    QPDFObjectHandle states = subdictionary(resourcesOf(form), "/ExtGState");
    bool isPlain = true;
    bool reaches = false;
    bool covers = false;
    forEachOperator(form, [&](const Operator& operation) {
        const std::string& name = operation.name;
        if (name == "re") {
            const auto area = operation.numbers<4>();
            const auto [x, y, width, height] = area.value_or(std::array<double, 4>{});
            reaches = area && contains({x, y, x + width, y + height}, box);
        } else if (name == "f") {
            covers = covers || reaches;
        } else if (name == "gs") {
            isPlain = isPlain && isOpaque(subdictionary(states, operation.lastName()));
        } else {
            isPlain = isPlain && (name.empty() || name == "rg" || name == "RG");
        }
    });
    return isPlain && covers;
}

class MaskResolver {
public:
    explicit MaskResolver(QPDF& document) : document_(document) {}

    void run() {
        for (const QPDFObjectHandle& owner : contentOwners(document_)) resolve(owner);
    }

private:
    void resolve(const QPDFObjectHandle& owner) {
        std::map<std::string, Box> blind;
        for (const auto& [name, state] : subdictionary(resourcesOf(owner), "/ExtGState").ditems()) {
            if (const std::optional<Box> box = resolveState(state)) blind[name] = *box;
        }
        if (!blind.empty()) removeUnseen(owner, blind);
    }

    /// Returns the box within which the mask lets nothing through.
    std::optional<Box> resolveState(QPDFObjectHandle state) {
        if (!state.isIndirect() || !state.isDictionary()) return std::nullopt;
        const auto [found, isNew] = blind_.try_emplace(state.getObjGen());
        if (!isNew || !hasInvertedMask(state)) return found->second;
        QPDFObjectHandle mask = state.getKey("/SMask");
        QPDFObjectHandle form = mask.getKey("/G");
        const Box box = *boxOf(form);
        if (coversItsBox(form, box)) found->second = box;
        state.replaceKey("/SMask", withoutInversion(mask, box));
        return found->second;
    }

    /// A mask that is black where the old one was opaque, and white elsewhere.
    QPDFObjectHandle withoutInversion(QPDFObjectHandle mask, const Box& box) {
        QPDFObjectHandle straight = mask.shallowCopy();
        straight.removeKey("/TR");
        std::string area;
        for (const double number : {box.llx, box.lly, box.urx - box.llx, box.ury - box.lly}) {
            area += QUtil::double_to_string(number) + " ";
        }
        QPDFObjectHandle inverted = makeGroup(document_, "1 g " + area + "re f /Mask gs 0 g " + area + "re f",
                                              mask.getKey("/G").getDict().getKey("/BBox"), "/DeviceGray");
        resourcesOf(inverted)
            .replaceKeyAndGetNew("/ExtGState", QPDFObjectHandle::newDictionary())
            .replaceKeyAndGetNew("/Mask", QPDFObjectHandle::newDictionary())
            .replaceKey("/SMask", straight);
        QPDFObjectHandle result = QPDFObjectHandle::parse("<</Type /Mask /S /Luminosity /BC [1]>>");
        result.replaceKey("/G", inverted);
        return result;
    }

    /// Removes forms that are drawn at once after such a mask has been set, in the same coordinates and
    /// within its box.
    void removeUnseen(const QPDFObjectHandle& owner, const std::map<std::string, Box>& blind) {
        QPDFObjectHandle forms = subdictionary(resourcesOf(owner), "/XObject");
        std::string contents;
        bool hasChanged = false;
        auto mask = blind.end();
        forEachOperator(owner, [&](const Operator& operation) {
            const auto before =
                std::exchange(mask, operation.name == "gs" ? blind.find(operation.lastName()) : blind.end());
            if (operation.name == "Do" && before != blind.end()) {
                const std::optional<Box> box = boxOf(forms.getKey(operation.lastName()));
                if (box && contains(before->second, *box)) {
                    hasChanged = true;
                    return;
                }
            }
            contents += operation.text;
        });
        if (hasChanged) replaceContents(document_, owner, contents);
    }

    QPDF& document_;
    std::map<QPDFObjGen, std::optional<Box>> blind_;
};

} // namespace

void resolveInvertedMasks(QPDF& document) {
    MaskResolver(document).run();
}

} // namespace qrv::engine
