#include "desktop/cli/ShellHelp.h"

#include "desktop/cli/TextColumns.h"

#include "protocol/ProtocolTable.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr const char* kHowTo =
    "Type the name of a command, or an object with its request:\n"
    "  storagemedia.media.entermmbroswer\n"
    "  {\"command\":\"storagemedia.get.device.usage\",\"request\":{\"path\":\"/media/stick\"}}\n"
    "or to the desktop itself:\n"
    "  {\"desktop\":\"screen\"}                          asks whether the screen is off\n"
    "  {\"desktop\":\"screen\",\"off\":true}               switches it\n"
    "  {\"desktop\":\"screen\",\"picture\":\"FILE.jpg\"}     writes what it shows to a file\n"
    "  {\"desktop\":\"key\",\"name\":\"usb-source\"}         presses a key of the set, or super-demo\n"
    "The tabulator key completes names and keys. help COMMAND explains one. Ctrl-D ends.\n\n";

std::string onTheDesktop(const std::string& meaning)
{
    std::string text = "  On the desktop: ";
    for (const char letter : meaning) {
        text += letter == '\n' ? std::string("\n  ") : std::string(1, letter);
    }
    return text + "\n";
}

} // namespace

std::string shellHelp()
{
    std::string text = kHowTo;
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        text += padRight(command.name, 43) + "  " + command.purpose + "\n";
    }
    return text;
}

std::string commandHelp(const std::string& name)
{
    const auto command = std::find_if(protocol::kCommands.begin(), protocol::kCommands.end(),
                                      [&name](const auto& known) { return name == known.name; });
    if (command == protocol::kCommands.end()) {
        return "";
    }
    std::string text = name + "\n  " + command->purpose + "\n";
    for (const protocol::RequestKey& key : command->request) {
        text += "  \"" + std::string(key.name) + "\": " + key.type + ", " + key.need + "; " + key.meaning + "\n";
    }
    text += command->answer == nullptr ? "" : std::string("  Answered by ") + command->answer + ".\n";
    text += command->desktop == nullptr ? "" : onTheDesktop(command->desktop);
    return text;
}

} // namespace desktop
