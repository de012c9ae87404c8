#pragma once

#include "desktop/workers/MediaWorkers.h"

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace testsupport {

/// What came of asking for a thumbnail.
struct Thumbnail {
    std::string error;
    std::string bytes;
    Picture picture;
};

/// Media files read by workers as the desktop has them.
class MediaReading {
public:
    explicit MediaReading(desktop::MediaWorkerSettings settings = {MEDIA_WORKER})
        : workers(std::move(settings))
    {
    }

    desktop::MediaMetadata metadata(const std::string& file, FileType type)
    {
        return workers.read(desktop::UniqueFd(open(file.c_str(), O_RDONLY | O_CLOEXEC)).get(), type);
    }

    Thumbnail thumbnail(const std::string& file, FileType type, int width = 240, int height = 240)
    {
        const desktop::UniqueFd fd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        const desktop::UniqueFd output(memfd_create("thumbnail", MFD_CLOEXEC));
        Thumbnail made;
        made.error = workers.makeThumbnail(fd.get(), type, width, height, output.get(), cancelled.get_token());
        struct stat status = {};
        fstat(output.get(), &status);
        made.bytes.resize(static_cast<std::size_t>(status.st_size));
        if (pread(output.get(), made.bytes.data(), made.bytes.size(), 0) == status.st_size) {
            made.picture = decodeJpeg(made.bytes);
        }
        return made;
    }

    std::stop_source cancelled;
    desktop::MediaWorkers workers;
};

/// Reads media files that a test makes.
class MediaFileTest : public testing::Test {
protected:
    std::string made(const std::string& name, const std::string& bytes) const
    {
        writeFile(folder.path(name), bytes);
        return folder.path(name);
    }

    TemporaryDirectory folder;
    MediaReading media;
};

/// A program that stands in for the worker, or stands before it: a shell script in a folder of its own.
class StandIn {
public:
    /// @p script: its lines. $0.log is a file of its own.
    explicit StandIn(const std::string& script)
    {
        // Written by another process: had this one the file open for writing while one of its threads starts a process, that
        // process would have it open, too, for a moment, and the script could not be run ("Text file busy").
        Program writer({"/bin/sh", "-c", "cat > \"$0\" && chmod 755 \"$0\"", program()});
        writer.send("#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(writer.wait(), 0) << writer.errors();
    }

    std::string program() const { return m_folder.path("worker"); }
    std::string log() const { return readFile(program() + ".log"); }

private:
    TemporaryDirectory m_folder;
};

} // namespace testsupport
