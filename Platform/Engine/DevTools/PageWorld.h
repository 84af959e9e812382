#pragma once

// Calls page scripts (Scripts/PageScripts.h) in a world of their own, an isolated one: they share the
// document with the page's scripts, and no object or variable.
//
// What a call comes to is told apart:
//   answered     the script's value, or that of its promise
//   threw        a fault of the script: said in the log, once for each script, and not tried again
//   world gone   the page went away under the script, as by a navigation: the world is made anew, three times
//   no answer    the page is busy: its script is interrupted, and all of its scripts are stopped

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/Scripts/PageScripts.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

class PageWorld {
public:
    using Arguments = std::vector<Json>;
    using Log = std::function<void(const std::string& line)>;
    /// Gets the answer; nothing when there is none.
    using AnswerHandler = std::function<void(const std::optional<Json>& answer)>;

    /// How long a page may take for an answer; a page whose script never ends does not answer.
    static constexpr std::chrono::milliseconds patience{3000};

    /// The world of a page's main frame, of which `mainFrameID` is the engine's name. The client must outlive
    /// it. `log` gets a line for each script that throws; empty for none.
    PageWorld(DevToolsClient& devTools, std::string session, std::string mainFrameID, Log log);

    /// Has a program run in every new document of the page from now on, before the page's own scripts: in
    /// this world, or in the page's.
    enum class Place { ownWorld, pagesWorld };
    void runInNewDocuments(const PageScript& program, Place place);

    /// Calls a script in the main frame and runs the loop until it has answered. Nothing when it threw, or
    /// the page does not answer.
    std::optional<Json> call(const PageScript& script, const Arguments& arguments = {});
    /// The same for a script that answers with a promise.
    std::optional<Json> await(const PageScript& script, const Arguments& arguments = {});

    /// Calls a script in any frame; the handler runs later, once. A page that never answers is not
    /// interrupted: the handler may never be called.
    void callInFrame(const std::string& frameID, const PageScript& script, const Arguments& arguments,
                     AnswerHandler handler);

    /// Calls a script in every frame, and runs the loop until all have answered: their answers, in the order
    /// of the tree. Frames that do not answer are left out, and so are those beyond the first 200. Those
    /// below the main frame are called one right after the other, since whatever a script changes makes a
    /// page of many frames draw all of them before a later one is called.
    struct FrameAnswer {
        std::string frameID;
        Json answer;
    };

    std::vector<FrameAnswer> callInFrames(const PageScript& script, const Arguments& arguments = {});

    /// Sends a command to the page and runs the loop until its reply, or for as long as the page may take.
    DevToolsReply command(const char* method, const Json& params);
    /// The same for what the page itself has to answer. One that does not is interrupted, unless it has been,
    /// and asked once more.
    DevToolsReply ask(const char* method, const Json& params);

    /// Lets none of the page's scripts run from now on.
    void stopScripts();
    /// The same, and ends its loads. Neither is waited for.
    void halt();

    /// True once the page did not answer, and its scripts were stopped: promises and timers stand still.
    bool isInterrupted() const { return interrupted_; }

private:
    std::optional<Json> call(const PageScript& script, const Arguments& arguments, bool awaitsPromise);
    std::optional<Json> answerOf(const PageScript& script, const Json& result);
    std::vector<std::string> frameIDs();
    bool make();
    void interrupt();

    DevToolsClient& devTools_;
    std::string session_;
    std::string mainFrameID_;
    Log log_;
    std::int64_t context_ = 0; // the engine's name of the world; 0 when there is none
    bool interrupted_ = false;
    std::set<std::string_view> toldToThrow_; // names of scripts
};

} // namespace qrv::engine
