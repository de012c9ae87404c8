#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <thread>

namespace desktop {
namespace {

using testsupport::demoFile;
using testsupport::MediaReading;
using testsupport::StandIn;

constexpr std::chrono::minutes kLong(10);

// Writes its process id, then is the worker.
constexpr const char* kTelling = "echo $$ >> $0.log; exec '" MEDIA_WORKER "'";

void killAndWaitForTheEnd(pid_t pid)
{
    const UniqueFd process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    ASSERT_EQ(kill(pid, SIGKILL), 0);
    pollfd end = {process.get(), POLLIN, 0};
    ASSERT_EQ(poll(&end, 1, static_cast<int>(std::chrono::milliseconds(testsupport::kDeadline).count())), 1);
}

int durationOfTheCounter(MediaReading& media)
{
    return media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).duration;
}

TEST(MediaWorkers, ManyFiles_AreReadByOneProcess)
{
    StandIn telling(kTelling);
    MediaReading media({telling.program()});
    EXPECT_EQ(telling.log(), ""); // none before the first file
    EXPECT_EQ(durationOfTheCounter(media), 4);
    const std::string first = telling.log();
    EXPECT_NE(first, "");
    EXPECT_EQ(durationOfTheCounter(media), 4);
    EXPECT_EQ(telling.log(), first);
}

/// Media files of the demo stick, opened to be read at once.
class OpenFiles {
public:
    void add(const std::string& file, FileType type)
    {
        m_fds.emplace_back(open(demoFile(file).c_str(), O_RDONLY | O_CLOEXEC));
        media.push_back({m_fds.back().get(), type});
    }

    std::vector<OpenMedia> media;

private:
    std::vector<UniqueFd> m_fds;
};

TEST(MediaWorkers, ManyFilesAtOnce_AreAnsweredInTheirOrder)
{
    MediaReading media;
    OpenFiles files;
    for (int i = 0; i < 10; ++i) {
        files.add("Music/The Sines/01 First.mp3", FILE_TYPE_MUSIC);
        files.add("Music/The Sines/02 Second.flac", FILE_TYPE_MUSIC);
    }
    const std::vector<MediaMetadata> metadata = media.workers.readAll(files.media, {});
    ASSERT_EQ(metadata.size(), 20U);
    for (std::size_t i = 0; i < metadata.size(); ++i) {
        EXPECT_EQ(metadata[i].title, i % 2 == 0 ? "First" : "Second") << i;
    }
}

TEST(MediaWorkers, WorkerThatDiesOfTheFirstOfManyFiles_CostsThatFileOnly)
{
    // The first one dies with several files in its hands, later ones are real.
    StandIn dying("[ -e $0.log ] && exec '" MEDIA_WORKER "'; touch $0.log; sleep 0.1; kill -SEGV $$");
    MediaReading media({dying.program()});
    OpenFiles files;
    for (int i = 0; i < 3; ++i) {
        files.add("Movies/counter.mp4", FILE_TYPE_VIDEO);
    }
    const std::vector<MediaMetadata> metadata = media.workers.readAll(files.media, {});
    ASSERT_EQ(metadata.size(), 3U);
    EXPECT_EQ(metadata[0].error, "The file stopped the process that read it.");
    EXPECT_EQ(metadata[1].duration, 4);
    EXPECT_EQ(metadata[2].duration, 4);
}

TEST(MediaWorkers, DescriptorThatIsNoneAmongManyFiles_CostsThatFileOnly)
{
    MediaReading media;
    OpenFiles files;
    files.add("Movies/counter.mp4", FILE_TYPE_VIDEO);
    files.media.push_back({-1, FILE_TYPE_VIDEO});
    files.add("Movies/counter.mp4", FILE_TYPE_VIDEO);
    const std::vector<MediaMetadata> metadata = media.workers.readAll(files.media, {});
    ASSERT_EQ(metadata.size(), 3U);
    EXPECT_EQ(metadata[0].duration, 4);
    EXPECT_NE(metadata[1].error, "");
    EXPECT_EQ(metadata[2].duration, 4);
}

TEST(MediaWorkers, CancelledBetweenManyFiles_LeavesOutTheRest)
{
    MediaReading media;
    OpenFiles files;
    for (int i = 0; i < 3; ++i) {
        files.add("Movies/counter.mp4", FILE_TYPE_VIDEO);
    }
    std::stop_source cancelled;
    cancelled.request_stop();
    const std::vector<MediaMetadata> metadata = media.workers.readAll(files.media, cancelled.get_token());
    ASSERT_EQ(metadata.size(), 3U);
    EXPECT_EQ(metadata.back().error, "The file is not wanted any more.");
    EXPECT_TRUE(metadata.back().unread);
    EXPECT_EQ(durationOfTheCounter(media), 4);
}

int linesOf(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

TEST(MediaWorkers, OneFileBehindManyFiles_DoesNotWaitForThemAll)
{
    StandIn telling(kTelling);
    MediaReading media({telling.program()});
    OpenFiles files;
    for (int i = 0; i < 300; ++i) {
        files.add("Movies/counter.mp4", FILE_TYPE_VIDEO);
    }
    std::atomic<int> finished{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i) {
        readers.emplace_back([&] {
            EXPECT_EQ(media.workers.readAll(files.media, {}).back().duration, 4);
            ++finished;
        });
    }
    const auto deadline = std::chrono::steady_clock::now() + testsupport::kDeadline;
    while (linesOf(telling.log()) < 2 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield(); // until both are being read
    }
    EXPECT_EQ(durationOfTheCounter(media), 4);
    EXPECT_EQ(finished, 0);
    for (std::thread& reader : readers) {
        reader.join();
    }
}

TEST(MediaWorkers, WorkerKilledBetweenFiles_IsReplacedUnnoticed)
{
    StandIn telling(kTelling);
    MediaReading media({telling.program()});
    EXPECT_EQ(durationOfTheCounter(media), 4);
    const std::string first = telling.log();
    killAndWaitForTheEnd(std::stoi(first));
    EXPECT_EQ(durationOfTheCounter(media), 4);
    EXPECT_NE(telling.log(), first);
}

TEST(MediaWorkers, WorkerThatDiesOfAFile_CostsThatFileOnly)
{
    // The first one dies as soon as there is something to read, later ones are real.
    StandIn dying("[ -e $0.log ] && exec '" MEDIA_WORKER "'; touch $0.log; sleep 0.1; kill -SEGV $$");
    MediaReading media({dying.program()});
    const desktop::MediaMetadata metadata = media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO);
    EXPECT_EQ(metadata.error, "The file stopped the process that read it.");
    EXPECT_TRUE(metadata.unread) << "another try may succeed";
    EXPECT_EQ(durationOfTheCounter(media), 4);
}

TEST(MediaWorkers, WorkerThatHangs_IsKilledAtTheDeadline)
{
    StandIn hanging("[ -e $0.log ] && exec '" MEDIA_WORKER "'; echo $$ > $0.log; exec sleep 1000");
    MediaReading media({hanging.program(), std::chrono::seconds(2)});
    EXPECT_EQ(media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).error, "The file took too long to read.");
    EXPECT_EQ(kill(std::stoi(hanging.log()), 0), -1);
    EXPECT_EQ(durationOfTheCounter(media), 4);
}

