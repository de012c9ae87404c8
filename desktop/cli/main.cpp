#include "desktop/cli/Options.h"
#include "desktop/cli/ShellCommand.h"
#include "desktop/cli/TextColumns.h"
#include "desktop/host/CommandNames.h"
#include "desktop/host/PrivateDirectories.h"

#include "protocol/ProtocolTable.h"

#include <fcntl.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <system_error>

namespace {

using desktop::Options;
using desktop::UniqueFd;

// The plugin logs on standard output, which the program needs for itself: the log goes where the user wants it, or where it
// does not disturb a listing. Returns what was standard output.
UniqueFd divertLog(const Options& options)
{
    UniqueFd output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    UniqueFd log(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!options.logFile.empty()) {
        log = UniqueFd(open(options.logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    } else if (options.isForPeople() && !options.logLevel) {
        log = UniqueFd(open("/dev/null", O_WRONLY | O_CLOEXEC));
    }
    if (!output || !log || dup2(log.get(), STDOUT_FILENO) < 0) {
        throw std::system_error(errno, std::generic_category(), options.logFile.empty() ? "log" : options.logFile);
    }
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    return output;
}

int listCommands()
{
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        std::printf("%10u  %s  %s\n", desktop::commandHash(command.name), desktop::padRight(command.name, 43).c_str(),
                    command.purpose);
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
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
    case Options::Command::Commands:
    case Options::Command::Shell:
        return; // not through the media browser
    }
}

int runWithPlugin(const Options& options)
{
    const desktop::Interrupts interrupts; // before anything that starts a thread
    desktop::Output output(divertLog(options), interrupts);
    desktop::setLogLevel(options.logLevel.value_or(desktop::LogLevel::Warning));
    const std::string refusal = desktop::makeDirectoriesPrivate();
    if (!refusal.empty()) {
        std::fprintf(stderr, "desktop-tv: no private directories, so none for thumbnails (%s)\n", refusal.c_str());
    }
    desktop::DesktopSettings settings;
    settings.sticks = options.sticks;
    settings.mountedSticks = options.mountedSticks;
    settings.cacheFolder = options.cacheFolder;
    const desktop::PluginLibrary plugin(options.pluginFile);
    desktop::Host host(plugin.entryPoints(), std::move(settings));
    desktop::HostClient client(host, interrupts);
    host.start(); // whose first notifications the client gets
    if (options.command == Options::Command::Shell) {
        return desktop::runShell(client, output, interrupts);
    }
    desktop::Session session(client, options.mountedSticks, output, interrupts);
    runForPeople(session, options, output);
    return session.exitStatus();
}

} // namespace

int main(int argc, char** argv)
try {
    std::setlocale(LC_CTYPE, "C.UTF-8"); // names are UTF-8 whatever the user's own locale
    Options options;
    if (const auto status = desktop::parseOptions(argc, argv, options)) {
        return *status;
    }
    return options.command == Options::Command::Commands ? listCommands() : runWithPlugin(options);
} catch (const std::exception& error) {
    std::fprintf(stderr, "desktop-tv: %s\n", error.what());
    return 1;
}
