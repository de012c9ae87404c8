#pragma once

#include "desktop/browsing/FolderListings.h"

#include "tests/desktop/support/FakeReader.h"
#include "tests/support/TemporaryDirectory.h"

#include <fstream>
#include <sstream>

namespace testsupport {

/// A stick whose media files hold "key=value" lines, and a reader that understands them.
class MediaStick {
public:
    explicit MediaStick(const std::string& cacheFolder = "")
        : library(std::make_shared<desktop::MediaLibrary>(reader, cacheFolder))
        , resolver({folder.path()})
        , opener(resolver, std::make_shared<desktop::ReadReporter>())
        , listings(opener, events, library)
    {
    }

    void write(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        std::ofstream(folder.path(name)) << content;
    }

    static desktop::MediaFacts factsIn(const std::string& content)
    {
        desktop::MediaFacts facts;
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t equals = line.find('=');
            const std::string value = equals != std::string::npos ? line.substr(equals + 1) : "";
            const std::string key = line.substr(0, equals);
            (key == "artist"   ? facts.artist
             : key == "album"  ? facts.album
             : key == "genre"  ? facts.genre
             : key == "title"  ? facts.title
             : key == "taken"  ? facts.taken
             : key == "length" ? facts.year
                               : facts.error) = value;
        }
        facts.duration = std::atoi(facts.year.c_str());
        facts.panorama = content.find("around") != std::string::npos;
        return facts;
    }

    TemporaryDirectory folder;
    std::shared_ptr<FakeReader> reader =
        std::make_shared<FakeReader>([](const std::string& content, FileType) { return factsIn(content); });
    std::shared_ptr<desktop::MediaLibrary> library;
    desktop::EventQueue events;
    desktop::PathResolver resolver;
    desktop::LocationOpener opener;
    desktop::FolderListings listings;
};

} // namespace testsupport
