#include "Source/Tools/batch/Doctor/Sample/SamplePage.h"

#include "Platform/WebArchive/WebArchive.h"
#include "Source/Tools/batch/Doctor/Sample/SampleScript.h"

#include <charconv>
#include <sstream>

namespace qrv::batch {

namespace {

constexpr char noto[] = "fonts-noto-core";
constexpr char notoCJK[] = "fonts-noto-cjk";

constexpr char beginning[] = "<!DOCTYPE html><html lang=\"en\"><head><meta charset=\"utf-8\"><style>"
                             "p { break-after: page; height: 2em; margin: 0; font: 24px serif }"
                             "</style></head><body>";

/// The machine itself, others near it, and one that is anywhere: addresses that belong to nobody, by RFC 5737
/// and RFC 3849.
std::string addresses(unsigned port) {
    const std::string own = std::to_string(port);
    return "http://127.0.0.1:" + own + "/ http://localhost:" + own + "/ http://[::1]:" + own +
           "/ http://192.0.2.1/ http://[2001:db8::1]/ http://web2pdf.invalid/ file:///etc/hostname";
}

/// Spaces are of another font than the letters around them.
std::string withoutSpaces(std::string text) {
    std::erase(text, ' ');
    return text;
}

template <class Number>
bool read(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

std::vector<std::string> partsOf(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

} // namespace

const std::vector<WritingSystem>& writingSystems() {
    static const std::vector<WritingSystem> systems{
        {"Latin", "en", "The quick brown fox", "fonts-liberation"},
        {"Greek", "el", "Ξεσκεπάζω την ψυχοφθόρα", "fonts-liberation"},
        {"Cyrillic", "ru", "Съешь ещё этих булок", "fonts-liberation"},
        {"Armenian", "hy", "Բոլոր մարդիկ ծնվում են", noto},
        {"Georgian", "ka", "ყველა ადამიანი იბადება", noto},
        {"Hebrew", "he", "כל בני אדם נולדו", noto},
        {"Arabic", "ar", "يولد جميع الناس", noto},
        {"Syriac", "syc", "ܒܪܫܝܬ ܐܝܬܘܗܝ", noto},
        {"Thaana", "dv", "ހުރިހާ އިންސާނުން", noto},
        {"Devanagari", "hi", "सभी मनुष्यों को", noto},
        {"Bengali", "bn", "সমস্ত মানুষ স্বাধীন", noto},
        {"Gurmukhi", "pa", "ਸਾਰਾ ਮਨੁੱਖੀ ਪਰਿਵਾਰ", noto},
        {"Gujarati", "gu", "સર્વ માનવો જન્મથી", noto},
        {"Odia", "or", "ସମସ୍ତ ମନୁଷ୍ୟ ଜନ୍ମ", noto},
        {"Tamil", "ta", "மனிதப் பிறவியினர்", noto},
        {"Telugu", "te", "మానవులెల్లరును", noto},
        {"Kannada", "kn", "ಎಲ್ಲಾ ಮಾನವರೂ", noto},
        {"Malayalam", "ml", "മനുഷ്യരെല്ലാവരും", noto},
        {"Sinhala", "si", "සියලු මිනිසුන්", noto},
        {"Thai", "th", "มนุษย์ทั้งหลาย", noto},
        {"Lao", "lo", "ມະນຸດທຸກຄົນ", noto},
        {"Khmer", "km", "មនុស្សទាំងអស់", noto},
        {"Burmese", "my", "လူတိုင်းသည်", noto},
        {"Tibetan", "bo", "འགྲོ་བ་མིའི་རིགས", noto},
        {"Mongolian", "mn-Mong", "ᠬᠦᠮᠦᠨ ᠪᠦᠷ", noto},
        {"Ethiopic", "am", "የሰው ልጅ ሁሉ", noto},
        {"Cherokee", "chr", "ᏂᎦᏓ ᎠᏂᏴᏫ", noto},
        {"Chinese, simplified", "zh-Hans", "人人生而自由汉语", notoCJK},
        {"Chinese, traditional", "zh-Hant", "人人生而自由漢語", notoCJK},
        {"Japanese", "ja", "すべての人間は自由", notoCJK},
        {"Korean", "ko", "모든 인간은 자유롭고", notoCJK},
        {"Mathematics", "en", "∀x∈ℝ: ∑√∫≤∞ ⟨𝑓⟩", "fonts-noto-core"},
        {"Arrows and boxes", "en", "←↑→↓⇒ ─│┌ ■□▲●", "fonts-dejavu-core"},
        {"Emoji", "en", "😀🎉🚀", "fonts-noto-color-emoji"},
    };
    return systems;
}

NSData sampleArchive(unsigned port) {
    std::string html = beginning;
    for (const WritingSystem& system : writingSystems())
        html += std::string("<p lang=\"") + system.language + "\">" + withoutSpaces(system.sample) + "</p>\n";
    html +=
        "<script data-addresses=\"" + addresses(port) + "\">" + sampleScript + "</script></body></html>\n";
    return WebArchive::initWithMainResource_subresources_subframeArchives(
               WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
                   NSData(std::move(html)), NSURL::URLWithString(u"http://web2pdf-batch.invalid/"),
                   u"text/html", u"UTF-8", {}),
               {}, {})
        .data();
}

std::optional<SampleReport> reportInTitle(const std::string& title) {
    const std::vector<std::string> parts = partsOf(title, ' ');
    SampleReport report;
    if (parts.size() != 5 || parts[0] != "web2pdf-batch/1" || !read(parts[2], report.tried))
        return std::nullopt;
    report.version = parts[1];
    if (parts[3] != "-") report.reached = partsOf(parts[3], ',');
    for (const std::string& number : partsOf(parts[4], ','))
        if (!read(number, report.missing.emplace_back())) return std::nullopt;
    if (report.missing.size() != writingSystems().size()) return std::nullopt;
    return report;
}

} // namespace qrv::batch
