#include "Platform/PDFKit/PDFUpdate.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <sstream>
#include <utility>

namespace qrv {

namespace {

class Update {
public:
    Update(const PDFEnding& ending, std::size_t length)
        : ending_(ending), start_(length - static_cast<std::size_t>(ending.header)), size_(ending.size),
          information_(ending.informationObject) {
        if (information_.empty()) information_ = newObject();
    }

    std::string text(const std::vector<PDFAttributeChange>& changes) {
        text_ = "\n";
        add(information_, informationWith(changes));
        if (!ending_.catalogWithoutMetadata.empty())
            add(ending_.catalogObject, ending_.catalogWithoutMetadata);
        const std::size_t table = place();
        if (ending_.hasStream) {
            writeStream();
        } else {
            writeTable();
        }
        return text_ + "startxref\n" + std::to_string(table) + "\n%%EOF\n";
    }

private:
    std::size_t place() const { return start_ + text_.size(); }

    std::string newObject() { return std::to_string(size_++) + " 0"; }

    void add(const std::string& object, const std::string& text) {
        places_[numbersOf(object)] = place();
        text_ += object + " obj\n" + text + "\nendobj\n";
    }

    std::string informationWith(const std::vector<PDFAttributeChange>& changes) const {
        std::map<std::string, std::string> entries(ending_.information.begin(), ending_.information.end());
        for (const PDFAttributeChange& change : changes) {
            entries.erase(change.name);
            if (change.kind != PDFAttributeChange::Kind::removal) entries[change.name] = syntaxOf(change);
        }
        std::string text = "<< ";
        for (const auto& [name, value] : entries) text.append(name).append(" ").append(value).append(" ");
        return text + ">>";
    }

    std::string trailer() const {
        return ending_.trailer + "/Info " + information_ + " R /Size " + std::to_string(size_) + " /Prev " +
               std::to_string(ending_.table) + " ";
    }

    void writeTable() {
        text_ += "xref\n";
        for (const auto& [object, place] : places_) {
            const auto [number, generation] = object;
            char row[64];
            std::snprintf(row, sizeof row, "%d 1\n%010zu %05d n \n", number, place, generation);
            text_ += row;
        }
        text_ += "trailer\n<< " + trailer() + ">>\n";
    }

    /// Of rows that are not compressed: there are few.
    void writeStream() {
        const std::string object = newObject();
        places_[numbersOf(object)] = place();
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
        text_ += object + " obj\n<< /Type /XRef /W [1 5 2] /Index [" + index + "] /Length " +
                 std::to_string(rows.size()) + " " + trailer() + ">>\nstream\n" + rows +
                 "\nendstream\nendobj\n";
    }

    static std::pair<int, int> numbersOf(const std::string& object) {
        int number = 0;
        int generation = 0;
        std::istringstream(object) >> number >> generation;
        return {number, generation};
    }

    const PDFEnding& ending_;
    const std::size_t start_;
    long long size_;
    std::string information_;
    std::string text_;
    std::map<std::pair<int, int>, std::size_t> places_; // by number and generation
};

} // namespace

std::string updateOfPDF(const PDFEnding& ending, std::size_t length,
                        const std::vector<PDFAttributeChange>& changes) {
    return changes.empty() ? std::string() : Update(ending, length).text(changes);
}

} // namespace qrv
