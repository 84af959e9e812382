#include "Platform/MHTML/MHTMLWriter.h"

#include "Platform/MHTML/FileAddresses.h"
#include "Platform/MHTML/MIMEMessage.h"

#include <set>
#include <string>
#include <utility>

namespace qrv {

namespace {

class Writer {
public:
    /// The identifier is empty for the page that is no frame.
    void add(const WebArchive& archive, const std::string& identifier) {
        add(archive.mainResource(), identifier);
        for (const id& resource : archive.subresources()) add(as<WebResource>(resource), {});
        for (const id& frame : archive.subframeArchives())
            add(as<WebArchive>(frame), "frame-" + std::to_string(++frames_) + "@webarchive.invalid");
    }

    /// Whether the parts are not far more than what is different among them.
    bool isReasonable() const {
        constexpr std::size_t reserve = std::size_t{64} << 20;
        return written_ <= reserve + 8 * different_;
    }

    std::string text() const { return writeMIMEMessage(message_); }

private:
    void add(const WebResource& resource, const std::string& identifier) {
        const std::string location = resource.URL().absoluteString().utf8();
        const bool isKnown = !known_.emplace(location, resource.data().bytes()).second;
        if (isKnown && identifier.empty()) return;
        if (payloads_.insert(resource.data().bytes().data()).second) different_ += resource.data().length();
        written_ += resource.data().length();
        if (!isReasonable()) return;
        message_.parts.push_back({fileStandIn(location), identifier, resource.MIMEType().utf8(),
                                  resource.textEncodingName().utf8(), std::string(resource.data().bytes())});
    }

    MIMEMessage message_;
    std::set<std::pair<std::string, std::string_view>> known_;
    std::set<const char*> payloads_;
    std::size_t different_ = 0; // bytes
    std::size_t written_ = 0;
    std::size_t frames_ = 0;
};

} // namespace

NSData MHTMLFromArchive(const WebArchive& archive) {
    if (archive.isNil()) return {};
    Writer writer;
    writer.add(archive, {});
    return writer.isReasonable() ? NSData(writer.text()) : NSData();
}

} // namespace qrv
