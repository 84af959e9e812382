#include "Platform/PDFKit/PDFWriting.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <qpdf/Buffer.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace qrv {

namespace {

/// As many as a reader has to decompress for one of them.
constexpr std::size_t objectsInStream = 200;
/// The largest number that readers know is a little above.
constexpr int mostObjects = 8'000'000;

std::string compressed(std::string_view bytes) {
    std::string result;
    Pl_String end("compressed", nullptr, result);
    Pl_Flate flate("compression", &end, Pl_Flate::a_deflate);
    flate.write(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    flate.finish();
    return result;
}

/// Finds everything that the document refers to.
class Reachable {
public:
    Reachable(QPDF& document, const UnreadObjects& unread) : unread_(unread) {
        QPDFObjectHandle trailer = document.getTrailer();
        for (const char* key : {"/Root", "/Info"}) visit(trailer.getKey(key));
        while (!waiting_.empty()) {
            const QPDFObjGen object = waiting_.back();
            waiting_.pop_back();
            const std::string_view text = object.getGen() == 0 ? unread_.text(object.getObj()) : "";
            if (text.empty()) {
                visitParts(document.getObject(object));
            } else {
                forEachReference(text,
                                 [&](int number, int generation) { meet(QPDFObjGen(number, generation)); });
            }
        }
    }

    /// In the order of their numbers.
    std::set<QPDFObjGen> objects;

private:
    /// Nothing has a number below 1, but there may be references to one.
    void meet(const QPDFObjGen& object) {
        if (object.getObj() > 0 && objects.insert(object).second) waiting_.push_back(object);
    }

    void visit(const QPDFObjectHandle& object) {
        if (object.isIndirect()) {
            meet(object.getObjGen());
        } else {
            visitParts(object);
        }
    }

    void visitParts(QPDFObjectHandle object) {
        if (object.isArray()) {
            for (const QPDFObjectHandle& item : object.aitems()) visit(item);
            return;
        }
        const bool isStream = object.isStream();
        if (isStream) object = object.getDict();
        if (!object.isDictionary()) return;
        for (const auto& [key, value] : object.ditems()) {
            if (!isStream || key != "/Length") visit(value);
        }
    }

    const UnreadObjects& unread_;
    std::vector<QPDFObjGen> waiting_;
};

/// Where an object is: an entry of the cross-reference stream.
struct Place {
    std::uint8_t kind = 0; ///< 1: at an offset of the file; 2: in an object stream
    std::uint64_t where = 0;
    std::uint64_t detail = 0; ///< the generation, or the index in the stream
};

class Writer {
public:
    Writer(QPDF& document, const UnreadObjects& unread) : document_(document), unread_(unread) {}

    void write() {
        const std::set<QPDFObjGen> objects = Reachable(document_, unread_).objects;
        next_ = objects.empty() ? 1 : objects.rbegin()->getObj() + 1;
        if (next_ > mostObjects) throw std::range_error("numbers too large for readers");
        file_ = "%PDF-" + std::max<std::string>(document_.getPDFVersion(), "1.5") + "\n%\xBF\xF7\xA2\xFE\n";
        for (const QPDFObjGen& object : objects) writeObject(object);
        finishObjectStream();
        writeTable();
    }

    PDFEnding ending() const {
        PDFEnding ending = endingOf(document_, trailer_);
        ending.table = static_cast<long long>(table_);
        return ending;
    }

    NSData takeFile() { return NSData(std::move(file_)); }

private:
    void writeObject(const QPDFObjGen& object) {
        const std::string_view text = object.getGen() == 0 ? unread_.text(object.getObj()) : "";
        if (!text.empty()) return addToObjectStream(object.getObj(), text);
        QPDFObjectHandle handle = document_.getObject(object);
        // A reference to a generation that does not exist, which is null: the number is that of another
        // object.
        if (handle.isNull() && places_.contains(object.getObj())) return;
        if (handle.isStream()) {
            writeStream(object, handle);
        } else if (object.getGen() == 0) {
            addToObjectStream(object.getObj(), handle.unparseResolved());
        } else {
            begin(object);
            file_ += handle.unparseResolved() + "\nendobj\n";
        }
    }

    /// Readers cannot decompress a stream without any data, nor are they expected to for metadata.
    void writeStream(const QPDFObjGen& object, QPDFObjectHandle stream) {
        const std::shared_ptr<Buffer> data = stream.getRawStreamData();
        const std::string_view raw(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
        QPDFObjectHandle dictionary = stream.getDict().shallowCopy();
        if (raw.empty() || dictionary.hasKey("/Filter") || dictionary.isDictionaryOfType("/Metadata")) {
            writeStream(object, dictionary, raw);
        } else {
            writeCompressed(object, dictionary, raw);
        }
    }

    void writeCompressed(const QPDFObjGen& object, QPDFObjectHandle dictionary, std::string_view bytes) {
        dictionary.replaceKey("/Filter", QPDFObjectHandle::newName("/FlateDecode"));
        writeStream(object, dictionary, compressed(bytes));
    }

    void writeStream(const QPDFObjGen& object, QPDFObjectHandle dictionary, std::string_view bytes) {
        dictionary.replaceKey("/Length", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
        begin(object);
        file_ += dictionary.unparse() + "\nstream\n";
        file_ += bytes;
        file_ += "\nendstream\nendobj\n";
    }

    void begin(const QPDFObjGen& object) {
        places_[object.getObj()] = {1, file_.size(), static_cast<std::uint64_t>(object.getGen())};
        file_ += object.unparse(' ') + " obj\n";
    }

    void addToObjectStream(int number, std::string_view text) {
        places_[number] = {2, static_cast<std::uint64_t>(next_), held_++};
        numbers_ += std::to_string(number) + " " + std::to_string(texts_.size()) + " ";
        texts_ += text;
        texts_ += '\n';
        if (held_ == objectsInStream) finishObjectStream();
    }

    void finishObjectStream() {
        if (held_ == 0) return;
        QPDFObjectHandle dictionary = QPDFObjectHandle::parse("<</Type /ObjStm>>");
        dictionary.replaceKey("/N", QPDFObjectHandle::newInteger(static_cast<long long>(held_)));
        dictionary.replaceKey("/First",
                              QPDFObjectHandle::newInteger(static_cast<long long>(numbers_.size())));
        writeCompressed(QPDFObjGen(next_++, 0), dictionary, numbers_ + texts_);
        numbers_.clear();
        texts_.clear();
        held_ = 0;
    }

    /// The last object of the file: a row for each object, in which each byte is the difference to the one
    /// above it, since that is compressed best.
    void writeTable() {
        table_ = file_.size();
        places_[next_] = {1, table_, 0};
        std::string rows;
        std::string above(columns, '\0');
        for (const auto& [number, place] : places_) {
            const std::string row = rowOf(place);
            rows += '\2'; // the predictor of the row
            for (std::size_t i = 0; i < columns; ++i) rows += static_cast<char>(row[i] - above[i]);
            above = row;
        }
        trailer_ =
            QPDFObjectHandle::parse("<</Type /XRef /W [1 5 2] /DecodeParms <</Columns 8 /Predictor 12>>>>");
        trailer_.replaceKey("/Size", QPDFObjectHandle::newInteger(next_ + 1));
        trailer_.replaceKey("/Index", indexOfTable());
        trailer_.replaceKey("/ID", identifier(rows));
        for (const char* key : {"/Root", "/Info"}) {
            trailer_.replaceKey(key, document_.getTrailer().getKey(key));
        }
        writeCompressed(QPDFObjGen(next_, 0), trailer_, rows);
        file_ += "startxref\n" + std::to_string(table_) + "\n%%EOF\n";
    }

    static std::string rowOf(const Place& place) {
        std::string row(1, static_cast<char>(place.kind));
        for (int shift = 32; shift >= 0; shift -= 8) row += static_cast<char>(place.where >> shift);
        for (int shift = 8; shift >= 0; shift -= 8) row += static_cast<char>(place.detail >> shift);
        return row;
    }

    /// The first number and the count of each run of numbers.
    QPDFObjectHandle indexOfTable() const {
        QPDFObjectHandle index = QPDFObjectHandle::newArray();
        const auto append = [&](long long number) { index.appendItem(QPDFObjectHandle::newInteger(number)); };
        long long first = 0;
        long long count = 0;
        for (const auto& [number, place] : places_) {
            if (number == first + count) {
                ++count;
                continue;
            }
            if (count > 0) append(first), append(count);
            first = number;
            count = 1;
        }
        append(first), append(count);
        return index;
    }

    /// The one that the document has had from the start, and one of its contents.
    QPDFObjectHandle identifier(const std::string& rows) {
        const std::hash<std::string_view> hash;
        std::string second;
        for (const std::uint64_t half : {hash(file_), hash(rows)}) {
            for (int shift = 56; shift >= 0; shift -= 8) second += static_cast<char>(half >> shift);
        }
        QPDFObjectHandle old = document_.getTrailer().getKey("/ID");
        const bool hasFirst = old.isArray() && old.getArrayNItems() > 0 && old.getArrayItem(0).isString();
        QPDFObjectHandle identifier = QPDFObjectHandle::newArray();
        identifier.appendItem(hasFirst ? old.getArrayItem(0) : QPDFObjectHandle::newString(second));
        identifier.appendItem(QPDFObjectHandle::newString(second));
        return identifier;
    }

    static constexpr std::size_t columns = 8; // bytes of a row: 1, 5 and 2

    QPDF& document_;
    const UnreadObjects& unread_;
    std::string file_;
    std::map<int, Place> places_;
    int next_ = 1;
    std::size_t table_ = 0;
    QPDFObjectHandle trailer_;
    // The object stream that is being filled.
    std::string numbers_;
    std::string texts_;
    std::size_t held_ = 0;
};

} // namespace

NSData serializePDF(QPDF& document, const UnreadObjects& unread, PDFEnding* ending) {
    try {
        Writer writer(document, unread);
        writer.write();
        if (document.anyWarnings()) return {};
        if (ending) *ending = writer.ending();
        return writer.takeFile();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace qrv
