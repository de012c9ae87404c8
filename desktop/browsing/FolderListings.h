#pragma once

#include "desktop/browsing/FolderRead.h"
#include "desktop/browsing/ListingCache.h"
#include "desktop/jobs/EventQueue.h"

namespace desktop {

/// How a host follows what is read. Called on any thread; must not call back.
struct FolderObserver {
    /// How many entries of @p directory have been read so far.
    std::function<void(const std::string& directory, std::size_t entries)> progress;
    /// Why @p path cannot be read; told before the refusal or the empty listing that follows.
    std::function<void(const std::string& path, const std::string& reason)> failed;
};

/// The folders that the browser shows. Paths are texts, as encodeName writes them. Operations are called on the command
/// thread unless said otherwise.
class FolderListings {
public:
    /// @p library tells what is known of the files that are listed; may be null.
    FolderListings(PathResolver resolver, EventQueue& events, FolderObserver observer,
                   std::shared_ptr<MediaLibrary> library = nullptr);

    /// Makes @p directory the current one and starts reading it; ends in SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, with no
    /// entries when the reading fails. A change that is overtaken before its event is delivered raises none. False, and no
    /// event, when there is no such folder on a stick.
    bool change(const std::string& directory, int itemsPerPage);
    /// Stops what is being read; it raises no event.
    void cancel();
    /// Stick @p stick, a path as bytes, has been pulled: what is being read from it fails at once. Safe on any thread.
    void lose(const std::string& stick);

    /// The current directory's listing; null until it has been read.
    ListingPointer current() const;
    /// The listing of @p directory, read now unless it is known and unchanged; null when that fails or takes too long.
    ListingPointer of(const std::string& directory);
    /// Entries to a page, as the latest change gave it.
    int itemsPerPage() const { return m_itemsPerPage; }

    /// Describes what @p path stands for in @p info; a media file by its facts, which may have to be read first. False, the
    /// observer told, when it is not there, on no stick, or the stick does not answer for 8 seconds.
    bool describe(const std::string& path, media_file_info_s& info) const;
    /// Forgets the listings below @p directory and what is known of the files there; false when it lies on no stick.
    bool forget(const std::string& directory);
    /// The directory of @p path, spelled as the latest change spelled it. Safe on any thread.
    std::string directoryOf(const std::string& path) const;
    /// Opens @p directory to be read; false, the observer told, when there is no such folder on a stick, or the stick does
    /// not answer for 3 seconds.
    bool openFolder(const std::string& directory, FolderToRead& folder) const;
    /// Logs, and tells the observer, that @p path cannot be read because of errno value @p error.
    void report(const std::string& path, int error) const;
    const std::shared_ptr<MediaLibrary>& library() const { return m_library; }

private:
    void startChange(FolderToRead folder);
    FolderRead* runningChange(const std::string& directory) const;
    FolderRead& startPageRead(FolderToRead folder);
    void failIfPulled(FolderRead& read) const;
    void finishRead(const std::string& directory, const FolderRead::Outcome& outcome);
    void answer(const FolderRead::OutcomePointer& outcome);
    void dropFinishedReads();
    ReadProgress progressOf(const std::string& directory) const;

    PathResolver m_resolver;
    EventQueue& m_events;
    FolderObserver m_observer;
    std::shared_ptr<MediaLibrary> m_library;
    ListingCache m_cache;
    mutable std::mutex m_spellingMutex;
    std::string m_spelling; ///< the latest change's directory, as it was asked for
    int m_itemsPerPage = 9;
    std::mutex m_readsMutex;                           ///< for lose(); only the command thread changes what it guards
    std::unique_ptr<FolderRead> m_change;              ///< the latest; null when it could not begin
    std::vector<std::unique_ptr<FolderRead>> m_others; ///< reads for single pages, and overtaken changes that still end
};

} // namespace desktop
