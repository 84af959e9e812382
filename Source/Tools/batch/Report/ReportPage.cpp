#include "Source/Tools/batch/Report/ReportPage.h"

#include "Platform/Foundation/Base64.h"
#include "Source/Tools/Common/SHA256.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/batch/Progress/Tally.h"
#include "Source/Tools/batch/Report/Quantities.h"
#include "Source/Tools/batch/Report/ReportFiles.h"
#include "Source/Tools/batch/Report/Template.h"

#include <algorithm>
#include <charconv>

namespace qrv::batch {

namespace {

/// Longer texts, such as whole pictures in addresses, would help nobody.
constexpr std::size_t mostColumns = 500;

/// By which the page's policy knows its own style and script.
std::string policyHash(std::string_view text) {
    const std::string digits = sha256(text);
    std::string bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        unsigned char byte = 0;
        std::from_chars(digits.data() + at, digits.data() + at + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    return base64Encode(bytes);
}

/// "2026-11-23T10:05:00Z" as "2026-11-23 10:05 UTC"; anything else as it is.
std::string momentText(const std::string& moment) {
    if (moment.size() != 20 || moment[10] != 'T' || moment[19] != 'Z') return moment;
    return moment.substr(0, 10) + " " + moment.substr(11, 5) + " UTC";
}

/// The name of the verdict in style and script, and for people.
struct VerdictNames {
    std::string name;
    std::string word;
};

VerdictNames namesOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::complete:
        return {"complete", "Complete"};
    case Verdict::incomplete:
        return {"incomplete", "Incomplete"};
    case Verdict::failed:
        break;
    }
    return {"failed", "Failed"};
}

TemplateScope withTexts(std::map<std::string, std::string, std::less<>> texts) {
    return {.texts = std::move(texts), .parts = {}};
}

/// A number to sort by and how it is shown; nothing of what the row has not.
void addNumber(TemplateScope& row, const std::string& name, std::optional<std::int64_t> number,
               std::string (*textOf)(std::int64_t)) {
    row.texts[name] = number ? std::to_string(*number) : std::string();
    row.texts[name + "Text"] = number ? textOf(*number) : std::string();
}

TemplateScope lackOf(const Record& record) {
    const auto listed = static_cast<std::int64_t>(record.missing.size());
    TemplateScope lack = withTexts({{"count", countOf(record.missingCount, "resource")}});
    for (const MissingResource& resource : record.missing) {
        lack.parts["resources"].push_back(
            withTexts({{"kind", resource.kind}, {"address", shownWithin(resource.address, mostColumns)}}));
    }
    if (listed < record.missingCount)
        lack.parts["more"] = {
            withTexts({{"text", "and " + countText(record.missingCount - listed) + " more"}})};
    return lack;
}

TemplateScope scopeOfRow(const ReportRow& row) {
    const Record& record = row.record;
    const VerdictNames names = namesOf(verdictOf(record));
    const std::size_t start = record.archive.rfind('/') + 1;
    TemplateScope scope = withTexts({{"outcome", names.name},
                                     {"word", names.word},
                                     {"folder", record.archive.substr(0, start)},
                                     {"name", record.archive.substr(start)}});
    if (row.picture.empty()) {
        scope.parts["noPicture"] = {{}};
    } else {
        scope.parts["picture"] = {withTexts({{"data", base64Encode(row.picture)}})};
    }
    for (const auto& [kind, address] :
         {std::pair("PDF", row.pdfAddress), std::pair("Text", row.textAddress)}) {
        if (!address.empty())
            scope.parts["link"].push_back(withTexts({{"kind", kind}, {"address", address}}));
    }
    if (record.error) {
        scope.parts["reason"] = {withTexts({{"text", shownWithin(record.error->text, mostColumns)},
                                            {"domain", record.error->domain},
                                            {"code", std::to_string(record.error->code)}})};
    }
    if (record.missingCount > 0) scope.parts["lack"] = {lackOf(record)};
    const auto size =
        record.isConverted() ? std::optional(std::max<std::int64_t>(record.pdfSize, 0)) : std::nullopt;
    addNumber(scope, "missing", record.missingCount, countText);
    addNumber(scope, "pages", record.pages, countText);
    addNumber(scope, "size", size, sizeText);
    addNumber(scope, "time", record.milliseconds, durationText);
    addNumber(scope, "attempts", record.attempts, countText);
    return scope;
}

/// The bar of which each verdict has its share, in thousandths.
std::vector<TemplateScope> sharesOf(const Totals& totals) {
    std::vector<TemplateScope> shares;
    std::int64_t before = 0;
    for (const auto& [name, count] :
         {std::pair("complete", totals.complete), std::pair("incomplete", totals.incomplete),
          std::pair("failed", totals.failed)}) {
        if (count == 0) continue;
        const std::int64_t start = before * 1000 / totals.archives;
        before += count;
        const std::int64_t length = before * 1000 / totals.archives - start;
        shares.push_back(withTexts(
            {{"kind", name}, {"start", std::to_string(start)}, {"length", std::to_string(length)}}));
    }
    return shares;
}

std::string summaryOf(const Totals& totals) {
    std::string text = countOf(totals.archives, "archive");
    if (totals.incomplete) text += ", " + countText(totals.incomplete) + " converted without some resources";
    if (!totals.finished.empty()) text += ". The last was done on " + momentText(totals.finished) + ".";
    return text;
}

} // namespace

std::string reportPage(const Totals& totals, const std::vector<ReportRow>& rows,
                       const std::vector<std::string>& notes) {
    Totals listed;
    for (const ReportRow& row : rows) listed.add(row.record);
    const std::string style = std::string(reportFiles::report_css).append(reportFiles::table_css);
    TemplateScope page = withTexts({
        {"style", style},
        {"styleHash", policyHash(style)},
        {"script", std::string(reportFiles::report_js)},
        {"scriptHash", policyHash(reportFiles::report_js)},
        {"summary", summaryOf(totals)},
        {"archives", countText(totals.archives)},
        {"converted", countText(totals.complete + totals.incomplete)},
        {"failed", countText(totals.failed)},
        {"listed", countText(listed.archives)},
        {"listedComplete", countText(listed.complete)},
        {"listedIncomplete", countText(listed.incomplete)},
        {"listedFailed", countText(listed.failed)},
        {"missing", countText(totals.missing)},
        {"pages", countText(totals.pages)},
        {"size", sizeText(totals.size)},
        {"time", durationText(totals.milliseconds)},
    });
    // What there is none of has no colour.
    if (totals.complete + totals.incomplete > 0) page.texts["convertedTone"] = "complete";
    if (totals.failed > 0) page.texts["failedTone"] = "failed";
    if (totals.missing > 0) page.texts["missingTone"] = "incomplete";
    page.parts["shares"] = sharesOf(totals);
    for (const std::string& note : notes) page.parts["notes"].push_back(withTexts({{"note", note}}));
    for (const ReportRow& row : rows) page.parts["rows"].push_back(scopeOfRow(row));
    return filled(reportFiles::report_html, page);
}

} // namespace qrv::batch
