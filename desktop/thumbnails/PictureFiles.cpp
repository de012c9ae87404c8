#include "desktop/thumbnails/PictureFiles.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace desktop {

namespace {

namespace fs = std::filesystem;

// Of 10 to 20 KB each. Those handed over lie in memory.
constexpr std::size_t kMaxHandedOver = 2000;
constexpr std::size_t kMaxKept = 20'000;
constexpr unsigned int kTrimEvery = 1000; // pictures

} // namespace

bool copyFile(int from, int to)
{
    off_t offset = 0;
    ssize_t copied = 0;
    do {
        copied = TEMP_FAILURE_RETRY(sendfile(to, from, &offset, 1 << 20));
    } while (copied > 0);
    return copied == 0;
}

PictureFolder::PictureFolder(std::string folder)
    : m_folder(std::move(folder))
{
}

NewPicture PictureFolder::begin()
{
    NewPicture picture;
    {
        const LockGuard lock(m_mutex);
        picture.path = m_folder + "/" + std::to_string(m_count++) + ".jpg";
    }
    picture.fd = UniqueFd(open(picture.path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!picture.fd) {
        picture.path.clear();
    }
    return picture;
}

void PictureFolder::keep(const NewPicture& picture)
{
    const LockGuard lock(m_mutex);
    m_files.push_back(picture.path);
}

void PictureFolder::discard(const NewPicture& picture)
{
    unlink(picture.path.c_str());
}

void PictureFolder::trim()
{
    const LockGuard lock(m_mutex);
    while (m_files.size() > kMaxHandedOver) {
        unlink(m_files.front().c_str());
        m_files.pop_front();
    }
}

PictureCache::PictureCache(const std::string& folder)
    : m_folder(folder.empty() ? "" : folder + "/thumbnails")
{
}

UniqueFd PictureCache::find(const std::string& key) const
{
    return UniqueFd(m_folder.empty() ? -1 : open(fileOf(key).c_str(), O_RDONLY | O_CLOEXEC));
}

void PictureCache::keep(const std::string& key, int picture)
{
    if (m_folder.empty()) {
        return;
    }
    std::error_code unwritable; // opening the file finds out
    fs::create_directories(m_folder, unwritable);
    if (m_kept++ % kTrimEvery == 0) {
        trim();
    }
    // Another program may look for it at the same time: it is there whole or not at all.
    const std::string part = fileOf(key) + "." + std::to_string(gettid()) + ".part";
    const UniqueFd to(open(part.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (to && (!copyFile(picture, to.get()) || std::rename(part.c_str(), fileOf(key).c_str()) != 0)) {
        unlink(part.c_str());
    }
}

std::string PictureCache::fileOf(const std::string& key) const
{
    return m_folder + "/" + key + ".jpg";
}

void PictureCache::trim() const
{
    std::error_code ignored; // another program may be trimming, too
    std::vector<std::pair<fs::file_time_type, fs::path>> files;
    for (fs::directory_iterator entry(m_folder, ignored), end; entry != end; entry.increment(ignored)) {
        files.emplace_back(entry->last_write_time(ignored), entry->path());
    }
    if (files.size() <= kMaxKept) {
        return;
    }
    std::sort(files.begin(), files.end());
    files.resize(files.size() - kMaxKept);
    for (const auto& [time, file] : files) {
        fs::remove(file, ignored);
    }
}

} // namespace desktop
