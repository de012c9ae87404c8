// The floor of the groupings: reads the tags of the music files below a folder one after the other, with the library alone.

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <cstdio>
#include <filesystem>
#include <map>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tag_loop FOLDER\n");
        return 2;
    }
    std::map<std::string, unsigned int> artists;
    std::uint64_t read = 0; // of what is read besides, so that no reading can be left out
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[1])) {
        if (entry.path().extension() != ".mp3") {
            continue;
        }
        const TagLib::FileRef file(entry.path().c_str());
        const TagLib::Tag* const tag = file.tag();
        if (tag == nullptr || file.audioProperties() == nullptr) {
            continue;
        }
        ++artists[tag->artist().to8Bit(true)];
        for (const TagLib::String& text : {tag->title(), tag->album(), tag->genre()}) {
            read += text.to8Bit(true).size();
        }
        read += tag->year() + static_cast<unsigned int>(file.audioProperties()->lengthInMilliseconds());
    }
    for (const auto& [artist, files] : artists) {
        std::printf("%u\t%s\n", files, artist.c_str());
    }
    std::printf("%llu read besides\n", static_cast<unsigned long long>(read));
    return 0;
}
