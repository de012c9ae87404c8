#pragma once

#include <cstddef>
#include <functional>
#include <shared_mutex>
#include <string>

namespace desktop {

/// What a media file says of itself that a description of it leaves out; empty where it says nothing.
struct MediaDetails {
    std::string title;
    std::string year;  ///< four digits
    std::string taken; ///< when a photo was taken, "YYYY-MM-DD hh:mm:ss"
};

/// How a host follows what is read. Called on any thread; must not call back.
struct ReadObserver {
    /// How many entries of @p directory have been read so far.
    std::function<void(const std::string& directory, std::size_t entries)> progress;
    /// Why @p path cannot be read; called before the refusal, the empty listing or the answer without its data that follows.
    std::function<void(const std::string& path, const std::string& reason)> failed;
    /// Media file @p path has been described; called before the description is there.
    std::function<void(const std::string& path, const MediaDetails& details)> described = nullptr;
};

/// Passes reports on to a host's observer for as long as the host wants them: threads that a dead file system keeps may
/// outlive the host. Safe on any thread.
class ReadReporter {
public:
    explicit ReadReporter(ReadObserver observer = {});

    /// @p entries of @p directory have been read so far.
    void progress(const std::string& directory, std::size_t entries) const;
    /// @p path cannot be read.
    void failed(const std::string& path, const std::string& reason) const;
    /// Media file @p path has been described.
    void described(const std::string& path, const MediaDetails& details) const;
    /// Nothing is passed on any more; waits for the calls that run.
    void disconnect();

private:
    mutable std::shared_mutex m_mutex; ///< shared while the observer is called
    ReadObserver m_observer;
};

} // namespace desktop
