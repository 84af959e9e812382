#pragma once

// A table for people at a terminal.

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace qrv {

/// Cells may be any text. Columns are as wide as their widest cell, which is cut where it is wider than the
/// column may be.
class Table {
public:
    struct Column {
        std::string title;
        std::size_t mostColumns;
        bool isNumber = false; ///< set to the right
    };

    explicit Table(std::vector<Column> columns);

    /// As many cells as there are columns.
    void add(const std::vector<std::string>& cells);

    void write(std::ostream& stream) const;

private:
    std::vector<Column> columns_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace qrv
