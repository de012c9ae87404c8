#include "desktop/workers/WorkerChannel.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/Utf8.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <sstream>

namespace desktop {

namespace {

constexpr std::size_t kMaxMessage = 64UL * 1024; // bytes
constexpr std::size_t kMaxFiles = 2;
constexpr std::size_t kMaxText = 1000; // bytes of a text of metadata
constexpr std::size_t kMaxValues = 30; // of a list of metadata
constexpr const char* kBadError = "The file cannot be read.";

struct TextMember {
    const char* key;
    std::string MediaMetadata::*member;
};
constexpr std::array kTexts = {
    TextMember{"title", &MediaMetadata::title}, TextMember{"album", &MediaMetadata::album},
    TextMember{"year", &MediaMetadata::year},   TextMember{"taken", &MediaMetadata::taken},
    TextMember{"error", &MediaMetadata::error},
};

struct ListMember {
    const char* key;
    std::vector<std::string> MediaMetadata::*member;
};
constexpr std::array kLists = {
    ListMember{"artists", &MediaMetadata::artists},
    ListMember{"genres", &MediaMetadata::genres},
};

struct NumberMember {
    const char* key;
    int MediaMetadata::*member;
};
constexpr std::array kNumbers = {
    NumberMember{"duration", &MediaMetadata::duration},
    NumberMember{"width", &MediaMetadata::width},
    NumberMember{"height", &MediaMetadata::height},
    NumberMember{"rotation", &MediaMetadata::rotation},
};

/// Room for the descriptors beside a message.
union Control {
    cmsghdr header;
    char bytes[CMSG_SPACE(kMaxFiles * sizeof(int))];
};

void attach(msghdr& message, Control& control, std::initializer_list<int> files)
{
    message.msg_control = control.bytes;
    message.msg_controllen = CMSG_SPACE(files.size() * sizeof(int));
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(files.size() * sizeof(int));
    std::memcpy(CMSG_DATA(header), files.begin(), files.size() * sizeof(int));
}

std::vector<UniqueFd> takeFiles(msghdr& message)
{
    std::vector<UniqueFd> files;
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int fd = -1;
            std::memcpy(&fd, CMSG_DATA(header) + i * sizeof(int), sizeof fd);
            files.emplace_back(fd);
        }
    }
    return files;
}

// Readers and writers are made once a thread: the making takes longer than a message.

std::string compactText(const Json::Value& body)
{
    static thread_local const std::unique_ptr<Json::StreamWriter> writer = [] {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        return std::unique_ptr<Json::StreamWriter>(builder.newStreamWriter());
    }();
    std::ostringstream text;
    writer->write(body, &text);
    return text.str();
}

bool parse(const char* text, std::size_t length, Json::Value& body)
try {
    static thread_local const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    return reader->parse(text, text + length, &body, nullptr) && body.isObject();
} catch (const Json::Exception&) { // nested beyond reason
    return false;
}

std::vector<std::string> textsFromJson(const Json::Value& json)
{
    std::vector<std::string> texts;
    if (!json.isArray()) {
        return texts;
    }
    for (const Json::Value& value : json) {
        std::string text = textFromJson(value);
        if (!text.empty() && texts.size() < kMaxValues) {
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

int numberFromJson(const Json::Value& json)
{
    return json.isInt() && json.asInt() > 0 ? json.asInt() : 0;
}

bool isRotation(int degrees)
{
    return degrees == 0 || degrees == 90 || degrees == 180 || degrees == 270;
}

} // namespace

bool sendMessage(int channel, const Json::Value& body, std::initializer_list<int> files)
{
    std::string text = compactText(body);
    iovec part = {text.data(), text.size()};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    Control control = {};
    if (files.size() > 0) {
        attach(message, control, files);
    }
    return TEMP_FAILURE_RETRY(sendmsg(channel, &message, MSG_NOSIGNAL)) >= 0;
}

std::optional<WorkerMessage> receiveMessage(int channel)
{
    const std::unique_ptr<char[]> text(new char[kMaxMessage]); // not to be filled for nothing
    iovec part = {text.get(), kMaxMessage};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    Control control = {};
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof control.bytes;
    ssize_t got = -1;
    do {
        // A reset is reported once when the other side ended with messages unread; what it has sent can still be received.
        got = recvmsg(channel, &message, MSG_CMSG_CLOEXEC);
    } while (got < 0 && (errno == EINTR || errno == ECONNRESET));
    WorkerMessage received;
    received.files = got >= 0 ? takeFiles(message) : std::vector<UniqueFd>(); // to be closed, whatever else came
    const bool whole = got > 0 && (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0;
    if (!whole || !parse(text.get(), static_cast<std::size_t>(got), received.body)) {
        return std::nullopt;
    }
    return received;
}

// What a file has taken a worker over to say is no more to be trusted than the file.

std::string textFromJson(const Json::Value& json)
{
    std::string text = json.isString() ? json.asString() : "";
    if (!isUtf8(text)) {
        return "";
    }
    text = onOneLine(std::move(text));
    cutUtf8(text, kMaxText);
    return text;
}

Json::Value toJson(const MediaMetadata& metadata)
{
    Json::Value json(Json::objectValue);
    for (const TextMember& text : kTexts) {
        if (!(metadata.*text.member).empty()) {
            json[text.key] = metadata.*text.member;
        }
    }
    for (const ListMember& list : kLists) {
        for (const std::string& value : metadata.*list.member) {
            json[list.key].append(value);
        }
    }
    for (const NumberMember& number : kNumbers) {
        if (metadata.*number.member != 0) {
            json[number.key] = metadata.*number.member;
        }
    }
    if (metadata.panorama) {
        json["panorama"] = true;
    }
    return json;
}

MediaMetadata metadataFromJson(const Json::Value& json)
{
    MediaMetadata metadata;
    for (const TextMember& text : kTexts) {
        metadata.*text.member = textFromJson(json[text.key]);
    }
    for (const ListMember& list : kLists) {
        metadata.*list.member = textsFromJson(json[list.key]);
    }
    for (const NumberMember& number : kNumbers) {
        metadata.*number.member = numberFromJson(json[number.key]);
    }
    metadata.rotation = isRotation(metadata.rotation) ? metadata.rotation : 0;
    if (metadata.error.empty() && json["error"].isString() && !json["error"].asString().empty()) { // a failure stays one
        metadata.error = kBadError;
    }
    metadata.panorama = json["panorama"].isBool() && json["panorama"].asBool();
    metadata.unread = json["unread"].isBool() && json["unread"].asBool();
    return metadata;
}

} // namespace desktop
