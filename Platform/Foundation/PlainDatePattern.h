#pragma once

// Date patterns of plain fields, as those of logs: years to milliseconds in their usual digits, short English
// months and text. They need no library, which takes longer to make a pattern than to write a line.

#include "Platform/Foundation/LocalTime.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qrv {

class PlainDatePattern {
public:
    /// Nothing when the pattern has other fields.
    static std::optional<PlainDatePattern> parse(std::u16string_view pattern);

    /// Whether the moment is in the years in which all calendars and their writers agree, 1600 to 9999.
    static bool canFormat(const LocalTime& time);

    /// Any thread.
    std::u16string format(const LocalTime& time) const;

private:
    enum class Field { text, year, month, monthName, day, hour, minute, second, millisecond };

    struct Piece {
        Field field;
        std::u16string text;
    };

    static std::optional<Field> field(std::u16string_view letters);

    std::vector<Piece> pieces_;
};

} // namespace qrv
