#include "Platform/PDFKit/PDFUpdate.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <sstream>
#include <utility>

namespace qrv {

namespace {

using Entries = std::map<std::string, std::string>;

std::string dictionaryOf(const Entries& entries) {
    std::string text = "<< ";
    for (const auto& [name, value] : entries) text.append(name).append(" ").append(value).append(" ");
    return text + ">>";
}

/// The tree of embedded files may have one of that name already.
NSString freeName(const PDFCatalog& catalog, const NSString& wanted) {
    NSString name = wanted;
    for (int number = 2; catalog.files.contains(nameInTree(name)); ++number)
        name = NSString::stringWithFormat(u"%@ (%d)", wanted, number);
    return name;
}

class Update {
public:
    Update(const PDFEnding& ending, std::size_t length, ByteSink sink)
        : ending_(ending), place_(length - static_cast<std::size_t>(ending.header)), size_(ending.size),
          information_(ending.informationObject), sink_(std::move(sink)) {
        if (information_.empty()) information_ = newObject();
    }

    void write(const std::vector<PDFAttributeChange>& changes) {
        emit("\n");
        add(information_, informationWith(changes));
        if (!ending_.catalogWithoutMetadata.empty())
            add(ending_.catalogObject, ending_.catalogWithoutMetadata);
        finish();
    }

    void write(PDFCatalog catalog, const std::vector<PDFAttributeChange>& changes,
               const PDFAdditions& additions) {
        emit("\n");
        add(information_, informationWith(changes));
        if (!changes.empty()) catalog.entries.erase("/Metadata");
        if (additions.metadata) catalog.entries["/Metadata"] = addMetadata(additions.metadata);
        if (additions.attachment) addAttachment(*additions.attachment, catalog);
        add(ending_.catalogObject, dictionaryOf(catalog.entries));
        finish();
    }

private:
    void emit(std::string_view bytes) {
        sink_(bytes);
        place_ += bytes.size();
    }

    std::string newObject() { return std::to_string(size_++) + " 0"; }

    void begin(const std::string& object) {
        places_[numbersOf(object)] = place_;
        emit(object + " obj\n");
    }

    void add(const std::string& object, const std::string& text) {
        begin(object);
        emit(text + "\nendobj\n");
    }

    /// Not compressed, so that it is found by who knows nothing of PDF. Returns a reference.
    std::string addMetadata(const NSData& packet) {
        const std::string object = newObject();
        begin(object);
        emit("<< /Type /Metadata /Subtype /XML /Length " + std::to_string(packet.length()) + " >>\nstream\n");
        emit(packet.bytes());
        emit("\nendstream\nendobj\n");
        return object + " R";
    }

    void addAttachment(PDFAttachment file, PDFCatalog& catalog) {
        file.name = freeName(catalog, file.name);
        const std::string embedded = addEmbedded(file);
        const std::string dictionary = newObject();
        add(dictionary, fileDictionaryOf(file, embedded));
        catalog.files[nameInTree(file.name)] = dictionary + " R";
        std::string tree = "<< /Names [ ";
        for (const auto& [name, value] : catalog.files) tree += syntaxOfString(name) + " " + value + " ";
        catalog.names["/EmbeddedFiles"] = tree + "] >>";
        catalog.entries["/Names"] = dictionaryOf(catalog.names);
        std::string associated = "[ ";
        for (const std::string& other : catalog.associatedFiles) associated += other + " ";
        catalog.entries["/AF"] = associated + dictionary + " R ]";
    }

    /// Nobody knows how long it will be before it is written: its length is an object behind it.
    std::string addEmbedded(const PDFAttachment& file) {
        const std::string object = newObject();
        const std::string length = newObject();
        begin(object);
        emit("<< " + parametersOf(file) + "/Filter /FlateDecode /Length " + length + " R >>\nstream\n");
        const std::size_t start = place_;
        compress(file.contents.bytes(), [this](std::string_view bytes) { emit(bytes); });
        const std::size_t end = place_;
        emit("\nendstream\nendobj\n");
        add(length, std::to_string(end - start));
        return object;
    }

    void finish() {
        const std::size_t table = place_;
        if (ending_.hasStream) {
            writeStream();
        } else {
            writeTable();
        }
        emit("startxref\n" + std::to_string(table) + "\n%%EOF\n");
    }

    std::string informationWith(const std::vector<PDFAttributeChange>& changes) const {
        Entries entries(ending_.information.begin(), ending_.information.end());
        for (const PDFAttributeChange& change : changes) {
            entries.erase(change.name);
            if (change.kind != PDFAttributeChange::Kind::removal) entries[change.name] = syntaxOf(change);
        }
        return dictionaryOf(entries);
    }

    std::string trailer() const {
        return ending_.trailer + "/Info " + information_ + " R /Size " + std::to_string(size_) + " /Prev " +
               std::to_string(ending_.table) + " ";
    }

    void writeTable() {
        emit("xref\n");
        for (const auto& [object, place] : places_) {
            const auto [number, generation] = object;
            char row[64];
            std::snprintf(row, sizeof row, "%d 1\n%010zu %05d n \n", number, place, generation);
            emit(row);
        }
        emit("trailer\n<< " + trailer() + ">>\n");
    }

    /// Of rows that are not compressed: there are few.
    void writeStream() {
        const std::string object = newObject();
        places_[numbersOf(object)] = place_;
        std::string index;
        std::string rows;
        for (const auto& [name, place] : places_) {
            const auto [number, generation] = name;
            index += std::to_string(number) + " 1 ";
            rows += '\1'; // an object at an offset
            for (int shift = 32; shift >= 0; shift -= 8)
                rows += static_cast<char>(std::uint64_t{place} >> shift);
            for (int shift = 8; shift >= 0; shift -= 8) rows += static_cast<char>(generation >> shift);
        }
        emit(object + " obj\n<< /Type /XRef /W [1 5 2] /Index [" + index + "] /Length " +
             std::to_string(rows.size()) + " " + trailer() + ">>\nstream\n" + rows + "\nendstream\nendobj\n");
    }

    static std::pair<int, int> numbersOf(const std::string& object) {
        int number = 0;
        int generation = 0;
        std::istringstream(object) >> number >> generation;
        return {number, generation};
    }

    const PDFEnding& ending_;
    std::size_t place_; // of what is written next
    long long size_;
    std::string information_;
    ByteSink sink_;
    std::map<std::pair<int, int>, std::size_t> places_; // by number and generation
};

} // namespace

std::string updateOfPDF(const PDFEnding& ending, std::size_t length,
                        const std::vector<PDFAttributeChange>& changes) {
    std::string text;
    if (changes.empty()) return text;
    Update(ending, length, [&text](std::string_view bytes) { text += bytes; }).write(changes);
    return text;
}

void writeUpdateOfPDF(const PDFEnding& ending, const PDFCatalog& catalog, std::size_t length,
                      const std::vector<PDFAttributeChange>& changes, const PDFAdditions& additions,
                      const ByteSink& sink) {
    Update(ending, length, sink).write(catalog, changes, additions);
}

} // namespace qrv