TEST(MediaWorkers, ProgramThatIsNotThere_IsNamedInTheError)
{
    MediaReading media({"/nowhere/worker"});
    EXPECT_EQ(media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).error,
              "/nowhere/worker: No such file or directory");
}

TEST(MediaWorkers, Stop_EndsWhatIsBeingReadAndEverythingLater)
{
    StandIn hanging("echo $$ > $0.log; exec sleep 1000");
    MediaReading media({hanging.program(), kLong});
    testsupport::Gathered<std::string> errors;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) { // two of them wait for a worker
        readers.emplace_back([&] { errors.add(media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).error); });
    }
    media.workers.stop();
    for (std::thread& reader : readers) {
        reader.join();
    }
    ASSERT_EQ(errors.sofar().size(), 4U);
    EXPECT_EQ(media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).error, "No file is read any more.");
}

TEST(MediaWorkers, AbandonedThumbnail_ReturnsAtOnce)
{
    StandIn hanging("exec sleep 1000");
    MediaReading media({hanging.program(), kLong});
    std::thread cancelling([&media] { media.cancelled.request_stop(); });
    EXPECT_EQ(media.thumbnail(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).error, "The file is not wanted any more.");
    cancelling.join();
}

TEST(MediaWorkers, TwoFilesAtATime_AreReadSideBySide)
{
    // A worker that answers only once both have been started.
    StandIn waiting("echo x >> $0.log; while [ $(wc -l < $0.log) -lt 2 ]; do sleep 0.01; done; exec '" MEDIA_WORKER "'");
    MediaReading media({waiting.program(), testsupport::kDeadline});
    std::thread other([&media] { EXPECT_EQ(durationOfTheCounter(media), 4); });
    EXPECT_EQ(durationOfTheCounter(media), 4);
    other.join();
}

TEST(MediaWorkers, WorkerRunByHand_SaysWhatItIsFor)
{
    testsupport::Program worker({MEDIA_WORKER});
    EXPECT_EQ(worker.wait(), 2);
    EXPECT_NE(worker.errors().find("serves desktop-tv"), std::string::npos);
}

TEST(MediaWorkers, WorkerAtWork_HoldsNoFileAndMayNotOpenAny)
{
    StandIn telling(kTelling);
    MediaReading media({telling.program()});
    EXPECT_EQ(durationOfTheCounter(media), 4);
    const std::string process = "/proc/" + std::to_string(std::stoi(telling.log()));
    int descriptors = 0;
    for (const auto& entry : std::filesystem::directory_iterator(process + "/fd")) {
        descriptors += entry.is_directory() ? 0 : 1;
    }
    EXPECT_EQ(descriptors, 4); // the standard ones and the channel
    const std::string status = testsupport::readFile(process + "/status");
    EXPECT_NE(status.find("NoNewPrivs:\t1"), std::string::npos);
    EXPECT_NE(status.find("Seccomp:\t2"), std::string::npos);
    const std::string limits = testsupport::readFile(process + "/limits");
    EXPECT_NE(limits.find("Max core file size        0 "), std::string::npos);
}

TEST(MediaWorkers, EndOfTheProgram_EndsItsWorkers)
{
    StandIn telling(kTelling);
    {
        MediaReading media({telling.program()});
        EXPECT_EQ(durationOfTheCounter(media), 4);
    }
    EXPECT_EQ(kill(std::stoi(telling.log()), 0), -1);
}

} // namespace
} // namespace desktop
