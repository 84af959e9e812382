#pragma once

// PDF files for tests, written object by object as plain text, and a look at the results with other programs.

#include "Tests/Support/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace qrv {

/// A file of these objects, numbered from 1, of which the first is the catalog. The trailer may have more
/// entries, such as "/Info 4 0 R".
inline std::string makePDF(const std::vector<std::string>& objects, const std::string& trailer = "") {
    std::string file = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        std::array<char, 32> line{};
        std::snprintf(line.data(), line.size(), "%010zu 00000 n \n", file.size());
        table += line.data();
        file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects.size() + 1);
    const std::string start = std::to_string(file.size());
    return file + "xref\n0 " + size + "\n" + table + "trailer\n<</Size " + size + " /Root 1 0 R " + trailer +
           ">>\nstartxref\n" + start + "\n%%EOF\n";
}

inline std::string makeStream(const std::string& contents, const std::string& entries = "") {
    return "<</Length " + std::to_string(contents.size()) + " " + entries + ">>\nstream\n" + contents +
           "\nendstream";
}

/// What a program prints; shell quoting is the caller's.
inline std::string outputOf(const std::string& command) {
    const auto close = [](FILE* file) { ::pclose(file); };
    const std::unique_ptr<FILE, decltype(close)> pipe(::popen((command + " 2>&1").c_str(), "r"), close);
    std::string output;
    std::array<char, 4096> chunk{};
    while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), pipe.get())) {
        output.append(chunk.data(), count);
    }
    return output;
}

/// A page and, from the fourth on, more objects.
inline std::string makeOnePage(const std::vector<std::string>& others = {}) {
    std::vector<std::string> objects{"<</Type/Catalog/Pages 2 0 R/Others[4 0 R 5 0 R]>>",
                                     "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                     "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Resources<<>>>>"};
    objects.insert(objects.end(), others.begin(), others.end());
    return makePDF(objects);
}

/// What a program says of a file; its place in the command is marked by an "@".
inline std::string inspect(const std::string& bytes, std::string command) {
    const TemporaryFolder folder;
    command.replace(command.find('@'), 1, "'" + folder.write("out.pdf", bytes).utf8() + "'");
    return outputOf(command);
}

} // namespace qrv
