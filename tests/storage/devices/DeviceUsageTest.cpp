#include "support/CaseName.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
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

TEST(DeviceUsage, TypeOfAllBits_IsPrintedInFull)
{
    usage()
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            fileSystem(1024, 2, 1)(platform, plugin);
            platform.fileSystem.f_type = static_cast<decltype(platform.fileSystem.f_type)>(0x9123683EU);
        })
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:1024, f_blocks:2, f_bfree:1, type:0x9123683e"),
                  dbg("totalSizeByte:2048, freeSizeByte:1024, usedSizeByte:1024"), printed("2.00KB\r\n"),
                  printed("1.00KB\r\n"), printed("1.00KB\r\n"), dbg("/mnt/usb Usage Info:"),
                  dbg("Total: 2.00KB, Used:1.00KB, Free:1.00KB, usedPer: 50%")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"free":"1.00KB","total":"2.00KB","used":"1.00KB","useper":"50%"})")
        .check();
}

// Widened with its sign: 2^64 - 4096 bytes a block.
TEST(DeviceUsage, NegativeBlockSize_WrapsIn64Bits)
{
    usage()
        .given(fileSystem(~0ULL - 4095, 2, 1))
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:4294963200, f_blocks:2, f_bfree:1, type:0x4d44"),
                  dbg("totalSizeByte:18446744073709543424, freeSizeByte:18446744073709547520, "
                      "usedSizeByte:18446744073709547520"),
                  printed("usize:18446744073709543424, 17179869184.00GB\r\n"),
                  printed("usize:18446744073709547520, 17179869184.00GB\r\n"),
                  printed("usize:18446744073709547520, 17179869184.00GB\r\n"), dbg("/mnt/usb Usage Info:"),
                  dbg("Total: 171798691GB, Used:171798691GB, Free:171798691GB, usedPer: 100%")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"free":"171798691GB","total":"171798691GB","used":"171798691GB","useper":"100%"})")
        .check();
}

// Where the block size has 64 bits, all of them count; the line shows the low ones.
TEST(DeviceUsage, BlockSizeBeyond32Bits_CountsInFull)
{
    const bool has64Bits = sizeof(decltype(statfs::f_bsize)) == 8;
    const std::string total = has64Bits ? "4294971392" : "4096";
    const std::string text = has64Bits ? "4.00GB" : "4.00KB";
    const std::string line = has64Bits ? "usize:4294971392, 4.00GB\r\n" : "4.00KB\r\n";
    usage()
        .given(fileSystem((1ULL << 32) + 4096, 1, 0))
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"),
                  dbg("f_bsize:4096, f_blocks:1, f_bfree:0, type:0x4d44"),
                  dbg("totalSizeByte:" + total + ", freeSizeByte:0, usedSizeByte:" + total), printed(line),
                  in("sizeconver", war("Cap too small!!!0")), printed(line), dbg("/mnt/usb Usage Info:"),
                  dbg("Total: " + text + ", Used:" + text + ", Free:0.00, usedPer: 100%")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"free":"0.00","total":")" + text + R"(","used":")" + text + R"(","useper":"100%"})")
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
                                         // Divided first, then multiplied: 28.99... and 57.99... per cent.
                                         Share{100, 71, "28%"}, Share{100, 42, "57%"},
                                         // More free than there is: the difference wraps, and saturates at 32 bits.
                                         Share{100, 101, "255%"}, Share{0, 1, "255%"}),
                         [](const auto& row) {
                             return caseName(row.index, std::to_string(row.param.freeBlocks) + " free of " +
                                                            std::to_string(row.param.blocks));
                         });

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
        .refusedBy("statfs")
        .happens({readString("path"), dbg("path:/mnt/usb"), did(R"(statfs("/mnt/usb"))"), err("statfs ret:<status>")})
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
        .afterwards([&] { EXPECT_EQ(text, size.text); })
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
                    Size{~0ULL, "171798691GB", "usize:18446744073709551615, 17179869184.00GB\r\n"}),
    [](const auto& row) { return caseName(row.index, std::to_string(row.param.bytes) + " bytes"); });

} // namespace
