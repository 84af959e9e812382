#pragma once

// MHTML files: a page and what it uses, as the parts of one MIME message.

#include "Platform/WebArchive/WebArchive.h"

#include <map>
#include <string>

namespace qrv {

struct MHTMLPage {
    /// Everything beside each other: which frame a part belongs to is not said in such a file. A part without
    /// a location of its own has the address "cid:IDENTIFIER"; the page may have none.
    WebArchive archive;
    /// The addresses of parts that have an identifier, by that. Of parts with the same location only the
    /// first has that as its address.
    std::map<std::string, std::string> addresses;
};

/// What the child makes of a file: a property list of the archive's bytes and the addresses; nil if it is
/// none. Called in the process itself by tests only, where sanitizers and debuggers see it.
/// prepareForMIMEMessages is called before.
NSData listFromMHTML(const NSData& data);
MHTMLPage pageFromList(const NSData& list);

/// Reads a file in a confined child. A nil archive if it is none, and `reason`, unless null, says why: "has
/// no page in it".
MHTMLPage pageFromMHTML(const NSData& data, std::string* reason);

} // namespace qrv
