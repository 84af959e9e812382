#pragma once

// The names by which cells of a table refer to their header cells. The engine makes them of numbers that its
// nodes happen to have, which differ from run to run.

class QPDF;

namespace qrv {
class UnreadObjects;
}

namespace qrv::engine {

/// Numbers the elements that have such a name from one, in the order of their objects, wherever the structure
/// tree has the name. Names of any other form stay. `unread` are the elements that the document has left
/// unread. Throws what the PDF library throws.
void numberElementIDs(QPDF& document, UnreadObjects& unread);

} // namespace qrv::engine
