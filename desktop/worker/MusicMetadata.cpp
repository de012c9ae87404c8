#include "desktop/worker/MusicMetadata.h"

#include "desktop/worker/Id3Genres.h"
#include "desktop/worker/KeptBytes.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/MusicFile.h"
#include "desktop/worker/StreamMetadata.h"
#include "desktop/worker/TagText.h"

#include <taglib/apetag.h>
#include <taglib/asftag.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4tag.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tpropertymap.h>
#include <taglib/xiphcomment.h>

#include <algorithm>
#include <cstdio>

namespace desktop {

namespace {

using Values = std::vector<std::string>;

std::string fourDigits(unsigned int year)
{
    char digits[sizeof "YYYY"] = "";
    if (year >= 1 && year <= 9999) {
        std::snprintf(digits, sizeof digits, "%04u", year % 10000);
    }
    return digits;
}

Values valuesOf(const TagLib::StringList& texts)
{
    Values values;
    for (const TagLib::String& text : texts) {
        values.push_back(stored(text));
    }
    return values;
}

/// The values of all of a tag's text frames @p name.
Values frameValues(const TagLib::ID3v2::Tag& tag, const char* name)
{
    Values values;
    for (const TagLib::ID3v2::Frame* const frame : tag.frameListMap()[name]) {
        if (const auto* const text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame)) {
            const Values more = valuesOf(text->fieldList());
            values.insert(values.end(), more.begin(), more.end());
        }
    }
    return values;
}

Values genresOf(const TagLib::ID3v2::Tag& tag)
{
    Values genres;
    for (const std::string& value : frameValues(tag, kId3GenreFrame)) {
        const Values some = genresOfId3(value);
        genres.insert(genres.end(), some.begin(), some.end());
    }
    return genres;
}

/// What @p tag holds under the names that all kinds of tags share; the library does not find the kind itself.
TagLib::PropertyMap propertiesOf(const TagLib::Tag& tag)
{
    if (const auto* const ape = dynamic_cast<const TagLib::APE::Tag*>(&tag)) {
        return ape->properties();
    }
    if (const auto* const comment = dynamic_cast<const TagLib::Ogg::XiphComment*>(&tag)) {
        return comment->properties();
    }
    if (const auto* const mp4 = dynamic_cast<const TagLib::MP4::Tag*>(&tag)) {
        return mp4->properties();
    }
    if (const auto* const asf = dynamic_cast<const TagLib::ASF::Tag*>(&tag)) {
        return asf->properties();
    }
    return tag.properties();
}

/// Fills in what @p metadata has not yet.
void add(MediaMetadata& metadata, const MediaMetadata& more)
{
    for (std::string MediaMetadata::*const text : {&MediaMetadata::title, &MediaMetadata::album, &MediaMetadata::year}) {
        if ((metadata.*text).empty()) {
            metadata.*text = more.*text;
        }
    }
    for (Values MediaMetadata::*const values : {&MediaMetadata::artists, &MediaMetadata::genres}) {
        if ((metadata.*values).empty()) {
            metadata.*values = more.*values;
        }
    }
}

MediaMetadata metadataOf(const TagLib::Tag& tag)
{
    MediaMetadata metadata;
    metadata.title = stored(tag.title());
    metadata.album = stored(tag.album());
    metadata.year = fourDigits(tag.year());
    if (const auto* const id3 = dynamic_cast<const TagLib::ID3v2::Tag*>(&tag)) {
        metadata.artists = frameValues(*id3, "TPE1");
        metadata.genres = genresOf(*id3);
        return metadata;
    }
    const TagLib::PropertyMap properties = propertiesOf(tag);
    metadata.artists = valuesOf(properties["ARTIST"]);
    metadata.genres = valuesOf(properties["GENRE"]);
    if (metadata.year.empty()) { // what is a year for one writer is a date for another
        metadata.year = yearOf(stored(properties["DATE"].toString()));
    }
    return metadata;
}

MediaMetadata metadataOf(const MusicFile& music)
{
    MediaMetadata metadata;
    metadata.duration = std::max(music.length + 500, 0) / 1000;
    for (const TagLib::Tag* const tag : music.tags) {
        add(metadata, metadataOf(*tag));
    }
    tidyTexts(metadata);
    return metadata;
}

// The library leaves out texts that are not in the charset that they claim; and some tags are in places that it does not
// know.
bool mayTellMore(const MusicFile& music, const MediaMetadata& metadata)
{
    const bool isTagged =
        std::any_of(music.tags.begin(), music.tags.end(), [](const TagLib::Tag* tag) { return !tag->isEmpty(); });
    return metadata.duration == 0 || music.isPartlyKnown ||
           (isTagged && (metadata.title.empty() || metadata.artists.empty()));
}

} // namespace

MediaMetadata readMusicMetadata(int fd)
{
    keepBytesOfTags();
    TagStream stream(fd);
    const MusicFile music = openMusicFile(stream);
    if (music.file == nullptr) {
        return readStreamMetadata(fd);
    }
    MediaMetadata metadata = metadataOf(music);
    if (mayTellMore(music, metadata)) {
        try {
            const MediaMetadata more = readStreamMetadata(fd);
            if (metadata.duration == 0 || music.isPartlyKnown) {
                metadata.duration = std::max(metadata.duration, more.duration);
            }
            add(metadata, more);
        } catch (const MediaError&) { // what the tag library knows has to do
        }
    }
    return metadata;
}

} // namespace desktop
