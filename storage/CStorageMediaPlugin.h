#pragma once

#include "storage/RequestRecords.h"

#include "platform/PluginHost.h"
#include "platform/SocMwTypes.h"

#include <json/json.h>

#include <cstdint>
#include <string>
#include <vector>

/// Paging parameters of a request; 0 where the request has none.
struct PageData {
    std::int32_t pageIndex = 0;
    std::int32_t pageSize = 0;
    std::int32_t sortType = 0;
};

namespace tvfirmware {

/// The plugin: 46 command handlers, the listener for middleware events, and the requests that are pending between the two.
///
/// A handler takes the request and the reply, runs on the host's command thread and returns whether the command succeeded.
/// onRecvEvent and onUsbMountStatus run on the middleware's event thread. Nothing is locked: the request slots, the
/// directory-change flag, the thumbnail total and the publish callback are shared between the two threads by design.
///
/// Members marked "no command" are reached by no command and no event: they are there for the host to call.
class __attribute__((visibility("default"))) CStorageMediaPlugin {
public:
    /// Sets the defaults, recreates the thumbnail directories and registers the listener.
    CStorageMediaPlugin();
    /// Leaves the listener registered and m_pThisControl set: the host delivers nothing after unloading.
    ~CStorageMediaPlugin();
    CStorageMediaPlugin(const CStorageMediaPlugin&) = delete;
    CStorageMediaPlugin& operator=(const CStorageMediaPlugin&) = delete;

    /// Stores the host's publish function; null is stored like any other.
    void setCallback(PublishNotificationCallback callback);

    // Devices
    bool isUsbDevicePlugIn(Json::Value* request, Json::Value* reply);
    /// Whether a USB storage device is attached; no command.
    bool isUsbDevicePlugin();
    static void onUsbMountStatus(std::string& path, std::string& name, bool mounted, int devType);
    static void onUsbMountStatus(Json::Value& body, UsbDevStatus status);
    void NotifyUsbMountStatus(std::string& path, std::string& name, bool mounted, int devType);
    void NotifyUsbMountStatus(Json::Value& body, UsbDevStatus status);
    bool getDeviceUsage(Json::Value* request, Json::Value* reply);
    /// @p size bytes as text in binary units, for example "1.50KB"; "0.00" below 1024.
    std::string sizeconver(unsigned long long size);

    // Browsing
    bool enterMmBrowser(Json::Value* request, Json::Value* reply);
    bool dlnaEnterMmBrowser(Json::Value* request, Json::Value* reply);
    bool closeMMBroswer(Json::Value* request, Json::Value* reply);
    bool userCancel(Json::Value* request, Json::Value* reply);
    bool clearMediaMap(Json::Value* request, Json::Value* reply);
    bool chgdir(Json::Value* request, Json::Value* reply);
    bool setItemNumPerPage(Json::Value* request, Json::Value* reply);
    bool getOnePageFiles(Json::Value* request, Json::Value* reply);
    /// Reads the paging keys of @p request into @p page; a null request or an unreadable key gives 0. No command.
    void GetPageParams(Json::Value* request, PageData& page);
    /// The part of @p path before its last "/", a trailing one not counted; no command.
    std::string GetParentPath(std::string path);
    bool searchFiles(Json::Value* request, Json::Value* reply);
    /// Adds "outlineData", "pageNum" and "recordNum" to @p reply: how many pages the int list fills. No command.
    bool GetVideoList(Json::Value* request, Json::Value* reply);
    /// Publishes the end of the file scan on the scan channel and disarms it; nothing when no scan is pending. No command.
    void NotifyScanFinished(int count);
    bool getMediaFileInfo(Json::Value* request, Json::Value* reply);
    bool photosort(Json::Value* request, Json::Value* reply);
    bool getPlayListFile(Json::Value* request, Json::Value* reply);

