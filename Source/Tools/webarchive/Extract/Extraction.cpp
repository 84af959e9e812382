#include "Source/Tools/webarchive/Extract/Extraction.h"

#include "Platform/Engine/Address/RelativeURL.h"
#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Source/Tools/webarchive/Extract/StoredText.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include <set>

namespace qrv::webarchive {

using engine::MIMEType;

namespace {

constexpr std::string_view folderName = "files/";

MIMEType typeOf(const ListedResource& listed) {
    return MIMEType(listed.resource.MIMEType().utf8());
}

bool isText(const MIMEType& type) {
    return type.isMarkup() || type.isShownAsText() || type.isScript();
}

/// As it may stand in any text, style sheets without quotes among them.
std::string escaped(std::string_view address) {
    return percentEscaped(address, "-._~:/?#[]@!$&*+,;=%");
}

std::string fragmentOf(const std::string& address) {
    const std::size_t start = address.find('#');
    return start == address.npos ? std::string() : escaped(std::string_view(address).substr(start));
}

/// For a main resource that is no HTML page.
std::string pageShowing(const std::string& name) {
    return "<!DOCTYPE html>\n<meta http-equiv=\"refresh\" content=\"0; url=" + name + "\">\n<a href=\"" +
           name + "\">" + name + "</a>\n";
}

} // namespace

Extraction::Extraction(const WebArchive& archive) : list_(archive), index_(archive) {
    bases_.resize(list_.frames.size());
    std::map<std::tuple<const char*, std::size_t, std::string>, std::string> known;
    for (const ListedResource& listed : list_.resources) {
        const std::string_view bytes = listed.resource.data().bytes();
        const MIMEType type = typeOf(listed);
        // Texts differ by what their references are relative to.
        const bool isShared = !listed.isMain && !isText(type);
        const auto [other, isNew] =
            known.try_emplace({bytes.data(), bytes.size(), suffixOf(type, listed.address())}, std::string());
        if (isNew) mostBytes_ += 16 * bytes.size();
        const auto same = fileOf_.find(listed.resource.shared().get());
        std::string name = isShared && !other->second.empty()        ? other->second
                           : !listed.isMain && same != fileOf_.end() ? same->second
                                                                     : takeName(listed);
        if (isShared) other->second = name;
        fileOf_.try_emplace(listed.resource.shared().get(), name);
        if (listed.isMain) {
            pages_.push_back(name);
            encodings_.push_back(listed.resource.textEncodingName().utf8());
        }
        files_.push_back(std::move(name));
    }
    constexpr std::size_t alwaysReasonable = std::size_t{64} << 20;
    mostBytes_ += alwaysReasonable;
}

std::string Extraction::takeName(const ListedResource& listed) {
    const MIMEType type = typeOf(listed);
    // Shown as text in the archive, while a browser would save a file of tables, for one.
    const std::string suffix = type.isShownAsText() ? std::string("txt") : suffixOf(type, listed.address());
    if (!listed.isMain) return std::string(folderName) + names_.take(listed.address(), type);
    if (listed.frame == 0) return "index." + suffix;
    return std::string(folderName) + names_.take("frame-" + std::to_string(listed.frame), suffix);
}

void Extraction::write(OutputFolder& folder) {
    folder.makeFolder("files");
    std::set<std::string_view> written;
    for (std::size_t i = 0; i < list_.resources.size(); ++i) {
        if (!written.insert(files_[i]).second) continue;
        const ListedResource& listed = list_.resources[i];
        if (isText(typeOf(listed))) {
            folder.write(files_[i], contents(listed, i == 0));
        } else {
            folder.write(files_[i], listed.resource.data().bytes());
        }
        requireWhole(listed.resource.data());
        listed.resource.data().forgetPages();
    }
    if (files_.front() != "index.html") folder.write("index.html", pageShowing(files_.front()));
}

std::string Extraction::contents(const ListedResource& listed, bool isIndex) {
    const StoredText stored(listed.resource, encodings_[listed.frame]);
    const MIMEType type = typeOf(listed);
    const Source source{listed.frame, baseOf(listed, type.isMarkup() ? stored.text() : std::string()),
                        isIndex, listed.isMain};
    if (listed.isMain) bases_[listed.frame] = source.base;
    if (type.isMarkup()) return stored.file(withPageReferences(stored.text(), links(source)));
    if (type.isStyleSheet()) return stored.file(withStyleReferences(stored.text(), links(source).reference));
    return stored.file(stored.text());
}

/// A page without an address of its own is written by another one, whose base it has.
std::string Extraction::baseOf(const ListedResource& listed, const std::string& markup) const {
    std::string base = listed.address();
    if (engine::resolvedURL("x", base).empty())
        base = bases_[listed.isMain ? list_.frames[listed.frame].parent : listed.frame];
    const auto reference = baseReference(markup);
    const std::string own = reference ? engine::resolvedURL(*reference, base) : std::string();
    return engine::resolvedURL("x", own).empty() ? base : own;
}

PageLinks Extraction::links(const Source& source) {
    return {[this, source](const std::string& reference) { return link(reference, source); },
            [this, source](const std::string& reference) { return file(reference, source); },
            [this, source](const std::string& name, const std::string& reference) {
                return source.hasFrames ? takeFrame(name, reference, source) : std::nullopt;
            }};
}

std::optional<std::string> Extraction::file(const std::string& reference, const Source& source) const {
    const std::size_t start = reference.find_first_not_of(" \t\r\n\f");
    if (start == reference.npos || reference[start] == '#') return std::nullopt;
    const std::string address = engine::resolvedURL(reference, source.base);
    const WebResource resource = index_.resource(source.frame, address);
    if (resource.isNil()) return std::nullopt;
    return relative(fileOf_.at(resource.shared().get()), source) + fragmentOf(address);
}

/// What is no file is still found on the web, from wherever the files are.
std::optional<std::string> Extraction::link(const std::string& reference, const Source& source) const {
    if (auto name = file(reference, source)) return name;
    const std::size_t start = reference.find_first_not_of(" \t\r\n\f");
    const bool isOnWeb = engine::schemeOf(source.base).starts_with("http");
    if (start == reference.npos || reference[start] == '#' || !isOnWeb) return std::nullopt;
    const std::string address = engine::resolvedURL(reference, source.base);
    if (address == reference) return std::nullopt;
    return escaped(engine::normalizedURL(address));
}

std::string Extraction::relative(const std::string& file, const Source& source) {
    if (source.isIndex) return file;
    return file.starts_with(folderName) ? file.substr(folderName.size()) : "../" + file;
}

/// Frames that are asked for again and again cost each time.
std::optional<std::string> Extraction::takeFrame(const std::string& name, const std::string& reference,
                                                 const Source& source) {
    constexpr std::size_t askedInVain = 1000;
    if (++framesAsked_ > list_.frames.size() + askedInVain) return std::nullopt;
    const std::string address = engine::resolvedURL(reference, source.base);
    const std::string scheme = engine::schemeOf(address);
    const bool isBlank = reference.empty() || scheme.empty() || scheme == "about" || scheme == "javascript";
    const auto frame =
        isBlank ? index_.takeBlankFrame(source.frame, name) : index_.takeFrame(source.frame, name, address);
    return frame ? std::optional(relative(pages_[*frame], source)) : std::nullopt;
}

} // namespace qrv::webarchive
