#include "Platform/Foundation/Sysctl.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <thread>

namespace qrv {

namespace {

/// What a command prints, without its last line end.
std::string output(const char* command) {
    std::string text;
    std::FILE* pipe = popen(command, "r");
    if (!pipe) return text;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe)) text += buffer;
    pclose(pipe);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

std::string textOf(std::string_view name) {
    const auto bytes = sysctlByName(name);
    return bytes ? std::string(bytes->c_str()) : "(none)";
}

template <class Integer>
Integer numberOf(std::string_view name) {
    const auto bytes = sysctlByName(name);
    Integer value = -1;
    if (bytes && bytes->size() == sizeof value) std::memcpy(&value, bytes->data(), sizeof value);
    return value;
}

class Sysctl : public testing::Test {
protected:
    ~Sysctl() override { setSystemFolderForTesting(); }

    void useOwnSystem() { setSystemFolderForTesting(folder.path().string()); }

    TemporaryFolder folder;
};

} // namespace

TEST_F(Sysctl, UnknownNamesHaveNoValue) {
    for (const char* name : {"", "hw", "hw.", "hw.model ", "HW.MODEL", "../etc/passwd"}) {
        EXPECT_FALSE(sysctlByName(name)) << name;
    }
}

TEST_F(Sysctl, NamesOfTheKernelAreWhatUnameSays) {
    EXPECT_EQ(textOf("kern.ostype"), output("uname -s"));
    EXPECT_EQ(textOf("kern.osrelease"), output("uname -r"));
    EXPECT_EQ(textOf("kern.version"), output("uname -v"));
    EXPECT_EQ(textOf("kern.hostname"), output("uname -n"));
    EXPECT_EQ(textOf("hw.machine"), output("uname -m"));
    EXPECT_EQ(textOf("kern.bootsessionuuid"), output("cat /proc/sys/kernel/random/boot_id"));
}

TEST_F(Sysctl, AFileThatOpensAndCannotBeReadHasNoValue) {
    useOwnSystem();
    std::filesystem::create_directories(folder.path() / "proc/sys/kernel/pid_max");
    std::filesystem::create_directories(folder.path() / "proc/cpuinfo");
    EXPECT_FALSE(sysctlByName("kern.maxproc"));
    EXPECT_FALSE(sysctlByName("machdep.cpu.brand_string"));
}

TEST_F(Sysctl, TextEndsInAZeroByte) {
    const auto bytes = sysctlByName("kern.ostype");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->back(), '\0');
    EXPECT_EQ(bytes->size(), std::strlen(bytes->c_str()) + 1);
}

TEST_F(Sysctl, CountsAndSizesAreWhatGetconfSays) {
    EXPECT_EQ(std::to_string(numberOf<std::int32_t>("hw.ncpu")), output("getconf _NPROCESSORS_ONLN"));
    EXPECT_EQ(std::to_string(numberOf<std::int32_t>("hw.activecpu")), output("getconf _NPROCESSORS_ONLN"));
    EXPECT_EQ(std::to_string(numberOf<std::int32_t>("hw.logicalcpu")), output("getconf _NPROCESSORS_ONLN"));
    EXPECT_EQ(std::to_string(numberOf<std::int32_t>("hw.logicalcpu_max")),
              output("getconf _NPROCESSORS_CONF"));
    EXPECT_EQ(std::to_string(numberOf<std::int64_t>("hw.pagesize")), output("getconf PAGESIZE"));
    EXPECT_EQ(std::to_string(numberOf<std::int32_t>("kern.argmax")), output("getconf ARG_MAX"));
    const std::int64_t pages = std::stoll(output("getconf _PHYS_PAGES"));
    EXPECT_EQ(numberOf<std::int64_t>("hw.memsize"), pages * std::stoll(output("getconf PAGESIZE")));
}

