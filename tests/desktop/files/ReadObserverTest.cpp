#include "desktop/files/ReadObserver.h"

#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace desktop {
namespace {

using testing::ElementsAre;

TEST(ReadReporter_Reports, ReachTheObserver)
{
    std::vector<std::string> reports;
    ReadObserver observer;
    observer.progress = [&](const std::string& directory, std::size_t entries) {
        reports.push_back(directory + " " + std::to_string(entries));
    };
    observer.failed = [&](const std::string& path, const std::string& reason) { reports.push_back(path + ": " + reason); };
    const ReadReporter reporter(observer);
    reporter.progress("/a", 512);
    reporter.failed("/b", "broken");
    EXPECT_THAT(reports, ElementsAre("/a 512", "/b: broken"));
}

TEST(ReadReporter_Reports, WithoutObserver_AreDropped)
{
    const ReadReporter reporter;
    EXPECT_NO_THROW(reporter.progress("/a", 512));
    EXPECT_NO_THROW(reporter.failed("/b", "broken"));
}

TEST(ReadReporter_Disconnect, WhileTheObserverIsCalled_WaitsForTheCallAndAllowsNoOther)
{
    testsupport::Door called;
    testsupport::Door goOn;
    std::atomic<int> calls{0};
    ReadObserver observer;
    observer.progress = [&](const std::string&, std::size_t) {
        called.open();
        goOn.wait();
        ++calls;
    };
    ReadReporter reporter(observer);
    std::thread reading([&] { reporter.progress("/a", 1); });
    ASSERT_TRUE(called.wait());
    std::thread opening([&] { goOn.open(); });
    reporter.disconnect();
    EXPECT_EQ(calls, 1);
    reporter.progress("/a", 2);
    EXPECT_EQ(calls, 1);
    reading.join();
    opening.join();
}

} // namespace
} // namespace desktop
