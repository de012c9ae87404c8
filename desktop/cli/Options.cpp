#include "desktop/cli/Options.h"

#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/Suggestion.h"
#include "desktop/cli/TextColumns.h"
#include "desktop/host/PluginLibrary.h"

#include "desktop/files/EntryStatus.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace desktop {

namespace {

constexpr int kUsageError = 2;

constexpr const char* kExamples = R"(Examples:
  desktop-tv --stick ~/Videos browse
  desktop-tv --stick ~/Videos browse --recursive Holiday
  desktop-tv --stick ~/Videos browse --page-size 20 --page 2
  desktop-tv --stick ~/Videos search
  desktop-tv --auto groups --by artist
  desktop-tv --auto groups --by artist --key "The Sines"
  desktop-tv --stick ~/Videos info Holiday/beach.mp4
  desktop-tv --stick ~/Videos thumbnails Holiday --out /tmp/pictures --size 320x180
  desktop-tv --stick ~/Videos play Holiday/beach.mp4
  desktop-tv --auto play Music --mode shuffle
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

// A missing folder is accepted, since it may appear later; a file in its place is a mistake.
std::string stickFault(const std::string& folder)
{
    const auto status = statusWithoutWaiting(folder, STATX_TYPE);
    const bool fits = !folder.empty() && !(status && S_ISREG(status->stx_mode));
    return fits ? "" : "'" + folder + "' is no folder";
}

constexpr const char* kNoCache = "none";

std::string fromEnvironment(const char* variable)
{
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}

// Empty for a user without a home.
std::string usualCacheFolder()
{
    std::string caches = fromEnvironment("XDG_CACHE_HOME");
    if (caches.empty() || caches.front() != '/') {
        const std::string home = fromEnvironment("HOME");
        caches = home.empty() ? "" : home + "/.cache";
    }
    return caches.empty() ? "" : caches + "/storagemedia-desktop";
}

void addGlobalOptions(CLI::App& app, Options& options)
{
    app.add_option("--stick", options.sticks, "Folder that stands for a USB stick; repeated for each further one")
        ->type_name("FOLDER")
        ->allow_extra_args(false)
        ->check(stickFault);
    app.add_flag("--auto", options.mountedSticks, "Take what this computer mounts under /media, /run/media and /mnt, too");
    options.cacheFolder = usualCacheFolder();
    app.add_option_function<std::string>(
           "--cache",
           [&options](const std::string& folder) {
               options.cacheFolder = folder == kNoCache ? "" : folder;
               options.cacheIsGiven = folder != kNoCache;
           },
           "Folder that keeps what has been read of media files; none: keep nothing; " + visibleText(options.cacheFolder) +
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

constexpr const char* kFolderHelp = "Folder: absolute, or below the first stick that has it; all sticks if not given";

/// A subcommand that sets @p command when it is chosen.
CLI::App* addCommand(CLI::App& app, Options& options, Options::Command command, const char* name, const char* help)
{
    return app.add_subcommand(name, help)->callback([&options, command] { options.command = command; })->fallthrough();
}

void addJson(CLI::App* command, bool& json)
{
    command->add_flag("--json", json, "Write JSON lines");
}

void addBrowse(CLI::App& app, Options& options)
{
    CLI::App* browse =
        addCommand(app, options, Options::Command::Browse, "browse", "List a folder as the television would show it");
    browse->add_option("path", options.browse.path, kFolderHelp)->type_name("PATH");
    browse->add_flag("-r,--recursive", options.browse.recursive, "List the folders below, too");
    CLI::Option* size = browse->add_option("--page-size", options.browse.pageSize, "Show pages of so many entries")
                            ->type_name("N")
                            ->check(CLI::Range(1, 1'000'000));
    browse->add_option("--page", options.browse.page, "Show only this page, counted from 1")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000))
        ->needs(size);
    addJson(browse, options.browse.json);
}

void addSearch(CLI::App& app, Options& options)
{
    CLI::App* search = addCommand(app, options, Options::Command::Search, "search",
                                  "List the videos, and nothing else, in a folder and all below it");
    search->add_option("path", options.search.path, kFolderHelp)->type_name("PATH");
    addJson(search, options.search.json);
}

void addGroups(CLI::App& app, Options& options)
{
    static const std::map<std::string, GroupFileType> kGroupings = {
        {"genre", GROUP_TYPE_GENRE}, {"artist", GROUP_TYPE_ARTIST}, {"album", GROUP_TYPE_ALBUM},
        {"date", GROUP_TYPE_DATE},   {"month", GROUP_TYPE_MONTH},   {"year", GROUP_TYPE_YEAR}};
    CLI::App* groups = addCommand(app, options, Options::Command::Groups, "groups",
                                  "List the music or photos in a folder and all below it in groups");
    groups->add_option("path", options.groups.path, kFolderHelp)->type_name("PATH");
    groups
        ->add_option_function<std::string>(
            "--by", [&options](const std::string& grouping) { options.groups.by = kGroupings.at(grouping); },
            "Music by genre, artist or album; photos by date, month or year")
        ->type_name("WAY")
        ->required()
        ->check(CLI::IsMember(kGroupings));
    groups->add_option("--key", options.groups.key, "List the files of this group")->type_name("KEY");
    groups->add_flag("--descending", options.groups.descending, "Last first");
    addJson(groups, options.groups.json);
}

void addInfo(CLI::App& app, Options& options)
{
    CLI::App* info = addCommand(app, options, Options::Command::Info, "info", "Describe media files");
    info->add_option("files", options.info.files, "Files: absolute, or below the first stick that has them")
        ->type_name("FILE")
        ->required();
    addJson(info, options.info.json);
}

// Reads a text such as "320x180". Returns what is wrong with it, empty when nothing is.
std::string readSize(const std::string& text, ThumbnailsOptions& options)
{
    int length = -1;
    std::sscanf(text.c_str(), "%5ux%5u%n", &options.width, &options.height, &length);
    const bool whole = length == static_cast<int>(text.size()) && options.width > 0 && options.height > 0;
    return whole ? "" : "'" + text + "' is no size such as 320x180";
}

void addThumbnails(CLI::App& app, Options& options)
{
    CLI::App* thumbnails = addCommand(app, options, Options::Command::Thumbnails, "thumbnails",
                                      "Make small pictures of the media files in a folder");
    CLI::Option* path = thumbnails->add_option("path", options.thumbnails.path, kFolderHelp)->type_name("PATH");
    thumbnails->add_option("--file", options.thumbnails.file, "Of this file alone")->type_name("FILE")->excludes(path);
    thumbnails->add_option("--out", options.thumbnails.outFolder, "Folder that the pictures are copied to")
        ->type_name("FOLDER");
    thumbnails->add_option("--size", "What a picture must fit into, in pixels; 240x360 if not given")
        ->type_name("WxH")
        ->check([&options](const std::string& text) { return readSize(text, options.thumbnails); });
    addJson(thumbnails, options.thumbnails.json);
}

void addPlaylists(CLI::App& app, Options& options)
{
    CLI::App* playlists = addCommand(app, options, Options::Command::Playlists, "playlists",
                                     "List the playlists in a folder and all below it, or the files of one playlist");
    playlists->add_option("path", options.playlists.path, "Folder, or playlist file; as of the other commands")
        ->type_name("PATH");
    addJson(playlists, options.playlists.json);
}

void addPhotos(CLI::App& app, Options& options)
{
    static const std::map<std::string, PhotoOrder> kOrders = {
        {"name", PhotoOrder::Name}, {"date", PhotoOrder::Taken}, {"size", PhotoOrder::Size}, {"type", PhotoOrder::Type}};
    CLI::App* photos =
        addCommand(app, options, Options::Command::Photos, "photos", "List the photos in a folder in the order asked for");
    photos->add_option("path", options.photos.path, kFolderHelp)->type_name("PATH");
    photos
        ->add_option_function<std::string>(
            "--sort", [&options](const std::string& order) { options.photos.sort = kOrders.at(order); },
            "By name (as if not given), date, size or type")
        ->type_name("ORDER")
        ->check(CLI::IsMember(kOrders));
    photos->add_flag("--descending", options.photos.descending, "Last first");
    addJson(photos, options.photos.json);
}

// As a number is read, "nan" and "0x3" are some, too.
std::string secondsFault(const std::string& text)
{
    return text.find_first_not_of("0123456789.") == std::string::npos ? "" : "\"" + text + "\" is no number of seconds";
}

void addPlay(CLI::App& app, Options& options)
{
    static const std::map<std::string, PlayerModeE> kModes = {{"sequence", PLAYER_MODE_SEQUENCE},
                                                              {"repeat-all", PLAYER_MODE_REPEAT_ALL},
                                                              {"repeat-one", PLAYER_MODE_REPEAT_ONE},
                                                              {"shuffle", PLAYER_MODE_SHUFFLE}};
    PlayArguments& play = options.play;
    CLI::App* command = addCommand(app, options, Options::Command::Play, "play",
                                   "Play a file, the files of a folder or those of a playlist");
    command->add_option("path", play.path, "File, folder or playlist: absolute, or below the first stick that has it")
        ->type_name("PATH")
        ->required();
    command->add_flag("--all", play.all, "Play what follows the file in its folder, too, as of a folder or playlist");
    command
        ->add_option_function<std::string>(
            "--mode", [&play](const std::string& mode) { play.mode = kModes.at(mode); },
            "Play all, in this order: sequence, repeat-all, repeat-one or shuffle")
        ->type_name("ORDER")
        ->check(CLI::IsMember(kModes));
    CLI::Option* resume = command->add_flag("--resume", play.resume, "Go on where a video was left, without asking");
    CLI::Option* fromStart =
        command->add_flag("--from-start", play.fromStart, "Begin at the start, without asking")->excludes(resume);
    command->add_option("--at", play.startAt, "Begin so many seconds after the start")
        ->type_name("SECONDS")
        ->check(&secondsFault)
        ->check(CLI::Range(0.0, 360'000.0))
        ->excludes(resume)
        ->excludes(fromStart);
    command
        ->add_flag_callback(
            "--no-window", [&play] { play.window = false; }, "Show no window")
        ->excludes(command->add_flag_callback(
            "--window", [&play] { play.window = true; },
            "Show a window; if not given, only on a terminal of a computer with a display"));
    command->add_flag("--silent", play.silent, "Without sound");
    addJson(command, play.json);
}

void addShell(CLI::App& app, Options& options)
{
    CLI::App* shell = addCommand(app, options, Options::Command::Shell, "shell",
                                 "Take commands as JSON lines, give replies and notifications as JSON lines");
    shell->add_flag("--window", options.shellOutput.window, "Show what is played in a window");
    shell->add_flag("--sound", options.shellOutput.sound, "Let what is played be heard");
}

std::vector<std::string> commandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

void addOptionNames(const CLI::App& app, std::vector<std::string>& names)
{
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
}

// What is wrong with the command line. Words that nothing takes come first: they may be why something else is missing.
std::string faultOf(const CLI::App& app, const CLI::ParseError& error)
{
    const auto chosen = app.get_subcommands();
    const std::vector<std::string> unexpected = app.remaining(true);
    if (unexpected.empty()) {
        return chosen.empty() && error.get_name() == "RequiredError" ? "no command; desktop-tv --help lists them"
                                                                     : error.what();
    }
    const std::string& word = unexpected.front();
    if (word.size() > 1 && word.front() == '-') {
        std::vector<std::string> options;
        addOptionNames(app, options);
        for (const CLI::App* command : chosen) {
            addOptionNames(*command, options);
        }
        const std::string name = word.substr(0, word.find('='));
        return "no option '" + name + "'" + suggestion(name, options);
    }
    return chosen.empty() ? "no command '" + word + "'" + suggestion(word, commandNames(app))
                          : "nothing takes '" + word + "'";
}

} // namespace

std::optional<int> parseOptions(int argc, char** argv, Options& options, Output& output)
{
    CLI::App app("Runs the storage-media plugin on this computer, folders in place of USB sticks.", "desktop-tv");
    app.footer(kExamples);
    app.set_version_flag("--version", "desktop-tv " PROGRAM_VERSION, "Print name and version");
    app.require_subcommand(1);
    app.fallthrough();
    addGlobalOptions(app, options);
    addBrowse(app, options);
    addSearch(app, options);
    addGroups(app, options);
    addInfo(app, options);
    addThumbnails(app, options);
    addPlaylists(app, options);
    addPhotos(app, options);
    addPlay(app, options);
    addShell(app, options);
    addCommand(app, options, Options::Command::Commands, "commands", "List the commands that the plugin takes");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& wanted) { // help, or the version
        std::ostringstream text;
        app.exit(wanted, text);
        output.write(text.str());
        return 0;
    } catch (const CLI::ParseError& error) {
        printError(faultOf(app, error));
        return kUsageError;
    }
    if (options.isForPeople() && options.sticks.empty() && !options.mountedSticks) {
        printError("this needs a stick: --stick FOLDER or --auto");
        return kUsageError;
    }
    if (options.pluginFile.empty()) {
        options.pluginFile = defaultPluginFile();
    }
    return std::nullopt;
}

} // namespace desktop
