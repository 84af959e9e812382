#include "Source/Tools/Common/Table.h"

#include "Source/Tools/Common/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace qrv {

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)), widths_(columns_.size(), 0) {
    std::vector<std::string> titles;
    titles.reserve(columns_.size());
    for (const Column& column : columns_) titles.push_back(column.title);
    add(titles);
}

void Table::add(const std::vector<std::string>& cells) {
    std::vector<std::string> row;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        row.push_back(shownWithin(cells[i], columns_[i].mostColumns));
        widths_[i] = std::max(widths_[i], columnsOf(row.back()));
    }
    rows_.push_back(std::move(row));
}

void Table::write(std::ostream& stream) const {
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string space(widths_[i] - columnsOf(row[i]), ' ');
            line += (i == 0 ? "" : "  ") + (columns_[i].isNumber ? space + row[i] : row[i] + space);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        stream << line << '\n';
    }
}

} // namespace qrv
