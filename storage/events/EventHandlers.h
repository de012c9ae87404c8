#pragma once

#include "storage/CStorageMediaPlugin.h"
#include "storage/Log.h"

#include "platform/SocMwEvents.h"

namespace tvfirmware {

// Every event's lines carry the listener's name.
#define LISTENER_LOG(level, ...) STORAGE_LOG("onRecvEvent", level, __VA_ARGS__)
#define LISTENER_DBG(...) LISTENER_LOG(DBG, __VA_ARGS__)

/// One function per event (or per family of events), each with the parameter as its event gives it: owned by the
/// middleware, and null where the middleware sent none. Called on the event thread.
struct __attribute__((visibility("hidden"))) CStorageMediaPlugin::EventHandlers {
    CStorageMediaPlugin& plugin;

    // Devices
    void devicePlugged() const;
    void deviceMounted() const;
    void deviceRemoved(const Json::Value* removed) const;
    void deviceListChanged(const Json::Value* devices) const;

    // Browsing
    void directoryChanged(const std::vector<FolderFileInfo_s>* files) const;
    void searchFinished(const Json::Value* result) const;
    void searchFragment(const Json::Value& fragment) const;
    void groupingFinished(const std::vector<std::string>* keys) const;
    void photoInfo(const std::string* title) const;

    // Playback
    void playingState(const play_state_s* state) const;
    void movieInfo(const Json::Value* info) const;
    void musicStopped(const music_stop_info_s* stopped) const;
    void photoPlayEnded(const std::uint32_t* index) const;
    void playbackProgress(const std::uint32_t* time) const;
    void subtitleChanged(subtitle_info_s* subtitle) const;

    // Renderer
    void rendererPlay(const std::int32_t* fileType) const;
    void rendererPause(bool pause) const;
    void rendererSeek(const dmr_seek_s* seek) const;
    void rendererMute(bool mute) const;
    void rendererVolume(const std::int32_t* volume) const;

    // Thumbnails
    void thumbnailReady(const thumbnail_ready_s* thumbnail) const;

    // Events that all work alike
    /// Publishes a null body.
    void signal(const char* notification) const;
    /// Logs @p middlewareName and publishes a null body.
    void loggedSignal(const char* middlewareName, const char* notification) const;
    /// Publishes a copy of @p info, or a null body when there is none.
    void passOn(const char* notification, const Json::Value* info) const;
    /// Publishes a copy of @p info; logs and drops the event when there is none.
    void passOnRequired(const char* middlewareName, const char* notification, const Json::Value* info) const;

    // Publishing. The callback is called untested: hosts set it before events can arrive.
    /// To everyone.
    void broadcast(const char* notification, Json::Value& body) const;
};

} // namespace tvfirmware
