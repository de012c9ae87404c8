#include "desktop/base/WriteAll.h"
#include "desktop/base/UniqueFd.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>

#include <array>
#include <atomic>

namespace desktop {
namespace {

std::atomic<int> interruptions{0};

/// A pipe, and a thread that writes more into it than it has room for.
class WriteAllToPipe : public testing::Test {
protected:
    WriteAllToPipe()
    {
        std::array<int, 2> ends = {-1, -1};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        reading = UniqueFd(ends[0]);
        m_writing = UniqueFd(ends[1]);
        m_pipeSignal = signal(SIGPIPE, SIG_IGN);
        struct sigaction interruption = {}; // without SA_RESTART
        interruption.sa_handler = [](int) { ++interruptions; };
        sigaction(SIGUSR1, &interruption, &m_userSignal);
        for (std::size_t i = 0; i < sent.size(); ++i) {
            sent[i] = static_cast<char>(i % 251);
        }
        m_thread = std::thread([this] {
            written = writeAll(m_writing.get(), sent.data(), sent.size());
            error = errno;
            m_writing = UniqueFd();
            m_hasEnded = true;
        });
        EXPECT_TRUE(testsupport::becomes([this] { return waiting() == fcntl(reading.get(), F_GETPIPE_SZ); }));
    }
    ~WriteAllToPipe() override
    {
        signal(SIGPIPE, m_pipeSignal);
        sigaction(SIGUSR1, &m_userSignal, nullptr);
    }

    /// Whether the thread is still there to be interrupted. A sanitizer puts off a signal that comes just before a system
    /// call until that returns, so one may not be enough.
    bool interrupt()
    {
        const int before = interruptions;
        return testsupport::becomes([&] {
                   pthread_kill(m_thread.native_handle(), SIGUSR1);
                   return interruptions > before || m_hasEnded;
               }) &&
               !m_hasEnded;
    }
    std::string readToTheEnd() const
    {
        std::string content;
        std::array<char, 5000> bytes = {};
        for (ssize_t got = 0; (got = read(reading.get(), bytes.data(), bytes.size())) > 0;) {
            content.append(bytes.data(), static_cast<std::size_t>(got));
        }
        return content;
    }
    void join() { m_thread.join(); }

    UniqueFd reading;
    std::string sent = std::string(1 << 20, '\0');
    bool written = false;
    int error = 0;

private:
    /// Bytes that are in the pipe.
    int waiting() const
    {
        int bytes = 0;
        ioctl(reading.get(), FIONREAD, &bytes);
        return bytes;
    }

    UniqueFd m_writing;
    std::atomic<bool> m_hasEnded{false};
    sighandler_t m_pipeSignal = nullptr;
    struct sigaction m_userSignal = {};
    std::thread m_thread;
};

TEST_F(WriteAllToPipe, InterruptedAgainAndAgain_WritesEverything)
{
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(interrupt());
    }
    EXPECT_EQ(readToTheEnd(), sent);
    join();
    EXPECT_TRUE(written);
}

TEST_F(WriteAllToPipe, NobodyReadsAnyMore_Fails)
{
    reading = UniqueFd();
    join();
    EXPECT_FALSE(written);
    EXPECT_EQ(error, EPIPE);
}

TEST(WriteAll, Nothing_IsWritten)
{
    EXPECT_TRUE(writeAll(-1, nullptr, 0));
}

TEST(WriteAll, FullDevice_SaysWhy)
{
    const UniqueFd full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    errno = 0;
    EXPECT_FALSE(writeAll(full.get(), "a", 1));
    EXPECT_EQ(errno, ENOSPC);
}

} // namespace
} // namespace desktop
