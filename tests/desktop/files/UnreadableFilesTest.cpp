#include "desktop/files/UnreadableFiles.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace desktop {
namespace {

TEST(DescribeUnreadable, Counts_AreTextsThatLeaveOutWhatThereIsNone)
{
    EXPECT_EQ(describeUnreadable(0, 0), "");
    EXPECT_EQ(describeUnreadable(1, 0), "1 folder cannot be read");
    EXPECT_EQ(describeUnreadable(0, 2), "2 files cannot be read");
    EXPECT_EQ(describeUnreadable(3, 1), "3 folders and 1 file cannot be read");
}

TEST(UnreadableFiles, FilesOfAFolder_AreOneLineOfTheLog)
{
    UnreadableFiles files;
    files.add(EIO);
    files.add(EMFILE);
    testing::internal::CaptureStdout();
    EXPECT_EQ(files.log({"/media/stick", "./Films", ""}), 2U);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[DESKTOP] cannot read /media/stick/Films: 2 files: Too many open files\r\n");
}

TEST(UnreadableFiles, None_IsNoLine)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(UnreadableFiles().log({"/media/stick", ".", ""}), 0U);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

} // namespace
} // namespace desktop
