#include "Platform/Engine/Process/EngineCommand.h"

#include "Platform/Engine/Process/Sandbox/EngineKind.h"

#include <cstdlib>

namespace qrv::engine {

namespace {

constexpr const char* commonArguments[] = {
    "--remote-debugging-pipe=cbor",
    // Start-up time.
    "--disable-gpu",
    "--enable-features=NetworkServiceInProcess2",
    "--no-first-run",
    "--disable-extensions",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--disable-default-apps",
    "--no-default-browser-check",
    "--disable-site-isolation-trials",
    "--disable-breakpad",
    "--disable-crashpad-for-testing",
    "--disable-dev-shm-usage", // shared memory is in the temporary folder
    // Appearance and sound of the page.
    "--hide-scrollbars",
    "--mute-audio",
    "--font-render-hinting=none",
    "--blink-settings=lazyLoadEnabled=false",
    // Network access. The kernel bars it anyway; this avoids the attempts.
    "--block-new-web-contents",
    "--host-resolver-rules=MAP * ~NOTFOUND",
};

void passOn(std::vector<std::string>& environment, const char* name) {
    if (const char* value = std::getenv(name)) environment.push_back(std::string(name) + "=" + value);
}

/// Tells the engine where the user's own fonts are; the home directory itself stays hidden.
void passOnDataDirectory(std::vector<std::string>& environment) {
    const char* home = std::getenv("HOME");
    if (std::getenv("XDG_DATA_HOME"))
        passOn(environment, "XDG_DATA_HOME");
    else if (home)
        environment.push_back("XDG_DATA_HOME=" + std::string(home) + "/.local/share");
}

} // namespace

std::vector<std::string> engineArguments(const std::string& program, bool sandboxed) {
    std::vector<std::string> arguments{program};
    if (engineKind(program) == EngineKind::browser) arguments.emplace_back("--headless");
    arguments.insert(arguments.end(), std::begin(commonArguments), std::end(commonArguments));
    if (!sandboxed) arguments.emplace_back("--no-sandbox");
    arguments.emplace_back("about:blank");
    return arguments;
}

std::vector<std::string> engineEnvironment() {
    std::vector<std::string> environment{
        "PATH=/usr/local/bin:/usr/bin:/bin",
        "HOME=/nonexistent",
        "XDG_CACHE_HOME=/nonexistent",
    };
    for (const char* name : {"LANG", "LANGUAGE", "LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LC_TIME", "LC_NUMERIC",
                             "TZ", "FONTCONFIG_FILE", "FONTCONFIG_PATH", "FONTCONFIG_SYSROOT"})
        passOn(environment, name);
    passOnDataDirectory(environment);
    return environment;
}

} // namespace qrv::engine