TEST_F(Sysctl, ThereIsAtLeastOneCoreAndNotMoreThanThreads) {
    EXPECT_GE(numberOf<std::int32_t>("hw.physicalcpu_max"), 1);
    EXPECT_LE(numberOf<std::int32_t>("hw.physicalcpu_max"), numberOf<std::int32_t>("hw.logicalcpu_max"));
    EXPECT_EQ(numberOf<std::int32_t>("hw.physicalcpu"), numberOf<std::int32_t>("hw.physicalcpu_max"));
}

TEST_F(Sysctl, HardwareModelIsTheMachinesProductName) {
    folder.write("sys/class/dmi/id/product_name", "Model 7 \n");
    useOwnSystem();
    EXPECT_EQ(textOf("hw.model"), "Model 7");
}

TEST_F(Sysctl, HardwareModelComesFromTheDeviceTreeOtherwise) {
    folder.write("sys/firmware/devicetree/base/model", std::string_view("Board 4\0", 8));
    useOwnSystem();
    EXPECT_EQ(textOf("hw.model"), "Board 4");
}

TEST_F(Sysctl, WithoutAnySourceThereIsNoHardwareModel) {
    useOwnSystem();
    EXPECT_FALSE(sysctlByName("hw.model"));
}

TEST_F(Sysctl, ThreadsOfOneCoreCountOnce) {
    for (const char* thread : {"0", "4"}) {
        folder.write(std::string("sys/devices/system/cpu/cpu") + thread + "/topology/thread_siblings_list",
                     "0,4\n");
    }
    folder.write("sys/devices/system/cpu/cpu10/topology/thread_siblings_list", "10\n");
    folder.write("sys/devices/system/cpu/cpufreq/topology/thread_siblings_list", "11\n");
    useOwnSystem();
    EXPECT_EQ(numberOf<std::int32_t>("hw.physicalcpu_max"), 2);
}

TEST_F(Sysctl, WithoutTopologyEveryThreadCountsAsACore) {
    useOwnSystem();
    EXPECT_EQ(numberOf<std::int32_t>("hw.physicalcpu_max"), numberOf<std::int32_t>("hw.logicalcpu_max"));
}

TEST_F(Sysctl, FrequencyIsTheFastestProcessorsInHertz) {
    folder.write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "1800000\n");
    folder.write("sys/devices/system/cpu/cpu1/cpufreq/cpuinfo_max_freq", "3600000\n");
    folder.write("proc/cpuinfo", "cpu MHz\t\t: 1000.0\n");
    useOwnSystem();
    EXPECT_EQ(numberOf<std::int64_t>("hw.cpufrequency_max"), 3'600'000'000);
}

TEST_F(Sysctl, FrequencyIsTheNominalOneWithoutAFrequencyDriver) {
    folder.write("proc/cpuinfo", "processor\t: 0\nmodel name\t: A Processor\ncpu MHz\t\t: 2445.430\n");
    useOwnSystem();
    EXPECT_EQ(numberOf<std::int64_t>("hw.cpufrequency_max"), 2'445'430'000);
    EXPECT_EQ(numberOf<std::int64_t>("hw.cpufrequency"), 2'445'430'000);
    EXPECT_EQ(textOf("machdep.cpu.brand_string"), "A Processor");
}

TEST_F(Sysctl, WithoutAnySourceThereIsNoFrequency) {
    folder.write("proc/cpuinfo", "no colon here\ncpu MHz\t:\n");
    useOwnSystem();
    EXPECT_FALSE(sysctlByName("hw.cpufrequency_max"));
}

TEST_F(Sysctl, LimitsBeyondFourBytesAreHeldToTheLargest) {
    folder.write("proc/sys/fs/file-max", "9223372036854775807\n");
    folder.write("proc/sys/kernel/pid_max", "32768\n");
    useOwnSystem();
    EXPECT_EQ(numberOf<std::int32_t>("kern.maxfiles"), 2147483647);
    EXPECT_EQ(numberOf<std::int32_t>("kern.maxproc"), 32768);
}

TEST_F(Sysctl, ThreadsMayAskAtOnce) {
    std::thread other([] { EXPECT_TRUE(sysctlByName("kern.ostype")); });
    EXPECT_TRUE(sysctlByName("hw.physicalcpu"));
    other.join();
}

} // namespace qrv
