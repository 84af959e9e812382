#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

#include "Platform/Foundation/Base64.h"

namespace qrv::engine {

std::unique_ptr<ScriptPageTest::Engine> ScriptPageTest::page_;

void ScriptPageTest::SetUpTestSuite() {
    page_ = std::make_unique<Engine>();
    page_->process = launch({.search = only(installedEngine()), .log = {}}, page_->loop);
    page_->client = std::make_unique<DevToolsClient>(*page_->process, page_->loop);
    page_->session = attachToPage(*page_->client);
    page_->client->send(page_->session, "Page.enable");
    // Without an answer, requests wait.
    page_->client->send(page_->session, "Fetch.enable");
}

void ScriptPageTest::TearDownTestSuite() {
    page_.reset();
}

/// Nothing of another test is left but its page, which goes when another one is shown.
void ScriptPageTest::SetUp() {
    const Json tree =
        page_->client->call(page_->session, "Page.getFrameTree", {}, patience).result["frameTree"];
    page_->mainFrameID = tree["frame"]["id"].string();
    page_->world = std::make_unique<PageWorld>(*page_->client, page_->session, page_->mainFrameID,
                                               [this](const std::string& line) { log_.push_back(line); });
    const Json on = Json::object({{"value", false}});
    page_->client->call(page_->session, "Emulation.setScriptExecutionDisabled", on, patience);
    setView(600, 400);
}

void ScriptPageTest::TearDown() {
    EXPECT_TRUE(log_.empty()) << log_.front();
    page_->world.reset();
}

void ScriptPageTest::setView(int width, int height) {
    const Json metrics =
        Json::object({{"width", width}, {"height", height}, {"deviceScaleFactor", 1}, {"mobile", false}});
    page_->client->call(page_->session, "Emulation.setDeviceMetricsOverride", metrics, patience);
}

void ScriptPageTest::show(const std::string& content, const std::string& mimeType) {
    bool hasLoaded = false;
    const auto loaded = page_->client->listen(page_->session, "Page.loadEventFired",
                                              [&](const Json& /*event*/) { hasLoaded = true; });
    const std::string url = "data:" + mimeType + ";charset=utf-8;base64," + base64Encode(content);
    page_->client->send(page_->session, "Page.navigate", Json::object({{"url", url}}));
    ASSERT_TRUE(page_->loop.runUntil([&] { return hasLoaded; }, std::chrono::steady_clock::now() + patience));
}

Json ScriptPageTest::evaluate(const std::string& expression) {
    return qrv::engine::evaluate(*page_->client, page_->session, expression);
}

Json ScriptPageTest::answer(const PageScript& script, const PageWorld::Arguments& arguments) {
    const std::optional<Json> value = page_->world->call(script, arguments);
    EXPECT_TRUE(value) << script.name;
    return value.value_or(Json());
}

Json ScriptPageTest::awaited(const PageScript& script, const PageWorld::Arguments& arguments) {
    const std::optional<Json> value = page_->world->await(script, arguments);
    EXPECT_TRUE(value) << script.name;
    return value.value_or(Json());
}

} // namespace qrv::engine
