#pragma once

// The surroundings of a test of the tool: a scripted page in the place of the engine, scripted time, settings
// and result in a folder of its own, captured log lines, and an end of the process that comes back to the
// test.

#include "Platform/Foundation/NSKeyedArchiver.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Source/Tools/web2pdf.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/ScriptedTime.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Tools/ScriptedPage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace qrv {

class ToolTest : public testing::Test {
protected:
    ToolTest() {
        ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", (folder.path() / "none").c_str(), 1);
        ::setenv("OutPath", resultPath().c_str(), 1);
        WebView::setPageFactoryForTesting(
            [](engine::PageClient& client) { return std::make_unique<ScriptedPage>(client); });
        setProcessExitForTesting([](int status) { throw Exit{status}; });
    }

    ~ToolTest() override {
        setProcessExitForTesting(nullptr);
        WebView::setPageFactoryForTesting({});
        ScriptedPage::onLoad = {};
        NSProcessInfo::processInfo().setArgumentsForTesting();
        ::unsetenv("OutPath");
    }

    /// The application's settings, as the entries of a property list's dictionary.
    void setSettings(const std::string& entries) const {
        std::filesystem::create_directories(folder.path() / "preferences");
        folder.write("preferences/org.quillvane.Quillvane.plist",
                     R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + entries +
                         "</dict></plist>");
    }

    std::string resultPath() const { return (folder.path() / "result.plist").string(); }

    /// The status with which the process would have ended; none when it would have gone on.
    template <class Run>
    static std::optional<int> exitStatusOf(const Run& run) {
        try {
            run();
        } catch (const Exit& exit) {
            return exit.status;
        }
        return {};
    }

    /// The result as it was delivered; nil when there is none.
    NSDictionary result() const {
        const NSString path = NSString::fromUTF8(resultPath());
        const NSData data = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
        return as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data));
    }

    /// The error in a failed result, read back.
    NSError resultError() const {
        const auto data = as<NSData>(result().objectForKey(NSString(u"errorData")));
        return as<NSError>(NSKeyedUnarchiver::unarchiveObjectWithData(data));
    }

    /// The keys of the result in their order, separated by blanks.
    std::string resultKeys() const { return result().allKeys().componentsJoinedByString(u" ").utf8(); }

    struct Exit {
        int status;
    };

    TemporaryFolder folder;
    ScriptedTime time;
    LogCapture log;
};

} // namespace qrv
