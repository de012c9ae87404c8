#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

constexpr unsigned long long kKilobyte = 1024;
constexpr unsigned long long kMegabyte = 1024 * kKilobyte;
constexpr unsigned long long kGigabyte = 1024 * kMegabyte;

Scenario usage()
{
    return Scenario("getDeviceUsage", &CStorageMediaPlugin::getDeviceUsage).request(R"({"path":"/mnt/usb"})");
}

/// A file system of @p blocks blocks of @p blockSize bytes, @p freeBlocks of them free.
std::function<void(FakePlatform&, ExposedPlugin&)> fileSystem(unsigned long long blockSize, unsigned long long blocks,
                                                              unsigned long long freeBlocks)
{
    return [=](FakePlatform& platform, ExposedPlugin&) {
        struct statfs fs = {};
        fs.f_type = 0x4d44;
        fs.f_bsize = static_cast<decltype(fs.f_bsize)>(blockSize);
        fs.f_blocks = static_cast<decltype(fs.f_blocks)>(blocks);
        fs.f_bfree = static_cast<decltype(fs.f_bfree)>(freeBlocks);
        fs.f_bavail = 1; // not what free means
        platform.fileSystem = fs;
    };
}

TEST(DeviceUsage, MountedDevice_RepliesSizesAndShare)
{
    usage()
        .given(fileSystem(4096, 2097152, 1048576 + 262144))
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:4096, f_blocks:2097152, f_bfree:1310720, type:0x4d44"),
                  dbg("totalSizeByte:8589934592, freeSizeByte:5368709120, usedSizeByte:3221225472"),
                  printed("usize:8589934592, 8.00GB\r\n"), printed("usize:5368709120, 5.00GB\r\n"),
                  printed("usize:3221225472, 3.00GB\r\n"), dbg("/mnt/usb Usage Info:"),
                  dbg("Total: 8.00GB, Used:3.00GB, Free:5.00GB, usedPer: 37%")})
        .succeeds()
        .leavesReply(R"({"free":"5.00GB","kept":"as it was","total":"8.00GB","used":"3.00GB","useper":"37%"})")
        .check();
}

TEST(DeviceUsage, BeyondSixteenTebibytes_StaysExact)
{
    usage()
        .given(fileSystem(4096, 1ULL << 33, 1ULL << 31))
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:4096, f_blocks:8589934592, f_bfree:2147483648, type:0x4d44"),
                  dbg("totalSizeByte:35184372088832, freeSizeByte:8796093022208, usedSizeByte:26388279066624"),
                  printed("usize:35184372088832, 32768.00GB\r\n"), printed("usize:8796093022208, 8192.00GB\r\n"),
                  printed("usize:26388279066624, 24576.00GB\r\n"), dbg("/mnt/usb Usage Info:"),
                  dbg("Total: 32768.00GB, Used:24576.00GB, Free:8192.00GB, usedPer: 75%")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"free":"8192.00GB","total":"32768.00GB","used":"24576.00GB","useper":"75%"})")
        .check();
}

TEST(DeviceUsage, EmptyFileSystem_HasNoShare)
{
    usage()
        .given(fileSystem(4096, 0, 0))
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:4096, f_blocks:0, f_bfree:0, type:0x4d44"),
                  dbg("totalSizeByte:0, freeSizeByte:0, usedSizeByte:0"), in("sizeconver", war("Cap too small!!!0")),
                  in("sizeconver", war("Cap too small!!!0")), in("sizeconver", war("Cap too small!!!0")),
                  dbg("/mnt/usb Usage Info:"), dbg("Total: 0.00, Used:0.00, Free:0.00, usedPer: 00%")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"free":"0.00","total":"0.00","used":"0.00","useper":"00%"})")
        .check();
}

struct Share {
    unsigned long long blocks;
    unsigned long long freeBlocks;
    std::string text;
};

class UsedShare : public testing::TestWithParam<Share> {};

TEST_P(UsedShare, Computed_HasTwoDigitsAtLeast)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    fileSystem(4096, GetParam().blocks, GetParam().freeBlocks)(platform, plugin);
    Json::Value request;
    request["path"] = "/mnt/usb";
    Json::Value reply;
    ASSERT_TRUE(plugin.getDeviceUsage(&request, &reply));
    EXPECT_EQ(reply["useper"].asString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Shares, UsedShare,
                         testing::Values(Share{100, 100, "00%"}, Share{100, 99, "01%"}, Share{100, 93, "07%"},
                                         Share{100, 0, "100%"}, Share{1000, 1, "99%"}, Share{1000, 991, "00%"},
                                         Share{200, 181, "09%"}, Share{200, 180, "10%"}, Share{1000, 995, "00%"},
                                         Share{1, 0, "100%"},
                                         // More free than there is: the difference wraps, and saturates at 32 bits.
                                         Share{100, 101, "255%"}, Share{0, 1, "255%"}));

