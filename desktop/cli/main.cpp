#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/InterruptLimit.h"
#include "desktop/cli/Options.h"
#include "desktop/cli/ShellCommand.h"
#include "desktop/cli/StandardStreams.h"
#include "desktop/cli/TerminalKeys.h"
#include "desktop/cli/TextColumns.h"
#include "desktop/cli/UserFolder.h"
#include "desktop/host/CommandNames.h"
#include "desktop/host/LaterMounts.h"
#include "desktop/host/PrivateDirectories.h"

#include "desktop/base/ErrorText.h"
#include "desktop/text/NameEncoding.h"

#include "protocol/ProtocolTable.h"

#include <cerrno>
#include <clocale>

namespace {

using desktop::Options;

constexpr int kFailed = 1;

void listCommands(desktop::Output& output)
{
    std::string lines;
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        lines += desktop::padLeft(std::to_string(desktop::commandHash(command.name)), 10) + "  " +
                 desktop::padRight(command.name, 43) + "  " + command.purpose + "\n";
    }
    output.write(lines);
}

// The listings show no log unless it is asked for.
desktop::LogOutput::Target logTarget(const Options& options)
{
    const bool isQuiet = options.isForPeople() && !options.logLevel;
    return isQuiet ? desktop::LogOutput::Target::Nowhere : desktop::LogOutput::Target::Errors;
}

void runForPeople(desktop::Session& session, const Options& options, desktop::Output& output)
{
    switch (options.command) {
    case Options::Command::Browse:
        return desktop::runBrowse(session, options.browse, output);
    case Options::Command::Search:
        return desktop::runSearch(session, options.search, output);
    case Options::Command::Groups:
        return desktop::runGroups(session, options.groups, output);
    case Options::Command::Info:
        return desktop::runInfo(session, options.info, output);
    case Options::Command::Thumbnails:
        return desktop::runThumbnails(session, options.thumbnails, output);
    case Options::Command::Playlists:
        return desktop::runPlaylists(session, options.playlists, output);
    case Options::Command::Photos:
        return desktop::runPhotos(session, options.photos, output);
    case Options::Command::Commands:
    case Options::Command::Shell:
    case Options::Command::Play:
        return; // not through the media browser
    }
}

desktop::DesktopSettings settingsOf(const Options& options)
{
    desktop::DesktopSettings settings;
    settings.sticks = options.sticks;
    settings.mountedSticks = options.mountedSticks;
    settings.cacheFolder = options.cacheFolder;
    return settings;
}

desktop::PlayerOutput playerOutputOf(const Options& options, const desktop::Output& output)
{
    const bool plays = options.command == Options::Command::Play;
    return plays ? desktop::playerOutputOf(options.play, output) : options.shellOutput;
}

int runWithPlugin(const Options& options, desktop::Output& output, const desktop::Interrupts& interrupts,
                  desktop::LogOutput& log)
{
    desktop::DesktopSettings settings = settingsOf(options);
    settings.playerOutput = playerOutputOf(options, output);
    settings.startAt = options.play.startAt;
    desktop::FileDetails details;
    settings.observer.described = [&details](const std::string& path, const desktop::MediaDetails& found) {
        details.set(path, found);
    };
    const desktop::PluginLibrary plugin(options.pluginFile);
    desktop::Host host(plugin.entryPoints(), std::move(settings));
    desktop::HostClient client(host, interrupts);
    host.start(); // whose first notifications the client gets
    if (options.command == Options::Command::Shell) {
        return desktop::runShell(client, output, interrupts, log);
    }
    desktop::Session session(client, options.mountedSticks, details, output, interrupts);
    if (options.command == Options::Command::Play) {
        desktop::runPlay(session, client, options.play, output, interrupts);
    } else {
        runForPeople(session, options, output);
    }
    return session.exitStatus();
}

// A folder that the user has named is wanted; the usual one is only an advantage.
bool cacheIsUsable(const Options& options)
{
    const int error = options.cacheIsGiven ? desktop::makeUserFolder(options.cacheFolder) : 0;
    if (error != 0) {
        desktop::printError(options.cacheFolder + ": " + desktop::systemErrorText(error));
    }
    return error == 0;
}

// What is mounted while a listing is made does not matter.
void warnOfUnseenMounts(const desktop::LaterMounts& mounts, const Options& options)
{
    if (options.command != Options::Command::Shell) {
        return;
    }
    std::string folders;
    for (const std::string& folder : mounts.unseen()) {
        folders += (folders.empty() ? "" : ", ") + desktop::encodeName(folder);
    }
    if (!folders.empty()) {
        desktop::printError("what is mounted from now on will not be seen in " + folders +
                            ": the mounts there are private (mount --make-rshared / shares them)");
    }
}

void reportCancelled(int status, const Options& options)
{
    if (status == desktop::Interrupts::kInterrupted && options.isForPeople()) {
        desktop::printError("Cancelled");
    }
}

int runLogged(const Options& options, desktop::Output& output, const desktop::Interrupts& interrupts)
{
    desktop::setLogLevel(options.logLevel.value_or(desktop::LogLevel::Warning));
    desktop::LogOutput log(options.logFile, logTarget(options));
    const desktop::LaterMounts laterMounts(settingsOf(options).sources());
    const std::string refusal = desktop::makeDirectoriesPrivate(); // which wants to be the only thread
    if (!refusal.empty()) {
        desktop::printError("no private directories, so none for thumbnails (" + refusal + ")");
    } else {
        warnOfUnseenMounts(laterMounts, options);
    }
    log.start();
    const desktop::InterruptLimit limit(interrupts, [&options](int status) {
        desktop::TerminalKeys::restore();
        reportCancelled(status, options);
    });
    const int status = runWithPlugin(options, output, interrupts, log);
    const std::string fault = log.finish();
    if (!fault.empty()) {
        desktop::printError(fault);
    }
    return status == 0 && !fault.empty() ? kFailed : status;
}

int run(int argc, char** argv, desktop::Output& output, const desktop::Interrupts& interrupts)
{
    Options options;
    if (const auto status = desktop::parseOptions(argc, argv, options, output)) {
        return *status;
    }
    if (options.command == Options::Command::Commands) {
        listCommands(output);
        return interrupts.pending() ? interrupts.exitStatus() : 0;
    }
    const int status = cacheIsUsable(options) ? runLogged(options, output, interrupts) : kFailed;
    reportCancelled(status, options);
    return status;
}

// Whoever stops reading knows that they did.
int finish(desktop::Output& output, int status)
{
    const int error = output.close();
    if (error != 0 && error != EPIPE) {
        desktop::printError("standard output: " + desktop::systemErrorText(error));
    }
    return status == 0 && error != 0 ? kFailed : status;
}

} // namespace

int main(int argc, char** argv)
try {
    std::setlocale(LC_CTYPE, "C.UTF-8"); // names are UTF-8 whatever the user's own locale
    desktop::openMissingStreams();
    const desktop::Interrupts interrupts; // before anything that starts a thread
    desktop::Output output(desktop::copyOfStandardOutput(), interrupts);
    const int status = run(argc, argv, output, interrupts);
    return finish(output, status);
} catch (const std::exception& error) {
    desktop::printError(desktop::errorText(error));
    return kFailed;
}
