#include "Platform/Engine/Scripts/ReadinessScripts.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(ReadinessScripts, WhatMayTakeTimeIsBounded) {
    EXPECT_THAT(readinessScript(std::chrono::milliseconds(2500)), EndsWith(")(2500)"));
    EXPECT_THAT(revealingScript(std::chrono::milliseconds(1500)), EndsWith(")(1500)"));
}

TEST(ReadinessScripts, AddressesAreQuoted) {
    EXPECT_THAT(substitutingScript({"http://a/\"'</script>", "b"}),
                EndsWith(R"(})(["http://a/\"'</script>","b"]))"));
}

TEST(ReadinessScripts, NothingOfTheDocumentIsReadByItsNameThere) {
    for (const std::string& script :
         {viewHoldingScript(), readinessScript(std::chrono::milliseconds(1)), holdingScript(),
          revealingScript(std::chrono::milliseconds(1)), concludingScript(), substitutingScript({})}) {
        // An element may have any name, and then stands in the place of a property of the document.
        EXPECT_THAT(script, Not(HasSubstr(" document."))) << script;
        EXPECT_THAT(script, Not(HasSubstr("(document."))) << script;
    }
}

TEST(ReadinessScripts, TheHeldViewIsTheSameInEach) {
    for (const std::string& script : {viewHoldingScript(), holdingScript()}) {
        EXPECT_THAT(script, HasSubstr("globalThis[Symbol.for('web2pdf-view')]"));
    }
}

} // namespace
} // namespace qrv::engine
