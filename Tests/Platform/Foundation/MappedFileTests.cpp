#include "Platform/Foundation/MappedFile.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Tests/Support/OwnMounts.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace qrv {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t megabyte = std::size_t{1} << 20;

/// In child processes, since the handler stays.
class MappedFile : public testing::Test {
protected:
    NSData read(const char* name) const {
        return NSData::initWithContentsOfFile_options_error(folder.pathOf(name), 0, nullptr);
    }

    TemporaryFolder folder;
};

/// A kind of this process's memory, in bytes.
std::size_t memory(const std::string& kind) {
    std::ifstream file("/proc/self/status");
    std::string line;
    while (std::getline(file, line)) {
        if (line.starts_with(kind + ":")) return std::stoul(line.substr(kind.size() + 1)) << 10;
    }
    ADD_FAILURE() << "no " << kind;
    return 0;
}

std::size_t anonymousMemory() {
    return memory("RssAnon");
}

std::size_t sumOf(const NSData& data) {
    std::size_t sum = 0;
    for (const unsigned char byte : data.bytes()) sum += byte;
    return sum;
}

TEST_F(MappedFile, ALargeFileTakesNoMemoryOfTheProcess) {
    folder.write("file", std::string(64 * megabyte, 'x'));
    inChild([this] {
        allowMappedFiles();
        const std::size_t before = anonymousMemory();
        const NSData data = read("file");
        EXPECT_EQ(data.length(), 64 * megabyte);
        EXPECT_EQ(sumOf(data), 64 * megabyte * 'x');
        EXPECT_LT(anonymousMemory(), before + 8 * megabyte);
        EXPECT_FALSE(data.isCutOff());
    });
}

TEST_F(MappedFile, PagesThatAreForgottenTakeNoMemoryAndAreReadAgain) {
    folder.write("file", std::string(64 * megabyte, 'x'));
    inChild([this] {
        allowMappedFiles();
        const NSData data = read("file");
        const std::size_t before = memory("RssFile");
        EXPECT_EQ(sumOf(data), 64 * megabyte * 'x');
        EXPECT_GE(memory("RssFile"), before + 64 * megabyte);
        const NSData part = data.subdataWithRange({7, 32 * megabyte});
        part.forgetPages();
        EXPECT_LT(memory("RssFile"), before + 40 * megabyte);
        data.forgetPages();
        EXPECT_LT(memory("RssFile"), before + 8 * megabyte);
        EXPECT_EQ(sumOf(data), 64 * megabyte * 'x');
    });
}

TEST_F(MappedFile, DataThatAreNoFilesForgetNothing) {
    const NSData data(std::string(megabyte, 'x'));
    data.forgetPages();
    NSData().forgetPages();
    EXPECT_EQ(sumOf(data), megabyte * 'x');
}

TEST_F(MappedFile, TheDataOfABinaryPropertyListShareTheMapping) {
    NSMutableDictionary list;
    list.setObject_forKey(NSData(std::string(megabyte, 'x')), NSString(u"data"));
    folder.write("list",
                 std::string(NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
                                 list, NSPropertyListBinaryFormat_v1_0, nullptr)
                                 .bytes()));
    inChild([this] {
        allowMappedFiles();
        NSData file = read("list");
        const auto read = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(file));
        const auto data = as<NSData>(read.objectForKey(NSString(u"data")));
        EXPECT_EQ(data.length(), megabyte);
        EXPECT_GE(data.bytes().data(), file.bytes().data());
        EXPECT_LT(data.bytes().data(), file.bytes().data() + file.length());
        file = NSData();
        EXPECT_EQ(sumOf(data), megabyte * 'x') << "the data keep the mapping";
    });
}

TEST_F(MappedFile, AFileThatIsCutShortReadsAsZerosFromThere) {
    folder.write("file", std::string(4 * megabyte, 'x'));
    inChild([this] {
        allowMappedFiles();
        const NSData data = read("file");
        EXPECT_FALSE(data.isCutOff());
        fs::resize_file(folder.path() / "file", megabyte);
        EXPECT_FALSE(data.isCutOff()) << "nothing of it has been needed";
        EXPECT_EQ(sumOf(data), megabyte * 'x');
        EXPECT_TRUE(data.isCutOff());
        EXPECT_TRUE(data.subdataWithRange({0, 10}).isCutOff()) << "it is the file's";
    });
}

TEST_F(MappedFile, OneFilesEndIsNotAnothers) {
    folder.write("whole", std::string(megabyte, 'x'));
    folder.write("cut", std::string(megabyte, 'x'));
    inChild([this] {
        allowMappedFiles();
        const NSData whole = read("whole");
        {
            const NSData cut = read("cut");
            fs::resize_file(folder.path() / "cut", 0);
            EXPECT_EQ(sumOf(cut), 0u);
            EXPECT_TRUE(cut.isCutOff());
            EXPECT_FALSE(whole.isCutOff());
        }
        folder.write("next", std::string(megabyte, 'y'));
        const NSData next = read("next");
        EXPECT_EQ(sumOf(next), megabyte * 'y');
        EXPECT_FALSE(next.isCutOff()) << "the place in the table is used again";
        EXPECT_EQ(sumOf(whole), megabyte * 'x');
    });
}

TEST_F(MappedFile, SmallFilesAndThoseOfOtherProgramsAreCopied) {
    folder.write("small", std::string(1000, 'x'));
    folder.write("large", std::string(megabyte, 'x'));
    inChild([this] {
        const NSData early = read("large");
        allowMappedFiles();
        const NSData small = read("small");
        for (const char* name : {"small", "large"}) fs::resize_file(folder.path() / name, 0);
        EXPECT_EQ(sumOf(small), std::size_t{1000} * 'x');
        EXPECT_EQ(sumOf(early), megabyte * 'x');
    });
}

TEST_F(MappedFile, WhenThereAreTooManyTheyAreCopied) {
    folder.write("file", std::string(megabyte, 'x'));
    inChild([this] {
        allowMappedFiles();
        std::vector<NSData> all;
        for (int i = 0; i < 40; ++i) all.push_back(read("file"));
        EXPECT_TRUE(std::all_of(all.begin(), all.end(),
                                [](const NSData& data) { return sumOf(data) == megabyte * 'x'; }));
    });
}

TEST_F(MappedFile, OtherBusErrorsEndTheProcessAsEver) {
    for (const bool isSent : {true, false}) {
        const pid_t child = ::fork();
        if (child == 0) {
            const struct rlimit noCoreFile = {0, 0};
            ::setrlimit(RLIMIT_CORE, &noCoreFile);
            allowMappedFiles();
            if (isSent) ::raise(SIGBUS);
            // A mapping that is none of ours.
            const int file = ::open((folder.path() / "empty").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
            const void* const foreign = ::mmap(nullptr, 4096, PROT_READ, MAP_SHARED, file, 0);
            ::_exit(*static_cast<const volatile char*>(foreign));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGBUS);
    }
}

} // namespace
} // namespace qrv
