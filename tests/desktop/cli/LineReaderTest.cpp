#include "desktop/cli/LineReader.h"

#include "desktop/base/Wakeup.h"
#include "desktop/cli/Output.h"

#include <gtest/gtest.h>

#include <thread>

namespace desktop {
namespace {

class LineReaderTest : public testing::Test {
protected:
    LineReaderTest()
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        out = UniqueFd(ends[0]);
        in = UniqueFd(ends[1]);
    }

    void write(const std::string& text)
    {
        ASSERT_EQ(::write(in.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    const Interrupts interrupts;
    UniqueFd out;
    UniqueFd in;
};

TEST_F(LineReaderTest, Lines_ComeOneByOneUpToTheEnd)
{
    LineReader reader(out.get(), interrupts);
    write("one\n\ntw");
    write("o\nlast");
    in = UniqueFd();
    EXPECT_EQ(reader.next(), "one");
    EXPECT_EQ(reader.next(), "");
    EXPECT_EQ(reader.next(), "two");
    EXPECT_EQ(reader.next(), "last");
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST_F(LineReaderTest, OtherInput_IsHandledWhileThereIsNoLine)
{
    Wakeup other;
    int handled = 0;
    LineReader reader(out.get(), interrupts, {other.fd(), [&] {
                                                  other.clear();
                                                  ++handled;
                                                  write("line\n");
                                                  return true;
                                              }});
    other.raise();
    EXPECT_EQ(reader.next(), "line");
    EXPECT_EQ(handled, 1);
}

TEST_F(LineReaderTest, OtherInputThatWantsNoMoreLines_EndsThem)
{
    Wakeup other;
    LineReader reader(out.get(), interrupts, {other.fd(), [] { return false; }});
    other.raise();
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST_F(LineReaderTest, LineLongerThanTheBound_IsCutAndItsRestSkipped)
{
    LineReader reader(out.get(), interrupts);
    std::thread writer([this] {
        const std::string much(1U << 20, 'x');
        for (int i = 0; i < 40; ++i) {
            write(much);
        }
        write("\nnext\n");
        in = UniqueFd();
    });
    const auto cut = reader.next();
    ASSERT_TRUE(cut.has_value());
    EXPECT_GT(cut->size(), LineReader::kLongestLine);
    EXPECT_LT(cut->size(), 2 * LineReader::kLongestLine);
    EXPECT_EQ(reader.next(), "next");
    EXPECT_EQ(reader.next(), std::nullopt);
    writer.join();
}

} // namespace
} // namespace desktop
