#include "desktop/cli/Output.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <cerrno>
#include <csignal>
#include <string>

namespace desktop {
namespace {

class OutputTest : public testing::Test {
protected:
    OutputTest()
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        reader = UniqueFd(ends[0]);
        writer = UniqueFd(ends[1]);
    }

    const Interrupts interrupts;
    UniqueFd reader;
    UniqueFd writer;
};

TEST_F(OutputTest, Text_IsWrittenWhole)
{
    Output output(std::move(writer), interrupts);
    EXPECT_TRUE(output.write("hello "));
    EXPECT_TRUE(output.write("there"));
    std::string text(64, '\0');
    text.resize(static_cast<std::size_t>(read(reader.get(), text.data(), text.size())));
    EXPECT_EQ(text, "hello there");
    EXPECT_FALSE(output.isColoured());
    EXPECT_EQ(output.close(), 0);
}

TEST_F(OutputTest, ReaderThatHasGone_IsToldOnceAndForAll)
{
    Output output(std::move(writer), interrupts);
    reader = UniqueFd();
    EXPECT_FALSE(output.write("hello"));
    EXPECT_FALSE(output.good());
    EXPECT_EQ(output.close(), EPIPE);
}

TEST_F(OutputTest, DeviceWithoutRoom_IsTheReason)
{
    Output output(UniqueFd(open("/dev/full", O_WRONLY | O_CLOEXEC)), interrupts);
    EXPECT_FALSE(output.write("hello"));
    EXPECT_EQ(output.close(), ENOSPC);
}

// The signal is sent to this thread and stays blocked: the object under test takes no other notice of it.
TEST_F(OutputTest, ReaderThatDoesNotRead_KeepsNoInterruptWaiting)
{
    Output output(std::move(writer), interrupts);
    EXPECT_FALSE(interrupts.pending());
    ASSERT_EQ(pthread_kill(pthread_self(), SIGTERM), 0);
    EXPECT_FALSE(output.write(std::string(1U << 20, 'x')));
    EXPECT_EQ(output.close(), 0);
    EXPECT_TRUE(interrupts.pending());
    EXPECT_EQ(interrupts.exitStatus(), 128 + SIGTERM);
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    const timespec now = {};
    EXPECT_EQ(sigtimedwait(&term, nullptr, &now), SIGTERM); // taken back for the tests that follow
}

} // namespace
} // namespace desktop
