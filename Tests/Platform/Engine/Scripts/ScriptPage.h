#pragma once

// A page in the engine that is installed, on which page scripts are tried out. One engine serves all tests of
// a suite.

#include "Platform/Engine/DevTools/PageWorld.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace qrv::engine {

/// A test whose page has a view of 600 x 400 px. Nothing that it asks for ever arrives.
class ScriptPageTest : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// Shows an HTML page, or what has another type, once it has loaded.
    void show(const std::string& content, const std::string& mimeType = "text/html");
    void setView(int width, int height);

    /// The value of an expression in the page's own world.
    Json evaluate(const std::string& expression);

    /// The answer of a script.
    Json answer(const PageScript& script, const PageWorld::Arguments& arguments = {});
    Json awaited(const PageScript& script, const PageWorld::Arguments& arguments = {});

    PageWorld& world() { return *page_->world; }

    std::string session() const { return page_->session; }

    DevToolsClient& client() { return *page_->client; }

    std::vector<std::string> log_; // of scripts that throw

private:
    struct Engine {
        NSRunLoop loop;
        std::unique_ptr<EngineProcess> process;
        std::unique_ptr<DevToolsClient> client;
        std::string session;
        std::string mainFrameID;
        std::unique_ptr<PageWorld> world;
    };

    static std::unique_ptr<Engine> page_;
};

} // namespace qrv::engine
