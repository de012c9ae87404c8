#pragma once

#include "platform/SocMiddleware.h"
#include "support/StdoutCapture.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/vfs.h>

/// The recording fake of the boundary: the managers, the host's readers, the log level, and the libc calls that reach the
/// machine. Everything that happens goes into one journal in its order: calls with their arguments, and what the plugin
/// prints between them. Answers are scripted here.
///
/// One instance lives at a time; the boundary's functions find it through instance().
class FakePlatform {
public:
    FakePlatform();
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    static FakePlatform& instance();

    /// Notes a call, after whatever was printed before it.
    void record(const std::string& call);
    /// The journal since the last call of this function: calls as "<call>\n", output as it is.
    std::string takeJournal();
    /// The status scripted for @p operation, 0 if none is.
    int status(const std::string& operation) const;
    /// The level that the next log line meets.
    int nextLogLevel();
    /// Whether somebody else holds a manager's handle.
    bool isHandleHeld() const { return storageManager.use_count() > 1 || systemManager.use_count() > 1; }

    std::shared_ptr<SocMwStorageUsbMgr> storageManager;
    std::shared_ptr<SocMwSystemMgr> systemManager;
    void (*listener)(int event, void* data) = nullptr;
    std::function<void()> onListener; ///< runs while the listener is being set

    /// Asked for what belongs into the journal before the next call or log line, and at its end; may be null.
    std::function<std::string()> onJournal;

    // Scripted answers
    std::map<std::string, int> statuses; ///< by the operation's name
    int logLevel = 4;                    ///< 4: nothing is printed
    std::deque<int> logLevels;           ///< levels of the next lines, before logLevel holds
    bool readersWriteJunk = false;       ///< those that fail leave something in their output
    Json::Value json;                    ///< what operations fill into a JSON value
    std::vector<FolderFileInfo_s> files;
    std::vector<media_file_info_s> media;
    media_file_info_s fileInfo;
    std::vector<std::pair<std::string, unsigned int>> playlists;
    std::map<std::string, std::string> directories; ///< getFileDirPath by path; else what stands before the last slash
    std::function<void()> onDirectoryAsked;         ///< runs while getFileDirPath does
    std::map<std::string, std::string> names;       ///< splitFileName by path; else empty
    unsigned int currentIndex = 0;
    bool resume = false;
    std::string title;
    int pictureSize = 0;
    int switchWritesBack = 0;
    meta_data_t meta;
    browser_codec codec;
    int screenStatus = 0;

    // The machine as libc shows it
    bool failHandles = false; ///< asking for a manager throws
    bool usbDirectoryOpens = false;
    bool thumbnailDirectoriesExist = false;
    bool runShellCommands = false; ///< else they are only recorded
    struct statfs fileSystem = {}; ///< what statfs writes

private:
    void catchUp();

    testsupport::StdoutCapture m_output;
    std::string m_journal;
};