// 2^32 - 1 per cent and one less, as the low 8 bits of the truncated number.
TEST(DeviceUsage, ShareAroundThe32BitEdge_KeepsItsLowByte)
{
    const auto shareOf = [](unsigned long long blockSize, unsigned long long blocks, unsigned long long freeBlocks) {
        FakePlatform platform;
        ExposedPlugin plugin;
        fileSystem(blockSize, blocks, freeBlocks)(platform, plugin);
        Json::Value request;
        request["path"] = "/mnt/usb";
        Json::Value reply;
        EXPECT_TRUE(plugin.getDeviceUsage(&request, &reply));
        return reply["useper"].asString();
    };
    // total = 2^64 / 2^23 * 1, used wraps to 2^64 - total: 100 * (2^23 - 1) = 838860700 per cent, 0x31FFFF9C.
    EXPECT_EQ(shareOf(1, 1ULL << 41, 1ULL << 42), "156%");
    // 100 * (2^25 - 1) = 3355443100 = 0xC7FFFF9C still fits; 100 * (2^26 - 1) does not.
    EXPECT_EQ(shareOf(1, 1ULL << 39, 1ULL << 40), "156%");
    EXPECT_EQ(shareOf(1, 1ULL << 38, 1ULL << 39), "255%");
}

TEST(DeviceUsage, StatfsFails_LogsItsResultAndLeavesTheReply)
{
    usage()
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"), err("statfs ret:-1")})
        .fails()
        .check();
}

TEST(DeviceUsage, PathUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"path":5})", R"({"path":null})", R"({"path":""})", "[]"}) {
        usage().request(request).happens({readString("path"), err("unknown Path")}).fails().check();
    }
}

TEST(DeviceUsage, NullPointers_Fail)
{
    usage().nullRequest().happens({err("jsonParams is NULL!!!")}).fails().check();
    usage().nullReply().happens({err("jsonParams is NULL!!!")}).fails().check();
    usage().nullRequest().nullReply().happens({err("jsonParams is NULL!!!")}).fails().check();
}

struct Size {
    unsigned long long bytes;
    std::string text;
    std::string output; ///< plain; empty: the warning
};

class SizeText : public testing::TestWithParam<Size> {};

TEST_P(SizeText, Converted_UsesBinaryUnits)
{
    const Size& size = GetParam();
    const Happening line = size.output.empty() ? war("Cap too small!!!" + std::to_string(size.bytes)) : printed(size.output);
    std::string text;
    Scenario("sizeconver", [&](ExposedPlugin& plugin) { text = plugin.sizeconver(size.bytes); })
        .happens({line})
        .afterwards([&](const ExposedPlugin&) { EXPECT_EQ(text, size.text); })
        .check();
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, SizeText,
    testing::Values(Size{0, "0.00", ""}, Size{500, "0.00", ""}, Size{1023, "0.00", ""}, Size{1024, "1.00KB", "1.00KB\r\n"},
                    Size{1536, "1.50KB", "1.50KB\r\n"}, Size{kMegabyte - 1, "1024.00KB", "1024.00KB\r\n"},
                    Size{kMegabyte, "1.00MB", "1.00MB\r\n"}, Size{kGigabyte - 1, "1024.00MB", "1024.00MB\r\n"},
                    Size{kGigabyte, "1.00GB", "usize:1073741824, 1.00GB\r\n"},
                    Size{8 * kGigabyte, "8.00GB", "usize:8589934592, 8.00GB\r\n"},
                    // A float holds 24 bits: 999999.99 GB is rounded to 1000000.
                    Size{1073741813000000ULL, "1000000.0GB", "usize:1073741813000000, 1000000.00GB\r\n"},
                    // Nine characters at most.
                    Size{123456 * kGigabyte, "123456.00GB", "usize:132559870623744, 123456.00GB\r\n"},
                    Size{1234567 * kGigabyte, "1234567.0GB", "usize:1325606222430208, 1234567.00GB\r\n"},
                    Size{~0ULL, "171798691GB", "usize:18446744073709551615, 17179869184.00GB\r\n"}));

} // namespace
