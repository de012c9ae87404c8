#include "support/Journal.h"

#include "platform/FakePlatform.h"
#include "support/Protocol.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

#include <cstdio>
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

Happening changed(const std::string& field, const std::string& value)
{
    return printed("{" + field + " = \"" + value + "\"}\n");
}

Happening changed(const std::string& field, const char* value)
{
    return changed(field, std::string(value));
}

Happening changed(const std::string& field, int value)
{
    return printed("{" + field + " = " + std::to_string(value) + "}\n");
}

Happening changed(const std::string& field, bool value)
{
    return printed("{" + field + " = " + (value ? "true" : "false") + "}\n");
}

Happening changed(const std::string& field, PublishNotificationCallback value)
{
    return printed("{" + field + " = " + pointerText(value) + "}\n");
}

Happening slotChanged(int slot, const std::string& text, const std::string& value)
{
    return changed("m_requestSlots[" + std::to_string(slot) + "]." + text, value);
}

Happening published(const std::string& source, const std::string& name, const std::string& body)
{
    return did("publish " + source + " " + name + " " + body);
}

Happening broadcast(const std::string& name, const std::string& body)
{
    return published("storagemedia", name, body);
}

Journal operator+(Journal first, const Journal& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::string render(const Journal& journal, const std::string& function, int level)
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
    static const std::regex kRepeatedTag(R"(\[(\w+)-(\d+)\]\1-\2, )");
    return std::regex_replace(std::regex_replace(journal, kRepeatedTag, "[$1-$2]$1-#, "), kPrefix, "[$1][$2]");
}

std::string pointerText(PublishNotificationCallback callback)
{
    char text[32] = {};
    std::snprintf(text, sizeof text, "%p", reinterpret_cast<void*>(callback));
    return text;
}

void recordPublication(const char* source, const char* name, Json::Value& body)
{
    testsupport::expectNotificationAsDescribed(source, name, body);
    FakePlatform::instance().record("publish " + std::string(source) + " " + name + " " + testsupport::typed(body));
    EXPECT_FALSE(FakePlatform::instance().isHandleHeld()) << "a manager's handle is held while " << name << " is published";
    body = "changed by the host";
}
