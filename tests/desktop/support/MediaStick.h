#pragma once

#include "desktop/browsing/FolderListings.h"

#include "tests/desktop/support/FakeReader.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <fstream>
#include <sstream>

namespace testsupport {

/// A stick whose media files hold "key=value" lines, several of "artist" or "genre" if need be, and a reader that
/// understands them.
class MediaStick {
public:
    explicit MediaStick(const std::string& cacheFolder = "")
        : catalog(std::make_shared<desktop::MetadataCatalog>(reader, cacheFolder))
        , resolver({folder.path()})
        , opener(resolver, std::make_shared<desktop::ReadReporter>(observer()))
        , listings(opener, events, catalog)
    {
    }

    void write(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        std::ofstream(folder.path(name)) << content;
    }

    static desktop::MediaMetadata metadataIn(const std::string& content)
    {
        desktop::MediaMetadata metadata;
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t equals = line.find('=');
            const std::string value = equals != std::string::npos ? line.substr(equals + 1) : "";
            const std::string key = line.substr(0, equals);
            (key == "artist"   ? metadata.artists.emplace_back()
             : key == "album"  ? metadata.album
             : key == "genre"  ? metadata.genres.emplace_back()
             : key == "title"  ? metadata.title
             : key == "taken"  ? metadata.taken
             : key == "length" ? metadata.year
                               : metadata.error) = value;
        }
        metadata.duration = std::atoi(metadata.year.c_str());
        metadata.panorama = content.find("around") != std::string::npos;
        return metadata;
    }

    /// What has been reported as unreadable.
    std::vector<std::string> failures() { return m_failures->sofar(); }

    TemporaryDirectory folder;
    std::shared_ptr<Gathered<std::string>> m_failures = std::make_shared<Gathered<std::string>>();
    std::shared_ptr<FakeReader> reader =
        std::make_shared<FakeReader>([](const std::string& content, FileType) { return metadataIn(content); });
    std::shared_ptr<desktop::MetadataCatalog> catalog;
    desktop::EventQueue events;
    desktop::PathResolver resolver;
    desktop::LocationOpener opener;
    desktop::FolderListings listings;

private:
    desktop::ReadObserver observer()
    {
        desktop::ReadObserver observer;
        observer.failed = [failures = m_failures](const std::string& path, const std::string& reason) {
            failures->add(path + ": " + reason);
        };
        return observer;
    }
};

} // namespace testsupport
