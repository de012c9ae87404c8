#include "desktop/cli/DesktopLine.h"

#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/ScreenPicture.h"
#include "desktop/cli/Suggestion.h"

#include "desktop/text/NameEncoding.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace desktop {

namespace {

const std::map<std::string, SetKey> kSetKeys = {{"super-demo", SetKey::SuperDemo}, {"usb-source", SetKey::UsbSource}};

/// A number that may be left out.
struct SideRange {
    const char* member;
    int greatest;
};

constexpr SideRange kSides[] = {{"width", kGreatestScreenWidth}, {"height", kGreatestScreenHeight}};

std::string quoted(const std::string& name)
{
    return "\"" + name + "\"";
}

/// That @p line has another member than "desktop" and @p wanted; empty when it has none.
std::string unknownMember(const Json::Value& line, const std::vector<std::string>& wanted)
{
    for (const std::string& member : line.getMemberNames()) {
        if (member != "desktop" && std::find(wanted.begin(), wanted.end(), member) == wanted.end()) {
            const std::string meant = nearestName(member, wanted);
            return "Unknown member " + quoted(member) + (meant.empty() ? "." : "; did you mean " + quoted(meant) + "?");
        }
    }
    return "";
}

std::string faultOfKey(const Json::Value& line)
{
    const std::string unknown = unknownMember(line, {"name"});
    if (!unknown.empty() || !line["name"].isString()) {
        return unknown.empty() ? "\"name\" is missing or no string." : unknown;
    }
    const std::string name = line["name"].asString();
    if (kSetKeys.count(name) > 0) {
        return "";
    }
    const std::vector<std::string> names = setKeyNames();
    const std::string meant = nearestName(name, names);
    const std::string list = quoted(names.front()) + " and " + quoted(names.back());
    return "Unknown key " + quoted(name) + "; " +
           (meant.empty() ? "there are " + list + "." : "did you mean " + quoted(meant) + "?");
}

std::string faultOfPicture(const Json::Value& line)
{
    const std::string file = line["picture"].isString() ? line["picture"].asString() : "";
    if (file.empty() || file.find('\0') != std::string::npos) {
        return "\"picture\" is no file name.";
    }
    for (const SideRange& side : kSides) {
        const Json::Value number = line.get(side.member, kLeastScreenSide);
        const bool fits = number.isInt() && number.asInt() >= kLeastScreenSide && number.asInt() <= side.greatest;
        if (!fits) {
            return quoted(side.member) + " is no number from " + std::to_string(kLeastScreenSide) + " to " +
                   std::to_string(side.greatest) + ".";
        }
    }
    return "";
}

std::string faultOfScreen(const Json::Value& line)
{
    if (line.isMember("picture")) {
        const std::string unknown = unknownMember(line, {"picture", "width", "height"});
        return unknown.empty() ? faultOfPicture(line) : unknown;
    }
    const std::string unknown = unknownMember(line, {"off", "picture"});
    const bool fits = !line.isMember("off") || line["off"].isBool();
    return unknown.empty() && !fits ? "\"off\" is neither true nor false." : unknown;
}

Json::Value takePicture(Host& host, const Json::Value& line)
{
    Json::Value answer;
    const int width = line.get("width", kUsualScreenWidth).asInt();
    const int height = line.get("height", kUsualScreenHeight).asInt();
    const bool off = host.isScreenOff();
    const int failed = writeScreenPicture(host, width, height, decodeName(line["picture"].asString()));
    if (failed != 0) {
        answer["error"] = line["picture"].asString() + ": " + systemErrorText(failed);
        return answer;
    }
    answer = screenLine(off);
    answer["picture"] = line["picture"];
    answer["width"] = width;
    answer["height"] = height;
    return answer;
}

} // namespace

std::string faultOfDesktopLine(const Json::Value& line)
{
    if (line["desktop"] == "screen") {
        return faultOfScreen(line);
    }
    return line["desktop"] == "key" ? faultOfKey(line) : "For the desktop itself there are \"screen\" and \"key\".";
}

Json::Value runDesktopLine(Host& host, const Json::Value& line)
{
    if (line["desktop"] == "key") {
        host.pressKey(kSetKeys.at(line["name"].asString()));
        return line;
    }
    if (line.isMember("picture")) {
        return takePicture(host, line);
    }
    if (line.isMember("off")) {
        host.switchScreen(line["off"].asBool());
        return {};
    }
    return screenLine(host.isScreenOff());
}

std::vector<std::string> setKeyNames()
{
    std::vector<std::string> names;
    std::transform(kSetKeys.begin(), kSetKeys.end(), std::back_inserter(names), [](const auto& key) { return key.first; });
    return names;
}

Json::Value screenLine(bool off)
{
    Json::Value line;
    line["desktop"] = "screen";
    line["off"] = off;
    return line;
}

} // namespace desktop
