#include "Source/Tools/webarchive/ListCommand.h"

#include "Source/Tools/Common/JsonText.h"
#include "Source/Tools/Common/SHA256.h"
#include "Source/Tools/Common/Table.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"
#include "Source/Tools/webarchive/Reading/ResourceList.h"

#include <iostream>
#include <map>

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    bool asJson = false;
};

/// Hashes of resources, of which many may share their bytes.
class Hashes {
public:
    const std::string& of(const WebResource& resource) {
        const std::string_view bytes = resource.data().bytes();
        const auto [known, isNew] = known_.try_emplace({bytes.data(), bytes.size()});
        if (isNew) {
            known->second = sha256(bytes);
            requireWhole(resource.data());
            resource.data().forgetPages();
        }
        return known->second;
    }

private:
    std::map<std::pair<const char*, std::size_t>, std::string> known_;
};

JsonValue textOrNull(const NSString& text) {
    return text.isNil() ? JsonValue() : JsonValue(text.utf8());
}

void writeJson(const ResourceList& list) {
    Hashes hashes;
    std::int64_t index = 0;
    for (const auto& [frame, isMain, resource] : list.resources) {
        const JsonObject line{{
            {"index", index},
            {"frame", list.frames[frame].path},
            {"kind", std::string(isMain ? "main" : "sub")},
            {"type", resource.MIMEType().utf8()},
            {"size", static_cast<std::int64_t>(resource.data().length())},
            {"encoding", textOrNull(resource.textEncodingName())},
            {"sha256", hashes.of(resource)},
            {"address", textOrNull(resource.URL().absoluteString())},
            {"frameName", textOrNull(resource.frameName())},
        }};
        std::cout << (index++ == 0 ? "[\n" : ",\n") << jsonText(line);
    }
    std::cout << "\n]\n";
}

void writeTable(const ResourceList& list) {
    Hashes hashes;
    Table table({{"INDEX", 8, true},
                 {"FRAME", 30},
                 {"KIND", 8},
                 {"TYPE", 40},
                 {"SIZE", 16, true},
                 {"ENCODING", 20},
                 {"SHA-256", 12},
                 {"ADDRESS", 200}});
    std::size_t index = 0;
    for (const auto& [frame, isMain, resource] : list.resources) {
        const std::string name = isMain ? resource.frameName().utf8() : std::string();
        table.add({std::to_string(index++), list.frames[frame].path + (name.empty() ? "" : " " + name),
                   isMain ? "main" : "sub", resource.MIMEType().utf8(),
                   std::to_string(resource.data().length()), resource.textEncodingName().utf8(),
                   hashes.of(resource).substr(0, 12), resource.URL().absoluteString().utf8()});
    }
    table.write(std::cout);
}

int list(const Options& options) {
    const ResourceList resources(readArchive(options.archive));
    options.asJson ? writeJson(resources) : writeTable(resources);
    return success;
}

} // namespace

void addListCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command =
        commands.add("list", "Lists the resources of a web archive", [=] { return list(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.flag(options->asJson, "--json",
                 "Writes JSON, with whole addresses and hashes, instead of a table");
}

} // namespace qrv::webarchive
