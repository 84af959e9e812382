#include "Platform/Engine/Process/Sandbox/EngineKind.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(EngineKind, BrowsersAreToldByTheirNames) {
    for (const char* name : {"/usr/lib/chromium/chromium", "/usr/bin/chromium-browser",
                             "/opt/google/chrome/chrome", "google-chrome-stable"})
        EXPECT_EQ(engineKind(name), EngineKind::browser) << name;
}

TEST(EngineKind, WhateverElseIsChosenIsAShell) {
    for (const char* name :
         {"/usr/lib/chromium/chromium-headless-shell", "/x/chrome-headless-shell/chrome-headless-shell",
          "/usr/lib64/chromium-browser/headless_shell", "/usr/lib/chromium/engine", ""})
        EXPECT_EQ(engineKind(name), EngineKind::headlessShell) << name;
}

} // namespace
} // namespace qrv::engine
