#include "Source/Tools/batch/Results/RecordText.h"

#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/Unicode.h"
#include "Source/Tools/Common/JsonText.h"

namespace qrv::batch {

namespace {

constexpr char converted[] = "converted";
constexpr char failed[] = "failed";

void addPath(JsonObject& object, const std::string& name, const std::string& path) {
    const std::string text = unicode::toUTF8Lossy(unicode::fromUTF8Lossy(path));
    object.fields.emplace_back(name, text);
    if (text != path) object.fields.emplace_back(name + "_bytes", base64Encode(path));
}

std::optional<std::string> pathOf(const JsonObject& object, const std::string& name) {
    if (const auto bytes = object.value<std::string>(name + "_bytes")) return base64Decode(*bytes);
    return object.value<std::string>(name);
}

std::vector<JsonObject> listOf(const std::vector<MissingResource>& missing) {
    std::vector<JsonObject> list;
    list.reserve(missing.size());
    for (const MissingResource& resource : missing)
        list.push_back({{{"kind", resource.kind}, {"address", resource.address}}});
    return list;
}

std::vector<MissingResource> missingOf(const JsonObject& object) {
    std::vector<MissingResource> missing;
    for (const JsonObject& resource :
         object.value<std::vector<JsonObject>>("missing").value_or(std::vector<JsonObject>()))
        missing.push_back({resource.value<std::string>("kind").value_or(""),
                           resource.value<std::string>("address").value_or("")});
    return missing;
}

} // namespace

std::string lineOf(const Record& record) {
    JsonObject line;
    const auto add = [&line](const char* name, JsonValue value) {
        line.fields.emplace_back(name, std::move(value));
    };
    addPath(line, "archive", record.archive);
    add("sha256", record.sha256);
    add("mode", record.mode);
    add("wishes", record.wishes);
    add("outcome", std::string(record.isConverted() ? converted : failed));
    if (record.error) {
        add("error_domain", record.error->domain);
        add("error_code", record.error->code);
        add("error", record.error->text);
    }
    addPath(line, "pdf", record.pdf);
    add("pdf_sha256", record.pdfSha256);
    add("pdf_size", record.pdfSize);
    if (!record.text.empty()) addPath(line, "text", record.text);
    add("pages", record.pages ? JsonValue(*record.pages) : JsonValue());
    add("milliseconds", record.milliseconds);
    add("attempts", record.attempts);
    add("missing_count", record.missingCount);
    add("missing", listOf(record.missing));
    add("finished", record.finished);
    return jsonText(line) + "\n";
}

std::optional<Record> recordOfLine(std::string_view text) {
    const std::optional<JsonObject> line = objectOfJson(text);
    if (!line) return std::nullopt;
    const auto textOf = [&line](const char* name) { return line->value<std::string>(name); };
    const auto numberOf = [&line](const char* name) { return line->value<std::int64_t>(name); };
    const auto archive = pathOf(*line, "archive");
    const auto pdf = pathOf(*line, "pdf");
    const auto outcome = textOf("outcome");
    if (!archive || !pdf || (outcome != converted && outcome != failed)) return std::nullopt;
    Record record;
    record.archive = *archive;
    record.sha256 = textOf("sha256").value_or("");
    record.mode = textOf("mode").value_or("");
    record.wishes = textOf("wishes").value_or("");
    if (outcome == failed)
        record.error = {textOf("error_domain").value_or(""), numberOf("error_code").value_or(0),
                        textOf("error").value_or("")};
    record.pdf = *pdf;
    record.pdfSha256 = textOf("pdf_sha256").value_or("");
    record.pdfSize = numberOf("pdf_size").value_or(0);
    record.text = pathOf(*line, "text").value_or("");
    record.pages = numberOf("pages");
    record.milliseconds = numberOf("milliseconds").value_or(0);
    record.attempts = numberOf("attempts").value_or(0);
    record.missingCount = numberOf("missing_count").value_or(0);
    record.missing = missingOf(*line);
    record.finished = textOf("finished").value_or("");
    return record;
}

} // namespace qrv::batch
