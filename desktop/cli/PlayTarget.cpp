#include "desktop/cli/PlayTarget.h"

#include "desktop/cli/ErrorMessage.h"

#include "desktop/files/PathResolver.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace desktop {

namespace {

constexpr int kPageSize = 1000; // entries to a request

/// An entry of a list, as far as playing it goes.
struct ListedEntry {
    std::string path;
    int type = FILE_TYPE_UNKNOWN;
};

/// The player that entries of type @p type are for; FILE_TYPE_UNKNOWN when there is none.
FileType kindOf(int type)
{
    switch (type) {
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        return FILE_TYPE_PHOTO;
    case FILE_TYPE_VIDEO:
    case FILE_TYPE_MUSIC:
        return static_cast<FileType>(type);
    default:
        return FILE_TYPE_UNKNOWN;
    }
}

std::string directoryOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

// As a listing spells it: without "..", without a slash at its end.
std::string plainPath(const std::string& path)
{
    return withoutTrailingSlash(std::filesystem::path(path).lexically_normal().string());
}

/// All entries of @p list; nothing, with an error, when they cannot be read. The page size is set by way of @p directory.
std::optional<std::vector<ListedEntry>> readList(Session& session, const std::string& list, const std::string& directory)
{
    if (!session.setPageSize(directory, kPageSize)) {
        return std::nullopt;
    }
    std::vector<ListedEntry> entries;
    Json::ArrayIndex onPage = kPageSize;
    for (int page = 0; onPage == kPageSize; ++page) {
        const auto read = session.stopped() ? std::nullopt : session.readPageOf(list, page);
        if (!read) {
            return std::nullopt;
        }
        onPage = read->size();
        for (const Json::Value& entry : *read) {
            entries.push_back({entry["path"].asString(), entry["type"].asInt()});
        }
    }
    return entries;
}

PlayTarget targetIn(const std::string& list, FileType kind, const std::vector<ListedEntry>& entries)
{
    PlayTarget target;
    target.list = list;
    target.kind = kind;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (kindOf(entries[i].type) == kind) {
            target.indices.push_back(static_cast<unsigned int>(i));
        }
    }
    return target;
}

std::optional<PlayTarget> wholeList(Session& session, const std::string& list, const std::string& directory)
{
    const auto entries = readList(session, list, directory);
    if (!entries) {
        return std::nullopt;
    }
    std::vector<int> types;
    std::transform(entries->begin(), entries->end(), std::back_inserter(types),
                   [](const ListedEntry& entry) { return entry.type; });
    const auto kind = kindToPlay(types);
    if (!kind) {
        session.fail(list, "It has no video, music or photo");
        return std::nullopt;
    }
    PlayTarget target = targetIn(list, *kind, *entries);
    target.index = target.indices.front();
    target.isWholeList = true;
    return target;
}

std::optional<PlayTarget> oneFile(Session& session, const std::string& directory, const std::vector<ListedEntry>& entries,
                                  std::size_t index)
{
    const FileType kind = kindOf(entries[index].type);
    if (kind == FILE_TYPE_UNKNOWN) {
        session.fail(entries[index].path, "It is no video, music or photo");
        return std::nullopt;
    }
    PlayTarget target = targetIn(directory, kind, entries);
    target.index = static_cast<unsigned int>(index);
    return target;
}

/// What @p path means, which is no stick itself: what its folder's listing says.
std::optional<PlayTarget> listedTarget(Session& session, const std::string& path)
{
    const std::string directory = directoryOf(path);
    const auto entries = readList(session, directory, directory);
    if (!entries) {
        return std::nullopt;
    }
    const auto found =
        std::find_if(entries->begin(), entries->end(), [&path](const ListedEntry& entry) { return entry.path == path; });
    if (found == entries->end()) {
        session.fail(path, systemErrorText(ENOENT));
        return std::nullopt;
    }
    if (found->type == FILE_TYPE_FOLDER || found->type == FILE_TYPE_PLAYLIST) {
        return wholeList(session, path, found->type == FILE_TYPE_FOLDER ? path : directory);
    }
    return oneFile(session, directory, *entries, static_cast<std::size_t>(found - entries->begin()));
}

bool isStick(Session& session, const std::string& path)
{
    const Json::Value& sticks = session.devices();
    return std::any_of(sticks.begin(), sticks.end(), [&path](const Json::Value& stick) { return stick["path"] == path; });
}

} // namespace

std::string PlayTarget::placeOf(unsigned int entry) const
{
    const auto found = std::lower_bound(indices.begin(), indices.end(), entry);
    return std::to_string(found - indices.begin() + 1) + " of " + std::to_string(indices.size());
}

std::optional<FileType> kindToPlay(const std::vector<int>& types)
{
    for (const FileType kind : {FILE_TYPE_VIDEO, FILE_TYPE_MUSIC, FILE_TYPE_PHOTO}) {
        if (std::any_of(types.begin(), types.end(), [kind](int type) { return kindOf(type) == kind; })) {
            return kind;
        }
    }
    return std::nullopt;
}

std::optional<PlayTarget> findPlayTarget(Session& session, const std::string& typed)
{
    const std::string path = plainPath(session.pathOf(typed));
    return isStick(session, path) ? wholeList(session, path, path) : listedTarget(session, path);
}

} // namespace desktop
