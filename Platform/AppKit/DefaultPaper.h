#pragma once

// The default paper of this machine.

#include "Platform/Foundation/NSRange.h"

#include <string>

namespace qrv {

struct DefaultPaper {
    enum class Source {
        variable, ///< PAPERSIZE
        file,
        locale,
        none, ///< nothing tells it
    };

    NSSize size;
    std::string name; ///< as it was chosen, whether it is known or not
    bool isKnown;     ///< no paper has an unknown name; US Letter stands in for it
    Source source;
    std::string file; ///< the configuration file, whether it counts or not
};

/// What `defaultPaperSize` returns, and where it comes from.
DefaultPaper defaultPaper();

/// Returns the default paper's size in whole points. The first of these tells it:
/// - PAPERSIZE, a paper's name;
/// - the file that PAPERCONF names, else /etc/papersize: its first word, where lines that begin with # do not
/// count;
/// - the locale's paper, unless the locale is C, which belongs to no country.
/// It is US Letter (612 x 792) where none of them does, and for a name that is unknown. Read anew at each
/// call; main thread only.
NSSize defaultPaperSize();

} // namespace qrv
