#include "fuzz/PlatformAnswers.h"

namespace {

std::int32_t numberOf(const Json::Value& value)
{
    return value.isInt() ? value.asInt() : value.isUInt() ? static_cast<std::int32_t>(value.asUInt()) : 0;
}

std::uint64_t sizeOf(const Json::Value& value)
{
    return value.isUInt64() ? value.asUInt64() : 0;
}

std::map<std::string, std::string> textsOf(const Json::Value& object)
{
    std::map<std::string, std::string> texts;
    for (const std::string& name : object.isObject() ? object.getMemberNames() : Json::Value::Members()) {
        texts[name] = textIn(object, name.c_str());
    }
    return texts;
}

std::vector<media_file_info_s> mediaOf(const Json::Value& list)
{
    std::vector<media_file_info_s> media;
    for (const Json::Value& item : list) {
        media_file_info_s info;
        info.type = static_cast<FileType>(numberIn(item, "type"));
        info.duration = numberIn(item, "duration");
        info.width = numberIn(item, "width");
        info.height = numberIn(item, "height");
        info.music = {textIn(item, "artist"), textIn(item, "album"), textIn(item, "genre")};
        media.push_back(info);
    }
    return media;
}

struct statfs fileSystemOf(const Json::Value& object)
{
    struct statfs fs = {};
    fs.f_bsize = numberIn(object, "bsize");
    fs.f_blocks = sizeOf(object.isObject() ? object["blocks"] : Json::Value());
    fs.f_bfree = sizeOf(object.isObject() ? object["bfree"] : Json::Value());
    return fs;
}

void answerWithLists(FakePlatform& platform, const std::string& name, const Json::Value& answer)
{
    if (name == "files") {
        platform.files = filesOf(answer);
    } else if (name == "media") {
        platform.media = mediaOf(answer);
        platform.fileInfo = platform.media.empty() ? media_file_info_s() : platform.media.front();
    } else if (name == "playlists") {
        platform.playlists.clear();
        for (const FolderFileInfo_s& file : filesOf(answer)) {
            platform.playlists.emplace_back(file.path, static_cast<unsigned int>(file.type));
        }
    } else if (name == "directories") {
        platform.directories = textsOf(answer);
    } else if (name == "names") {
        platform.names = textsOf(answer);
    } else if (name == "statuses") {
        for (const std::string& operation : answer.isObject() ? answer.getMemberNames() : Json::Value::Members()) {
            platform.statuses[operation] = numberOf(answer[operation]);
        }
    }
}

void answerWithValue(FakePlatform& platform, const std::string& name, const Json::Value& answer)
{
    if (name == "json") {
        platform.json = answer;
    } else if (name == "title") {
        platform.title = platform.meta.title = platform.codec.strTitle = answer.isString() ? answer.asString() : "";
    } else if (name == "logLevel") {
        platform.logLevel = numberOf(answer);
    } else if (name == "currentIndex") {
        platform.currentIndex = static_cast<unsigned int>(numberOf(answer));
    } else if (name == "number") {
        platform.pictureSize = platform.switchWritesBack = platform.meta.dolby = platform.codec.Abitrate = numberOf(answer);
    } else if (name == "screenStatus") {
        platform.screenStatus = numberOf(answer);
    } else if (name == "flag") {
        platform.resume = platform.usbDirectoryOpens = platform.thumbnailDirectoriesExist = answer == Json::Value(true);
    } else if (name == "fileSystem") {
        platform.fileSystem = fileSystemOf(answer);
    }
}

} // namespace

std::int32_t numberIn(const Json::Value& object, const char* key)
{
    return object.isObject() ? numberOf(object[key]) : 0;
}

std::string textIn(const Json::Value& object, const char* key)
{
    return object.isObject() && object[key].isString() ? object[key].asString() : "";
}

std::vector<FolderFileInfo_s> filesOf(const Json::Value& list)
{
    std::vector<FolderFileInfo_s> files;
    for (const Json::Value& item : list) {
        FolderFileInfo_s file;
        file.type = numberIn(item, "type");
        file.size = sizeOf(item.isObject() ? item["size"] : Json::Value());
        file.ctime = textIn(item, "ctime");
        file.name = textIn(item, "name");
        file.path = textIn(item, "path");
        file.title = textIn(item, "title");
        file.isPhoto360 = numberIn(item, "isPhoto360");
        files.push_back(file);
    }
    return files;
}

void answerWith(FakePlatform& platform, const Json::Value& answers)
{
    for (const std::string& name : answers.isObject() ? answers.getMemberNames() : Json::Value::Members()) {
        answerWithLists(platform, name, answers[name]);
        answerWithValue(platform, name, answers[name]);
    }
    // The browser returns no fewer media than files.
    platform.media.resize(std::max(platform.media.size(), platform.files.size()));
}
