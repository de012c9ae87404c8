#include "desktop/cli/ShellCompletion.h"

#include "desktop/cli/DesktopLine.h"

#include "protocol/ProtocolTable.h"

#include <algorithm>

namespace desktop {

namespace {

using Words = std::vector<std::string>;

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kHelp = "help";

Words beginningWith(std::string_view typed, const Words& words)
{
    Words found;
    std::copy_if(words.begin(), words.end(), std::back_inserter(found),
                 [typed](const std::string& word) { return word.compare(0, typed.size(), typed) == 0; });
    return found;
}

Completion completionOfWords(std::string_view typed)
{
    Completion completion;
    const std::size_t blank = typed.find_last_of(kBlanks);
    completion.begin = blank == std::string_view::npos ? 0 : blank + 1;
    const std::string_view before = typed.substr(0, completion.begin);
    const std::size_t first = before.find_first_not_of(kBlanks);
    Words words = commandNames();
    if (first == std::string_view::npos) {
        words.emplace_back(kHelp);
    } else if (before.substr(first, before.find_last_not_of(kBlanks) + 1 - first) != kHelp) {
        return completion; // a command's name stands alone
    }
    completion.words = beginningWith(typed.substr(completion.begin), words);
    return completion;
}

/// A line of JSON as far as it has been typed.
struct TypedObject {
    bool inText = false;       ///< the line ends within a text
    std::size_t textBegin = 0; ///< of that text
    char before = '\0';        ///< what stands before that text, blanks left out
    int depth = 0;             ///< objects that are open
    std::string key;           ///< the latest key
    std::string command;       ///< the value of "command"
    std::string desktop;       ///< the value of "desktop"
};

TypedObject readTyped(std::string_view typed)
{
    TypedObject object;
    char last = '\0';
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const char c = typed[i];
        if (object.inText && c == '\\') {
            ++i;
        } else if (object.inText && c == '"') {
            object.inText = false;
            const std::string text(typed.substr(object.textBegin, i - object.textBegin));
            const bool isValue = object.before == ':';
            const bool isOuterValue = isValue && object.depth == 1;
            object.command = isOuterValue && object.key == "command" ? text : object.command;
            object.desktop = isOuterValue && object.key == "desktop" ? text : object.desktop;
            object.key = isValue ? object.key : text;
            last = c;
        } else if (c == '"' && !object.inText) {
            object.inText = true;
            object.textBegin = i + 1;
            object.before = last;
        } else if (!object.inText && kBlanks.find(c) == std::string_view::npos) {
            object.depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            last = c;
        }
    }
    return object;
}

Words keysOf(const std::string& name)
{
    Words keys;
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        if (name == command.name) {
            for (const protocol::RequestKey& key : command.request) {
                keys.emplace_back(key.name);
            }
        }
    }
    return keys;
}

Words outerKeys(const TypedObject& object)
{
    if (!object.command.empty()) {
        return {"command", "request"};
    }
    if (object.desktop.empty()) {
        return {"command", "desktop", "request"};
    }
    return object.desktop == "key" ? Words{"name"} : Words{"height", "off", "picture", "width"};
}

Words valuesOf(const TypedObject& object)
{
    if (object.depth != 1) {
        return {};
    }
    if (object.key == "command") {
        return commandNames();
    }
    if (object.key == "desktop") {
        return {"key", "screen"};
    }
    return object.key == "name" ? setKeyNames() : Words();
}

Completion completionOfObject(std::string_view typed)
{
    Completion completion;
    const TypedObject object = readTyped(typed);
    if (!object.inText) {
        return completion;
    }
    completion.begin = object.textBegin;
    Words words;
    if (object.before == ':') {
        words = valuesOf(object);
        completion.end = "\"";
    } else {
        words = object.depth == 1 ? outerKeys(object) : keysOf(object.command);
        completion.end = "\":";
    }
    completion.words = beginningWith(typed.substr(completion.begin), words);
    return completion;
}

} // namespace

std::vector<std::string> commandNames()
{
    Words names;
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        names.emplace_back(command.name);
    }
    return names;
}

Completion completionOf(std::string_view typed)
{
    const std::size_t first = typed.find_first_not_of(kBlanks);
    const bool isObject = first != std::string_view::npos && typed[first] == '{';
    return isObject ? completionOfObject(typed) : completionOfWords(typed);
}

std::string commonBeginning(const std::vector<std::string>& words)
{
    std::string common = words.empty() ? "" : words.front();
    for (const std::string& word : words) {
        const auto differs = std::mismatch(common.begin(), common.end(), word.begin(), word.end());
        common.erase(differs.first, common.end());
    }
    return common;
}

} // namespace desktop
