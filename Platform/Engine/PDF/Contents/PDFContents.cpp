#include "Platform/Engine/PDF/Contents/PDFContents.h"

#include <qpdf/QPDF.hh>
#include <utility>

namespace qrv::engine {

namespace {

/// No operator that matters has more.
constexpr std::size_t mostOperands = 9;

class OperatorReader : public QPDFObjectHandle::TokenFilter {
public:
    explicit OperatorReader(const std::function<void(const Operator&)>& handle) : handle_(handle) {}

    void handleToken(const QPDFTokenizer::Token& token) override {
        next_.text += token.getRawValue();
        switch (token.getType()) {
        case QPDFTokenizer::tt_space:
        case QPDFTokenizer::tt_comment:
        case QPDFTokenizer::tt_eof:
            break;
        case QPDFTokenizer::tt_word:
            next_.name = token.getValue();
            [[fallthrough]];
        case QPDFTokenizer::tt_inline_image:
            handle_(std::exchange(next_, {}));
            break;
        default:
            takeOperand(token);
        }
    }

    void handleEOF() override { handle_(std::exchange(next_, {})); }

private:
    void takeOperand(const QPDFTokenizer::Token& token) {
        if (next_.operands.size() >= mostOperands) return;
        const bool isName = token.getType() == QPDFTokenizer::tt_name;
        next_.operands.push_back(isName ? token.getValue() : token.getRawValue());
    }

    const std::function<void(const Operator&)>& handle_;
    Operator next_;
};

} // namespace

std::string Operator::lastName() const {
    return !operands.empty() && operands.back().starts_with('/') ? operands.back() : std::string();
}

std::vector<QPDFObjectHandle> contentOwners(QPDF& document) {
    std::vector<QPDFObjectHandle> owners;
    for (QPDFObjectHandle object : document.getAllObjects()) {
        if (!object.isStream()) continue;
        QPDFObjectHandle dictionary = object.getDict();
        if (dictionary.getKey("/Subtype").isNameAndEquals("/Form") ||
            dictionary.getKey("/PatternType").isInteger()) {
            owners.push_back(object);
        }
    }
    const std::vector<QPDFObjectHandle>& pages = document.getAllPages();
    owners.insert(owners.end(), pages.begin(), pages.end());
    return owners;
}

QPDFObjectHandle resourcesOf(QPDFObjectHandle owner) {
    return subdictionary(owner.isStream() ? owner.getDict() : owner, "/Resources");
}

QPDFObjectHandle subdictionary(QPDFObjectHandle dictionary, const std::string& key) {
    if (dictionary.isDictionary() && dictionary.getKey(key).isDictionary()) return dictionary.getKey(key);
    return QPDFObjectHandle::newDictionary();
}

void forEachOperator(QPDFObjectHandle owner, const std::function<void(const Operator&)>& handle) {
    OperatorReader reader(handle);
    if (owner.isStream()) {
        owner.filterAsContents(&reader);
    } else {
        owner.filterPageContents(&reader);
    }
}

void replaceContents(QPDF& document, QPDFObjectHandle owner, const std::string& contents) {
    if (owner.isStream()) {
        owner.replaceStreamData(contents, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    } else {
        owner.replaceKey("/Contents", document.newStream(contents));
    }
}

QPDFObjectHandle makeGroup(QPDF& document, const std::string& contents, const QPDFObjectHandle& box,
                           const std::string& colours) {
    QPDFObjectHandle form = document.newStream(contents);
    QPDFObjectHandle dictionary = form.getDict();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    dictionary.replaceKey("/BBox", box);
    dictionary.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    QPDFObjectHandle group =
        dictionary.replaceKeyAndGetNew("/Group", QPDFObjectHandle::parse("<</S /Transparency /I true>>"));
    if (!colours.empty()) group.replaceKey("/CS", QPDFObjectHandle::newName(colours));
    return form;
}

} // namespace qrv::engine
