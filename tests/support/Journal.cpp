#include "support/Journal.h"

#include "platform/FakePlatform.h"
#include "support/Protocol.h"
#include "support/TypedJson.h"

#include <regex>

Happening dbg(const std::string& message)
{
    return {1, "", "[DBG][%]" + message + "\r\n"};
}

Happening info(const std::string& message)
{
    return {2, "", "[INFO][%]" + message + "\r\n"};
}

Happening war(const std::string& message)
{
    return {3, "", "[WAR][%]" + message + "\r\n"};
}

Happening err(const std::string& message)
{
    return {4, "", "[ERR][%]" + message + "\r\n"};
}

Happening in(const std::string& function, Happening line)
{
    line.function = function;
    return line;
}

Happening printed(const std::string& text)
{
    return {kAtEveryLevel, "", text};
}

Happening did(const std::string& call)
{
    return printed("<" + call + ">\n");
}

Happening readInt(const std::string& key, int before)
{
    return did("read int " + key + "(" + std::to_string(before) + ")");
}

Happening readUInt(const std::string& key, unsigned int before)
{
    return did("read uint " + key + "(" + std::to_string(before) + "u)");
}

Happening readBool(const std::string& key)
{
    return did("read bool " + key + "(false)");
}

Happening readString(const std::string& key)
{
    return did("read string " + key + "(\"\")");
}

Happening manager()
{
    return did("storage manager");
}

Happening published(const std::string& source, const std::string& name, const std::string& body)
{
    return did("publish " + source + " " + name + " " + body);
}

Happening broadcast(const std::string& name, const std::string& body)
{
    return published("storagemedia", name, body);
}

std::string render(const std::vector<Happening>& journal, const std::string& function, int level)
{
    static const std::string kFunctionMark = "[%]";
    std::string text;
    for (const Happening& happening : journal) {
        if (level >= happening.level) {
            continue;
        }
        std::string line = happening.text;
        const auto mark = line.find(kFunctionMark);
        if (happening.level < kAtEveryLevel && mark != std::string::npos) {
            line.replace(mark, kFunctionMark.size(),
                         "[" + (happening.function.empty() ? function : happening.function) + "]");
        }
        text += line;
    }
    return text;
}

std::string normalised(const std::string& journal)
{
    static const std::regex kPrefix(R"(\[[A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d \d{2}:\d{2}:\d{2} \d{4}\])"
                                    R"(\[DAEMON-STORAGEMEDIAMGR\]\[(DBG|INFO|WAR|ERR)\]\[(~?\w+)-[1-9]\d*\])");
    return std::regex_replace(journal, kPrefix, "[$1][$2]");
}

void recordPublication(const char* source, const char* name, Json::Value& body)
{
    testsupport::expectNotificationAsDescribed(source, name, body);
    FakePlatform::instance().record("publish " + std::string(source) + " " + name + " " + testsupport::typed(body));
}
