#include "desktop/cli/JsonLines.h"

#include "desktop/cli/TextColumns.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/Utf8.h"

#include <array>
#include <cstdio>
#include <memory>

namespace desktop {

namespace {

std::string firstLine(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(" \n");
    const std::size_t end = text.find('\n', begin);
    return begin == std::string::npos ? "" : text.substr(begin, end - begin);
}

// The reader reports "* Line L, Column C" and the reason on the next line. Only the first report is used.
JsonError firstError(const std::string& report)
{
    JsonError error;
    int line = 0;
    int length = 0;
    if (std::sscanf(report.c_str(), "* Line %d, Column %d%n", &line, &error.column, &length) == 2) {
        error.reason = firstLine(report.substr(static_cast<std::size_t>(length)));
    } else {
        error.reason = firstLine(report);
    }
    return error;
}

// JSON is plain ASCII outside of strings, and there its writer has escaped what is below U+0020.
std::string escapeUnsafe(const std::string& json)
{
    std::string out;
    out.reserve(json.size());
    for (std::string_view rest = json; !rest.empty();) {
        const Character character = firstCharacter(rest);
        if (isUnsafeForTerminal(character.value)) {
            std::array<char, 8> name = {};
            std::snprintf(name.data(), name.size(), "\\u%04x", static_cast<unsigned int>(character.value));
            out += name.data();
        } else {
            out += rest.substr(0, character.length);
        }
        rest.remove_prefix(character.length);
    }
    return out;
}

std::unique_ptr<Json::CharReader> strictReader()
{
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

} // namespace

std::string jsonLine(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    // Outside of strings JSON is plain ASCII, so bad bytes stand in strings, where a backslash is doubled.
    return escapeUnsafe(escapeBadBytes(Json::writeString(builder, value), "\\\\x")) + "\n";
}

Json::Value notificationLine(const Notification& notification)
{
    Json::Value line;
    line["notification"] = notification.name;
    line["source"] = notification.source;
    line["body"] = notification.body;
    return line;
}

bool parseJsonLine(std::string_view text, Json::Value& object, JsonError& error)
{
    std::string report;
    try {
        if (!strictReader()->parse(text.data(), text.data() + text.size(), &object, &report)) {
            error = firstError(report);
            return false;
        }
    } catch (const Json::Exception& tooDeep) {
        error.reason = tooDeep.what();
        return false;
    }
    if (!object.isObject()) {
        error.reason = "An object is wanted.";
        return false;
    }
    return true;
}

} // namespace desktop
