#include "Platform/Engine/Process/Sandbox/EngineFiles.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace qrv::engine {

namespace {

namespace fs = std::filesystem;

constexpr const char* readable[] = {
    // Libraries.
    "/etc/ld.so.cache",
    "/lib",
    "/lib64",
    "/usr/lib",
    "/usr/lib64",
    "/usr/local/lib",
    // Fonts.
    "/etc/fonts",
    "/usr/share/fontconfig",
    "/usr/share/fonts",
    "/usr/local/share/fonts",
    "/var/cache/fontconfig",
    // Languages and time zones; /usr/lib has the locales.
    "/etc/locale.alias",
    "/usr/share/locale",
    "/usr/share/zoneinfo",
    "/etc/localtime",
    // The number of processors.
    "/sys/devices/system/cpu",
    "/dev/random",
    "/dev/urandom",
    "/dev/zero",
};

// An executable is started by the dynamic linker that it names.
constexpr const char* linkers[] = {
    "/lib64/ld-linux-x86-64.so.2",
    "/lib/ld-linux-aarch64.so.1",
};

// What a script in the engine's place needs besides: its interpreter, the engine that it starts, and where
// distributions have settings for that.
constexpr const char* programs[] = {"/bin", "/usr/bin", "/usr/lib"};
constexpr const char* settings[] = {"/etc/chromium", "/etc/chromium.d"};

bool isScript(const std::string& program) {
    std::ifstream file(program, std::ios::binary);
    return file.get() == '#' && file.get() == '!';
}

/// The variable's value; empty when it is not set.
std::string_view valueOf(std::string_view name, const std::vector<std::string>& environment) {
    for (std::string_view variable : environment)
        if (variable.starts_with(name) && variable.substr(name.size()).starts_with('='))
            return variable.substr(name.size() + 1);
    return {};
}

void allowFonts(FileRules& rules, const std::vector<std::string>& environment) {
    for (const char* variable : {"FONTCONFIG_FILE", "FONTCONFIG_SYSROOT"})
        rules.allow(std::string(valueOf(variable, environment)), FileRules::read);
    std::istringstream folders{std::string(valueOf("FONTCONFIG_PATH", environment))};
    for (std::string folder; std::getline(folders, folder, ':');) rules.allow(folder, FileRules::read);
    rules.allow(std::string(valueOf("XDG_DATA_HOME", environment)) + "/fonts", FileRules::read);
}

/// What is executed when the engine is started.
void allowPrograms(FileRules& rules, const std::string& program) {
    std::error_code ignored;
    for (const fs::path& file : {fs::path(program), fs::canonical(program, ignored)})
        rules.allow(file.parent_path(), FileRules::read | FileRules::execute);
    for (const char* linker : linkers) rules.allow(linker, FileRules::read | FileRules::execute);
    if (!isScript(program)) return;
    for (const char* folder : programs) rules.allow(folder, FileRules::read | FileRules::execute);
    for (const char* folder : settings) rules.allow(folder, FileRules::read);
}

/// The engine's own sandbox maps identities in /proc. What belongs to others is closed to it all the same.
void allowWriting(FileRules& rules, const std::string& temporaryFolder) {
    rules.allow("/dev/null", FileRules::read | FileRules::write);
    rules.allow("/proc", FileRules::read | FileRules::write);
    rules.allow(temporaryFolder, FileRules::read | FileRules::change);
}

} // namespace

std::string callersTemporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder && *folder == '/' ? folder : "/tmp";
}

void allowEngine(FileRules& rules, const std::string& program) {
    allowPrograms(rules, program);
    allowWriting(rules, callersTemporaryFolder());
}

FileRules filesToStart(const std::string& program, const std::vector<std::string>& environment) {
    FileRules rules = FileRules::closingAll();
    allowPrograms(rules, program);
    for (const char* place : readable) rules.allow(place, FileRules::read);
    allowFonts(rules, environment);
    return rules;
}

FileRules engineFiles(const std::string& program, const std::vector<std::string>& environment,
                      const std::string& temporaryFolder) {
    FileRules rules = filesToStart(program, environment);
    allowWriting(rules, temporaryFolder);
    return rules;
}

} // namespace qrv::engine
