#include "Source/Tools/batch/Doctor/Settings.h"

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PreferenceFiles.h"
#include "Source/Tools/Common/SettingsDomain.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace qrv::batch {

namespace {

constexpr char area[] = "settings";
constexpr const auto& domain = QuillvaneSettingsDomain;

struct Setting {
    enum class Kind { integer, boolean };

    const char* key;
    Kind kind;
    long long standard;
    bool hasEffect = true;
};

constexpr std::array settings{
    Setting{"WebToolExtraLoadingTime", Setting::Kind::integer, 2},
    Setting{"Web2PDFPageMargin", Setting::Kind::integer, 36},
    Setting{"Web2PDFUnrollScrollers", Setting::Kind::boolean, 1},
    Setting{"Web2PDFWritesXMP", Setting::Kind::boolean, 0},
    Setting{"Web2PDFAttachesArchive", Setting::Kind::boolean, 0},
    Setting{"Web2PDFBatchWritesText", Setting::Kind::boolean, 0},
    Setting{"Web2PDFBatchWritesManifest", Setting::Kind::boolean, 0},
    Setting{"WebToolEnableWebPlugIns", Setting::Kind::boolean, 0, false},
    Setting{"LoaderUsePool", Setting::Kind::boolean, 1, false},
    Setting{"WebToolTimeout", Setting::Kind::integer, 10, false},
    Setting{"WebToolMaxTriesBeforeTimeout", Setting::Kind::integer, 3, false},
};

/// What could not be read, as the settings' readers say it: they know no receiver.
std::vector<std::string>& warnings() {
    static std::vector<std::string> texts;
    return texts;
}

/// In the order of the search.
std::vector<std::string> searchedFiles() {
    std::vector<std::string> files = *preferenceFiles(domain);
    const PreferencePaths global = preferenceFiles(NSGlobalDomain);
    files.insert(files.end(), global->begin(), global->end());
    return files;
}

std::string valueText(const Setting& setting, long long value) {
    if (setting.kind == Setting::Kind::integer) return std::to_string(value);
    return value != 0 ? "true" : "false";
}

/// Nothing where the stored value is of another kind, and for a key that no file has.
std::optional<long long> storedValue(const Setting& setting) {
    bool counts = false;
    const NSString key = NSString::fromUTF8(setting.key);
    const long long value = setting.kind == Setting::Kind::integer
                                ? CFPreferencesGetAppIntegerValue(key, domain, &counts)
                                : CFPreferencesGetAppBooleanValue(key, domain, &counts);
    return counts ? std::optional(value) : std::nullopt;
}

Finding findingOf(const Setting& setting, const std::string& file) {
    const std::optional<long long> stored = storedValue(setting);
    const long long value = stored.value_or(setting.standard);
    const std::string text = valueText(setting, value);
    Finding finding{area,
                    setting.key,
                    Mark::ok,
                    text + (file.empty() ? ", by default" : ", from " + file),
                    {},
                    {{"value", setting.kind == Setting::Kind::integer ? JsonValue(std::int64_t{value})
                                                                      : JsonValue(value != 0)},
                     {"file", file.empty() ? JsonValue() : JsonValue(file)}}};
    if (!file.empty() && !stored) {
        const std::string kind = setting.kind == Setting::Kind::integer ? "an integer" : "a boolean";
        finding.mark = Mark::note;
        finding.text = text + ", by default: what " + file + " has is not " + kind + " and does not count";
        finding.advice = "Store " + kind + ", or remove the key.";
    } else if (!setting.hasEffect) {
        finding.mark = Mark::note;
        finding.text += "; it changes nothing";
    }
    return finding;
}

bool isKnown(const std::string& key) {
    return std::any_of(settings.begin(), settings.end(),
                       [&](const Setting& setting) { return key == setting.key; });
}

/// Of the files of the own domain; the global one belongs to everybody.
Findings unknownKeys(PreferenceReader& reader) {
    Findings findings;
    for (const std::string& file : *preferenceFiles(domain)) {
        for (const auto& [key, value] : reader.read(file)) {
            const std::string name = as<NSString>(key).utf8();
            if (!isKnown(name))
                findings.push_back({area, name, Mark::note, "unknown, from " + file + ": it changes nothing",
                                    "See the manual for the keys that there are."});
        }
    }
    return findings;
}

Findings filesOf(const std::vector<std::string>& files) {
    Findings findings;
    std::error_code unknown;
    for (const std::string& file : files)
        if (std::filesystem::exists(file, unknown))
            findings.push_back({area, "file", Mark::ok, file, {}, {{"path", file}}});
    if (findings.empty())
        findings.push_back(
            {area,
             "file",
             Mark::ok,
             "there is none; the first that would count is " + (files.empty() ? "" : files.front()),
             {},
             {{"path", JsonValue()}}});
    for (const std::string& warning : warnings())
        findings.push_back({area,
                            "file",
                            Mark::note,
                            warning,
                            "It counts as empty: mend the file, or its permissions.",
                            {{"path", JsonValue()}}});
    return findings;
}

} // namespace

Findings examineSettings() {
    warnings().clear();
    setPreferencesWarning([](const NSString& message) { warnings().push_back(message.utf8()); });
    const std::vector<std::string> files = searchedFiles();
    PreferenceReader reader;
    Findings found;
    for (const Setting& setting : settings) {
        const NSString key = NSString::fromUTF8(setting.key);
        const auto file = std::find_if(files.begin(), files.end(), [&](const std::string& path) {
            return !reader.read(path).objectForKey(key).isNil();
        });
        if (file != files.end() || setting.hasEffect)
            found.push_back(findingOf(setting, file == files.end() ? std::string() : *file));
    }
    append(found, unknownKeys(reader));
    setPreferencesWarning(nullptr);
    Findings findings = filesOf(files);
    append(findings, std::move(found));
    return findings;
}

} // namespace qrv::batch
