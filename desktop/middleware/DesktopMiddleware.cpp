#include "desktop/middleware/DesktopMiddleware.h"

#include <algorithm>
#include <filesystem>

namespace desktop {

namespace {

std::string absoluteFolder(const std::string& folder)
{
    const std::filesystem::path path = std::filesystem::absolute(folder).lexically_normal();
    return path.has_filename() ? path.string() : path.parent_path().string(); // without a trailing slash
}

} // namespace

DesktopMiddleware& DesktopMiddleware::instance()
{
    static auto* const instance = new DesktopMiddleware();
    return *instance;
}

DesktopMiddleware::DesktopMiddleware()
    : m_listings(std::make_unique<FolderListings>(PathResolver({}), m_events, FolderObserver()))
{
}

void DesktopMiddleware::open(DesktopSettings settings)
{
    std::vector<std::string> folders;
    for (const std::string& stick : settings.sticks) {
        const std::string folder = absoluteFolder(stick);
        if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
            folders.push_back(folder);
        }
    }
    m_listings = std::make_unique<FolderListings>(PathResolver(folders), m_events, std::move(settings.observer));
    m_volumes = std::make_unique<Volumes>(std::move(folders), m_events);
}

void DesktopMiddleware::startEvents()
{
    m_events.start();
}

void DesktopMiddleware::close()
{
    m_volumes.reset();
    m_listings->cancel();
    m_events.stop();
    m_events.setListener(nullptr);
}

Json::Value DesktopMiddleware::deviceList() const
{
    return m_volumes != nullptr ? m_volumes->deviceList() : Json::Value(Json::objectValue);
}

} // namespace desktop
