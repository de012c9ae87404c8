#include "desktop/host/Options.h"

#include "desktop/host/PluginLibrary.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace desktop {

namespace {

constexpr int kUsageError = 2;

constexpr const char* kExamples = R"(Examples:
  desktop-tv --stick ~/Videos browse
  desktop-tv --stick ~/Videos browse --recursive Holiday
  desktop-tv --stick ~/Videos browse --page-size 20 --page 2
  desktop-tv --stick ~/Videos shell
      then type, for example:
      {"command":"storagemedia.media.entermmbroswer"}
      {"command":"storagemedia.folder.chgdir","request":{"channelId":"c","reqId":"1","dirpath":"/home/me/Videos"}}
  desktop-tv commands
)";

const std::map<std::string, LogLevel> kLogLevels = {{"debug", LogLevel::Debug},
                                                    {"info", LogLevel::Info},
                                                    {"warning", LogLevel::Warning},
                                                    {"error", LogLevel::Error},
                                                    {"off", LogLevel::Off}};

// A folder that is missing may appear later; something else in its place is a mistake.
std::string stickFault(const std::string& folder)
{
    std::error_code unreadable; // as good as missing
    const auto kind = std::filesystem::status(folder, unreadable).type();
    const bool fits = kind != std::filesystem::file_type::regular && !folder.empty();
    return fits ? "" : "'" + folder + "' is no folder";
}

constexpr const char* kNoCache = "none";

std::string fromEnvironment(const char* variable)
{
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}

// Where the user's programs keep what they can do without; nothing for a user without a home.
std::string usualCacheFolder()
{
    const std::string cache = fromEnvironment("XDG_CACHE_HOME");
    if (!cache.empty() && cache.front() == '/') {
        return cache + "/storagemedia-desktop";
    }
    const std::string home = fromEnvironment("HOME");
    return home.empty() ? "" : home + "/.cache/storagemedia-desktop";
}

void addGlobalOptions(CLI::App& app, Options& options)
{
    app.add_option("--stick", options.sticks, "Folder that stands for a USB stick; may be given several times")
        ->type_name("FOLDER")
        ->check(stickFault);
    app.add_flag("--auto", options.mountedSticks, "Take what this computer mounts under /media, /run/media and /mnt, too");
    options.cacheFolder = usualCacheFolder();
    app.add_option_function<std::string>(
           "--cache", [&options](const std::string& folder) { options.cacheFolder = folder == kNoCache ? "" : folder; },
           "Folder that keeps what has been read of media files; none: keep nothing; " + options.cacheFolder +
               " if not given")
        ->type_name("FOLDER");
    app.add_option("--plugin", options.pluginFile, "The plugin's library; the one built with this program if not given")
        ->type_name("FILE");
    app.add_option_function<std::string>(
           "--log-level", [&options](const std::string& name) { options.logLevel = kLogLevels.at(name); },
           "What is logged: debug, info, warning (as if not given), error or off")
        ->type_name("LEVEL")
        ->check(CLI::IsMember({"debug", "info", "warning", "error", "off"}));
    app.add_option("--log", options.logFile, "File that the log is appended to; standard error if not given")
        ->type_name("FILE");
}

void addBrowse(CLI::App& app, Options& options)
{
    CLI::App* browse = app.add_subcommand("browse", "List a folder as the television would show it");
    browse->add_option("path", options.browse.path, "Folder: absolute, or below the first stick")->type_name("PATH");
    browse->add_flag("-r,--recursive", options.browse.recursive, "List the folders below, too");
    CLI::Option* size = browse->add_option("--page-size", options.browse.pageSize, "Show pages of so many entries")
                            ->type_name("N")
                            ->check(CLI::Range(1, 1'000'000));
    browse->add_option("--page", options.browse.page, "Show only this page, counted from 1")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000))
        ->needs(size);
    browse->callback([&options] { options.command = Options::Command::Browse; });
}

} // namespace

std::optional<int> parseOptions(int argc, char** argv, Options& options)
{
    CLI::App app("Runs the storage-media plugin on this computer, folders in place of USB sticks.", "desktop-tv");
    app.footer(kExamples);
    app.require_subcommand(1);
    app.fallthrough();
    addGlobalOptions(app, options);
    addBrowse(app, options);
    app.add_subcommand("shell", "Take commands as JSON lines, give replies and notifications as JSON lines")
        ->callback([&options] { options.command = Options::Command::Shell; });
    app.add_subcommand("commands", "List the commands that the plugin takes")->callback([&options] {
        options.command = Options::Command::Commands;
    });
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    if (options.command == Options::Command::Browse && options.sticks.empty() && !options.mountedSticks) {
        std::cerr << "desktop-tv: browse needs a stick: --stick FOLDER or --auto\n";
        return kUsageError;
    }
    if (options.pluginFile.empty()) {
        options.pluginFile = defaultPluginFile();
    }
    return std::nullopt;
}

} // namespace desktop
