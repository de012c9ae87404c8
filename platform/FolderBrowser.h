#pragma once

#include "SocMwTypes.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Reads folders, pages through them, groups media and makes thumbnails. The storage manager holds the only one.
///
/// Operations are called on the host's command thread and return 0 on success unless said otherwise. None may wait for
/// long: what takes time goes on in the background and ends in an event.
class FolderBrowser {
public:
    FolderBrowser();
    ~FolderBrowser();
    FolderBrowser(const FolderBrowser&) = delete;
    FolderBrowser& operator=(const FolderBrowser&) = delete;

    /// Starts reading directory @p path, @p itemsPerPage entries to a page; ends in SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED.
    int chdir(const std::string& path, int itemsPerPage);
    /// Fills @p entries with the page that @p page names. Only -1 means failure.
    int getOnePageFileInfo(std::vector<FolderFileInfo_s>& entries, page_option& page);
    /// Stops the folder operation that runs, if any.
    int userCancel();

    /// Describes the media file @p path.
    int getMediaFileInfo(const std::string& path, media_file_info_s& info);
    /// Lists the files of group @p key, @p number to a page, in the browser's own order.
    int getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number);
    /// As above, sorted: @p asc non-zero ascending, 0 descending.
    int getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number, int asc);
    /// Lists the files of group @p key with their media data; @p media gets at least as many elements as @p files.
    int getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, std::vector<media_file_info_s>& media,
                         int number);
    /// Starts grouping the media under directory @p path; ends in SOCMW_MM_EVENT_GROUP_COMPLETED.
    int groupFiles(const std::string& path, GroupFileType type);

    /// The directory part of @p filePath, as chdir takes it. Also called on the event thread.
    std::string getFileDirPath(const std::string& filePath);
    /// The name to show for @p filePath; may be empty.
    std::string splitFileName(std::string filePath);

    /// Starts making the pictures that were appended, bounded by @p width x @p height pixels; each ends in an event
    /// SOCMW_MM_EVENT_THUMBNAIL_DATA_READY.
    int startThumbnail(unsigned int width, unsigned int height, FileType type);
    /// Appends @p count entries of the current folder, from @p startIndex, to the thumbnail list.
    int appendThumbnailList(int startIndex, int count);
    /// Appends the one file @p path to the thumbnail list.
    int appendThumbnailList(const std::string& path);
    /// Stops the thumbnail work that runs, if any, and empties its list.
    int stopThumbnail();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
