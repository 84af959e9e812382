#pragma once

// What became of one archive: a line of the results.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

/// Why an archive could not be converted: the tool's error, or one of the batch's own domain.
struct ConversionError {
    std::string domain;
    std::int64_t code;
    std::string text;

    bool operator==(const ConversionError&) const = default;
};

/// Something that the page asked for and the archive does not hold.
struct MissingResource {
    std::string kind; ///< "image", "style sheet", ...
    std::string address;

    bool operator==(const MissingResource&) const = default;
};

struct Record {
    /// The archive's path as it was given or found. Any bytes, like all paths here.
    std::string archive;
    /// Of the archive, in hexadecimal digits; empty if it could not be read.
    std::string sha256;
    /// "print" or "screen".
    std::string mode;
    /// What was asked for besides the PDF, such as "xmp,attach,text".
    std::string wishes;
    /// Nothing: it was converted.
    std::optional<ConversionError> error;
    /// The PDF's path below the output folder; there is such a file only where there was no error.
    std::string pdf;
    std::string pdfSha256;
    std::int64_t pdfSize = 0;
    /// Path of the PDF's text below the output folder; empty where there is none.
    std::string text;
    /// Nothing where nobody could count them.
    std::optional<std::int64_t> pages;
    std::int64_t milliseconds = 0;
    std::int64_t attempts = 0;
    /// How many resources are missing, and the first of them.
    std::int64_t missingCount = 0;
    std::vector<MissingResource> missing;
    /// When it was done, such as "2026-11-23T10:05:00Z".
    std::string finished;

    bool isConverted() const { return !error; }

    bool operator==(const Record&) const = default;
};

} // namespace qrv::batch