    // Grouping
    bool getGroupListInfo(Json::Value* request, Json::Value* reply);
    bool kiroGetGroupListInfo(Json::Value* request, Json::Value* reply);
    bool getSuperdemoGroupListInfo(Json::Value* request, Json::Value* reply);
    bool enterGroupFolder(Json::Value* request, Json::Value* reply);

    // Playback
    bool playMediaFile(Json::Value* request, Json::Value* reply);
    bool kiroPlayMediaFile(Json::Value* request, Json::Value* reply);
    bool stopMediaFile(Json::Value* request, Json::Value* reply);
    bool playPlayListFile(Json::Value* request, Json::Value* reply);
    bool folderAppendPlayListAndPlay(Json::Value* request, Json::Value* reply);
    bool dmrPlayFile(Json::Value* request, Json::Value* reply);
    bool stopBackGroundMusic(Json::Value* request, Json::Value* reply);
    bool isVideoFileResumeable(Json::Value* request, Json::Value* reply);
    bool videoClearResume(Json::Value* request, Json::Value* reply);
    bool onPlayPauseButton(Json::Value* request, Json::Value* reply);
    bool onPrevButton(Json::Value* request, Json::Value* reply);
    bool onNextButton(Json::Value* request, Json::Value* reply);
    bool onFastForwardButton(Json::Value* request, Json::Value* reply);
    bool onFastRewindButton(Json::Value* request, Json::Value* reply);
    bool setPlayerMode(Json::Value* request, Json::Value* reply);
    bool getPlayMode(Json::Value* request, Json::Value* reply);
    bool kiroRepeatModeSet(Json::Value* request, Json::Value* reply);
    bool setOptions(Json::Value* request, Json::Value* reply);
    bool SubtitlesetOptions(Json::Value* request, Json::Value* reply);
    bool optSubtitleStatusSwitch(Json::Value* request, Json::Value* reply);
    bool getCurAllOptions(Json::Value* request, Json::Value* reply);
    bool VideoPicSizeSet(Json::Value* request, Json::Value* reply);
    bool VideoPicSizeGet(Json::Value* request, Json::Value* reply);
    bool photoRotateSet(Json::Value* request, Json::Value* reply);
    bool getMediaMetadata(Json::Value* request, Json::Value* reply);
    bool getbrowsercodec(Json::Value* request, Json::Value* reply);

    // Thumbnails
    bool startThumbnail(Json::Value* request, Json::Value* reply);
    bool stopThumbnail(Json::Value* request, Json::Value* reply);
    /// Removes directory @p dir and creates it anew and empty; always 0.
    int thumbnailBUffDirInit(std::string dir);
    /// Empties the tree under @p dir and leaves the process's working directory in it; -1 when @p dir cannot be opened. No
    /// command.
    int emptyFilesUnderdir(std::string dir);
    /// Publishes the result of the request in the thumbnail channel and disarms it; nothing when none is pending. No
    /// command.
    void NotifyThumbnailInfo(bool success);

    // Events
    /// The listener: turns one middleware event (a SocMwEventId and its data) into at most one notification.
    static void onRecvEvent(int eventId, void* param);

    /// The live instance, through which the static members reach the object; null before the first.
    static CStorageMediaPlugin* m_pThisControl;

protected:
    /// Request slots, by the command that fills them.
    enum RequestSlot { SLOT_CHGDIR, SLOT_SEARCH, SLOT_GROUP, SLOT_THUMBNAIL, SLOT_COUNT };

    PublishNotificationCallback m_pPublishCallback = nullptr;
    ScanChannel m_scanChannel;
    ThumbnailChannel m_thumbnailChannel;
    std::int32_t m_thumbnailIndex = -1;
    std::vector<int> m_intList;
    std::int32_t m_itemCountPerPage = 9;
    std::int32_t m_pagingPosition = 0;
    bool m_directoryChanging = false;
    AsyncReqNotify m_requestSlots[SLOT_COUNT];
    std::int32_t m_thumbnailTotal = 0;

private:
    /// One function per event, under the folder events/.
    struct EventHandlers;
};

} // namespace tvfirmware
