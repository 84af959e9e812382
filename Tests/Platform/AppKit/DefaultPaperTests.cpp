#include "Platform/AppKit/DefaultPaper.h"

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#ifdef __SANITIZE_ADDRESS__
// The C library loses what it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:__argz_add_sep";
}
#endif

namespace qrv {

namespace {

NSSize paperNamed(const char* name) {
    const Variable variable("PAPERSIZE", name);
    return defaultPaperSize();
}

} // namespace

TEST(DefaultPaper, IsThatOfTheEnvironmentInWholePoints) {
    EXPECT_EQ(paperNamed("a4"), (NSSize{595, 842}));
    EXPECT_EQ(paperNamed("A4"), (NSSize{595, 842}));
    EXPECT_EQ(paperNamed("letter"), (NSSize{612, 792}));
    EXPECT_EQ(paperNamed("legal"), (NSSize{612, 1008}));
    EXPECT_EQ(paperNamed("a5"), (NSSize{420, 595}));
}

TEST(DefaultPaper, IsLetterForANameThatIsUnknown) {
    EXPECT_EQ(paperNamed("papyrus"), (NSSize{612, 792}));
    EXPECT_EQ(paperNamed(""), (NSSize{612, 792}));
}

TEST(DefaultPaper, IsThatOfTheConfigurationFile) {
    const TemporaryFolder folder;
    const Variable none("PAPERSIZE", nullptr);
    const Variable file("PAPERCONF", folder.write("papersize", "# ours\na3\n").utf8().c_str());
    EXPECT_EQ(defaultPaperSize(), (NSSize{842, 1191}));
}

TEST(DefaultPaper, DoesNotWaitForAPipeInPlaceOfTheConfigurationFile) {
    const TemporaryFolder folder;
    const std::string pipe = folder.pathOf("pipe").utf8();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const Variable file("PAPERCONF", pipe.c_str());
    EXPECT_EQ(paperNamed("a4"), (NSSize{595, 842}));
    const Variable none("PAPERSIZE", nullptr);
    EXPECT_EQ(defaultPaperSize(), (NSSize{612, 792}));
}

TEST(DefaultPaper, IsTheFirstWordOfTheFile) {
    const TemporaryFolder folder;
    const Variable none("PAPERSIZE", nullptr);
    const auto paper = [&](const std::string& text) {
        const Variable file("PAPERCONF", folder.write("papersize", text).utf8().c_str());
        return defaultPaperSize();
    };
    EXPECT_EQ(paper(" # a3\n# a2 a1\n\t\v\f a5 letter\r\na0"), (NSSize{420, 595}));
    EXPECT_EQ(paper("a5"), (NSSize{420, 595}));
    EXPECT_EQ(paper(std::string(5000, ' ') + "a5"), (NSSize{420, 595}));
    EXPECT_EQ(paper("papyrus\na5\n"), (NSSize{612, 792}));
    EXPECT_EQ(paper("a5# ours"), (NSSize{612, 792}));
    EXPECT_EQ(paper("#a5"), (NSSize{612, 792}));
    EXPECT_EQ(paper(""), (NSSize{612, 792}));
}

TEST(DefaultPaper, OfTheEnvironmentGoesBeforeTheFile) {
    const TemporaryFolder folder;
    const Variable file("PAPERCONF", folder.write("papersize", "a3").utf8().c_str());
    EXPECT_EQ(paperNamed("a5"), (NSSize{420, 595}));
    EXPECT_EQ(paperNamed("papyrus"), (NSSize{612, 792}));
}

TEST(DefaultPaper, IsLetterWithoutAnyConfiguration) {
    const TemporaryFolder folder;
    const Variable none("PAPERSIZE", nullptr);
    const Variable file("PAPERCONF", folder.pathOf("missing").utf8().c_str());
    const Variable locale("LC_ALL", "C.UTF-8"); // whose paper, to the C library, is A4
    EXPECT_EQ(defaultPaperSize(), (NSSize{612, 792}));
}

TEST(DefaultPaper, IsThatOfTheLocaleWithoutAnyConfiguration) {
    const TemporaryFolder folder;
    for (const std::string name : {"de_DE", "en_CA"}) {
        const std::string made =
            "localedef -i " + name + " -f UTF-8 '" + folder.pathOf(name + ".UTF-8").utf8() + "'";
        ASSERT_EQ(std::system(made.c_str()), 0);
    }
    const Variable none("PAPERSIZE", nullptr);
    const Variable file("PAPERCONF", folder.pathOf("missing").utf8().c_str());
    const Variable locales("LOCPATH", folder.path().c_str());
    const Variable all("LC_ALL", nullptr);
    const Variable language("LANG", "de_DE.UTF-8");
    {
        const Variable paper("LC_PAPER", nullptr);
        EXPECT_EQ(defaultPaperSize(), (NSSize{595, 842}));
    }
    const Variable paper("LC_PAPER", "en_CA.UTF-8");
    EXPECT_EQ(defaultPaperSize(), (NSSize{612, 792}));
    const Variable missing("LC_ALL", "xx_XX.UTF-8");
    EXPECT_EQ(defaultPaperSize(), (NSSize{612, 792}));
}

TEST(DefaultPaper, TellsWhereItComesFrom) {
    const TemporaryFolder folder;
    const std::string path = folder.write("papersize", "Legal").utf8();
    const Variable file("PAPERCONF", path.c_str());
    {
        const Variable name("PAPERSIZE", "papyrus");
        const DefaultPaper paper = defaultPaper();
        EXPECT_EQ(paper.source, DefaultPaper::Source::variable);
        EXPECT_EQ(paper.name, "papyrus");
        EXPECT_FALSE(paper.isKnown);
        EXPECT_EQ(paper.size, (NSSize{612, 792}));
    }
    const Variable none("PAPERSIZE", nullptr);
    {
        const DefaultPaper paper = defaultPaper();
        EXPECT_EQ(paper.source, DefaultPaper::Source::file);
        EXPECT_EQ(paper.file, path);
        EXPECT_EQ(paper.name, "Legal");
        EXPECT_TRUE(paper.isKnown);
    }
    const Variable missing("PAPERCONF", folder.pathOf("missing").utf8().c_str());
    const Variable locale("LC_ALL", "C");
    EXPECT_EQ(defaultPaper().source, DefaultPaper::Source::none);
    EXPECT_EQ(defaultPaper().name, "letter");
}

} // namespace qrv
