#pragma once

#include "FolderBrowser.h"
#include "SocMwTypes.h"

#include <json/json.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The storage manager: browser session, playback and its options, and the source of every event.
///
/// Operations are called on the host's command thread and return 0 on success. Arguments taken by reference and not const
/// are written on success.
class SocMwStorageUsbMgr {
public:
    SocMwStorageUsbMgr();
    virtual ~SocMwStorageUsbMgr();
    SocMwStorageUsbMgr(const SocMwStorageUsbMgr&) = delete;
    SocMwStorageUsbMgr& operator=(const SocMwStorageUsbMgr&) = delete;

    /// Sets the function that gets every event (a SocMwEventId and its data). It may be called on any thread of the
    /// platform, one event at a time, from this moment on.
    void setListener(void (*listener)(int event, void* data));

    /// Opens the browser on source @p srctype (0: USB, any other value: DLNA) and describes the session in @p session.
    int enterMmBrowser(Json::Value& session, int srctype);
    /// Stops every player.
    int closeAllMMPlayer(bool keepBackgroundMusic);
    /// Drops what has been indexed under directory @p path.
    int clearMediaMap(std::string path);
    /// Starts searching @p path for files of @p type; pieces come as SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE, the end as
    /// SOCMW_MM_EVENT_FB_FOLDER_UPDATE.
    int searchFileType(const std::string& path, FileType type, int itemsPerPage);
    /// Sorts the photos of the current folder by @p sortType.
    int photoSort(int sortType, bool order, std::vector<FolderFileInfo_s>& photos);
    /// Lists the playlist files under @p path, each with its type.
    int getPlayListFiles(std::string path, std::vector<std::pair<std::string, unsigned int>>& files);

    /// Plays entry @p index of @p path; writes the index that plays into @p curIdx.
    int playMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume, std::string path);
    /// As playMediaFile, for the second browser.
    int kiroPlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume,
                          std::string path);
    /// Stops playback of @p type; writes the index that played into @p index.
    int stopMediaFile(FileType type, unsigned int& index);
    /// Stops music that plays behind photos; writes the index that played into @p curIdx.
    int stopBackGroundMusicFile(unsigned int& curIdx);
    /// Prepares playback that a renderer's controller asked for; writes the medium's title.
    int dmrPlayPrepare(FileType type, std::string& title);
    /// Tells whether the file that playMediaFile would play has a resume position.
    int isresumePlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool& resume,
                              std::string path);
    /// Forgets the resume positions of video.
    int videoClearResume();

    /// @p play true: play, false: pause.
    int keyPlayPause(FileType type, bool play);
    int keyPlayPrev(FileType type);
    int keyPlayNext(FileType type);
    int keyFastForward(FileType type);
    int keyFastRewind(FileType type);
    int setPlayerMode(FileType type, PlayerModeE mode);
    /// Describes the play mode of @p mediaType in @p mode.
    int getPlayMode(Json::Value& mode, int mediaType);

    int setOptions(std::string option, std::string suboption, int value, int flags, int playall);
    int SubtitleSetOptions(std::string option, int value);
    int optSubtitleStatusSwitch(int& value);
    int getCurAllOptions(Json::Value& options);
    int getMediaMetadata(meta_data_t& meta);
    int getbrowsercodec(FileType type, browser_codec& codec);

    // Reached by their place in the table of virtual members: their order is part of the boundary.
    virtual int repeatModeSet(int mode);
    virtual int videoPicSizeSet(int size);
    virtual int videoPicSizeGet(int& size);
    /// @p right true: a quarter turn clockwise, false: anticlockwise.
    virtual int photoRotateSet(bool right);

    FolderBrowser m_folderBrowser;

private:
    struct State;
    std::unique_ptr<State> m_state;
};
