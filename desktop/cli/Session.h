#pragma once

#include "desktop/cli/FileDetails.h"
#include "desktop/cli/HostClient.h"
#include "desktop/cli/Output.h"
#include "desktop/cli/ProgressLine.h"

#include <map>
#include <optional>
#include <set>
#include <vector>

namespace desktop {

/// The plugin's media browser as the commands for people use it, from entering to leaving it. Errors are printed on standard
/// error. Used on one thread.
class Session {
public:
    /// Gets the body of a notification that answers a request; @p last for the one that ends it.
    using AnswerHandler = std::function<void(const Json::Value& body, bool last)>;

    /// @p takesMountedSticks: whether the host uses the sticks that the computer mounts. @p details is filled by the
    /// platform.
    Session(HostClient& client, bool takesMountedSticks, const FileDetails& details, Output& output,
            const Interrupts& interrupts);
    /// Leaves the media browser.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Enters the media browser; false when that fails or there is no stick.
    bool enter();
    /// The sticks: "path" and "name" of each.
    const Json::Value& devices() const { return m_devices; }
    /// The path that the user means by @p typed: absolute, or below the first stick that has it; nothing means the first
    /// stick.
    std::string pathOf(const std::string& typed);
    /// The folders that the user means by @p typed: as pathOf(), but nothing means every stick.
    std::vector<std::string> foldersOf(const std::string& typed);

    /// Runs @p command, which answers at once; whether it succeeded.
    bool execute(const std::string& command, const Json::Value& request, Json::Value& reply);
    /// As execute(), and prints an error when the command fails; @p what names its subject in the error.
    bool query(const std::string& command, const Json::Value& request, const std::string& what, Json::Value& reply);
    /// Runs @p command, which answers with notifications, and waits for them; @p what names its subject when that fails. An
    /// interrupt cancels the command.
    bool ask(const std::string& command, Json::Value request, const std::string& what, const AnswerHandler& handle);
    /// Describes file @p path: the plugin's answer, and "title", "year" and "taken" where the file says them. Nothing, with
    /// an error, when that fails.
    std::optional<Json::Value> describe(const std::string& path);
    /// Makes @p directory the current one with @p pageSize entries to a page; the number of its entries, nothing when that
    /// fails.
    std::optional<int> changeDirectory(const std::string& directory, int pageSize);
    /// The entries on page @p page, from 0, of the current directory; nothing when that fails.
    std::optional<Json::Value> readPage(const std::string& directory, int page);
    /// Sets the entries to a page for readPageOf(), by beginning to change to @p directory; false when that fails.
    bool setPageSize(const std::string& directory, int pageSize);
    /// The entries on page @p page, from 0, of @p list: a directory or a playlist; none beyond its end. However long it is,
    /// no more than the page is handed over. Nothing when that fails.
    std::optional<Json::Value> readPageOf(const std::string& list, int page);

    /// Why @p path could not be read by the latest command; empty when nothing is known.
    std::string readFailure(const std::string& path);
    /// Prints an error about @p what. When that lies on a stick that has been pulled meanwhile, the error is the stick's,
    /// and is printed once. Returns false.
    bool fail(const std::string& what, const std::string& why);
    /// Whether the stick that @p path lies on has been pulled; an error says so, once.
    bool failIfPulled(const std::string& path);
    /// Whether the stick that @p path lies on has been pulled, as far as an error has led to find out.
    bool isOnPulledStick(const std::string& path) const { return m_pulledSticks.count(stickOf(path)) > 0; }
    /// Whether the command is to end: an interrupt has come or the reader of the output has gone.
    bool stopped() const { return m_interrupts.pending() || !m_output.good(); }
    int exitStatus() const;

    ProgressLine& progress() { return m_progress; }

private:
    std::string stickOf(const std::string& path) const;
    bool hasBeenPulled(const std::string& stick);
    void skipUpdates();
    void handleUpdate(const HostUpdate& update);
    void noteFailure(const HostUpdate& update);
    bool noteFailures();
    bool failRefused(const std::string& what);

    HostClient& m_client;
    const bool m_takesMountedSticks;
    const FileDetails& m_details;
    Output& m_output;
    const Interrupts& m_interrupts;
    ProgressLine m_progress;
    std::map<std::string, std::string> m_readFailures; ///< why, by path; of the latest command
    std::string m_latestFailure;
    Json::Value m_devices{Json::arrayValue};
    std::set<std::string> m_pulledSticks; ///< of which an error has been printed
    int m_requests = 0;
    bool m_failed = false;
};

} // namespace desktop
