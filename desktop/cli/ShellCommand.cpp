#include "desktop/cli/ShellCommand.h"

#include "desktop/cli/JsonLines.h"
#include "desktop/cli/LineReader.h"
#include "desktop/host/CommandNames.h"

#include "platform/SocMiddleware.h"

namespace desktop {

namespace {

constexpr int kPatienceMs = 30'000;

void writeError(Output& output, int line, int column, const std::string& reason)
{
    Json::Value error;
    error["error"] = reason;
    error["line"] = line;
    error["column"] = column;
    output.write(jsonLine(error));
}

/// What is wrong with the members of a command line; empty when nothing is.
std::string faultOf(const Json::Value& line)
{
    for (const std::string& member : line.getMemberNames()) {
        if (member != "command" && member != "request") {
            return "Unknown member \"" + member + "\"; \"command\" and \"request\" are wanted.";
        }
    }
    if (!line["command"].isString()) {
        return "\"command\" is missing or no string.";
    }
    if (!isCommandName(line["command"].asString())) {
        return "Unknown command \"" + line["command"].asString() + "\"; desktop-tv commands lists them.";
    }
    const bool requestFits = !line.isMember("request") || line["request"].isObject();
    return requestFits ? "" : "\"request\" is no object.";
}

void writeScreen(Output& output, bool off)
{
    Json::Value line;
    line["desktop"] = "screen";
    line["off"] = off;
    output.write(jsonLine(line));
}

bool screenIsOff()
{
    int status = 0;
    SocMiddleware::getInstance()->getSystemMgr()->getScreenStatus(&status);
    return status != 0;
}

/// What is wrong with a line for the desktop itself; empty when nothing is.
std::string faultOfDesktopLine(const Json::Value& line)
{
    const bool known = line["desktop"] == "screen" && line.size() == (line.isMember("off") ? 2U : 1U);
    const bool fits = known && (!line.isMember("off") || line["off"].isBool());
    return fits ? "" : "For the desktop itself there is {\"desktop\":\"screen\"}, with \"off\" true or false to switch it.";
}

// Answered by a line like the one that tells of a screen that the plugin switches.
void runDesktopLine(Output& output, const Json::Value& line)
{
    if (line.isMember("off")) {
        SocMiddleware::getInstance()->getSystemMgr()->ScreenOff(line["off"].asBool() ? 1 : 0);
    } else {
        writeScreen(output, screenIsOff());
    }
}

void runCommand(Television& television, Output& output, int number, const Json::Value& line)
{
    // The reply's line comes before that of any notification that the command leads to.
    const auto turn = DesktopMiddleware::instance().events().holdDelivery();
    Json::Value answer;
    answer["command"] = line["command"];
    answer["reply"] = Json::Value(Json::objectValue);
    try {
        const Json::Value request = line.get("request", Json::Value(Json::objectValue));
        answer["result"] = television.execute(line["command"].asString(), request, answer["reply"]);
    } catch (const std::exception& unusable) {
        writeError(output, number, 1, std::string("The request cannot be used: ") + unusable.what());
        return;
    }
    output.write(jsonLine(answer));
}

void runLine(Television& television, Output& output, int number, const std::string& text)
{
    Json::Value line;
    JsonError error;
    if (!parseJsonLine(text, line, error)) {
        writeError(output, number, error.column, error.reason);
        return;
    }
    const bool forDesktop = line.isMember("desktop");
    const std::string fault = forDesktop ? faultOfDesktopLine(line) : faultOf(line);
    if (!fault.empty()) {
        writeError(output, number, 1, fault);
    } else if (forDesktop) {
        runDesktopLine(output, line);
    } else {
        runCommand(television, output, number, line);
    }
}

bool isBlank(const std::string& text)
{
    return text.find_first_not_of(" \t\r") == std::string::npos;
}

void writeOverdue(Television& television, Output& output)
{
    for (const auto& [command, reqId] : television.answers().pending()) {
        Json::Value overdue;
        overdue["error"] = "No answer has come.";
        overdue["command"] = command;
        overdue["reqId"] = reqId;
        output.write(jsonLine(overdue));
    }
}

} // namespace

int runShell(TelevisionSettings settings, Output& output, const Interrupts& interrupts)
{
    settings.notified = [&output](const std::string& source, const std::string& name, const Json::Value& body) {
        Json::Value line;
        line["notification"] = name;
        line["source"] = source;
        line["body"] = body;
        output.write(jsonLine(line));
    };
    settings.desktop.screenSwitched = [&output](bool off) { writeScreen(output, off); };
    Television television(std::move(settings));
    LineReader input(STDIN_FILENO, interrupts);
    int number = 0;
    while (const auto text = input.next()) {
        ++number;
        if (!isBlank(*text)) {
            runLine(television, output, number, *text);
        }
        if (!output.good()) {
            break;
        }
    }
    const PendingAnswers::Wait end = television.answers().wait(interrupts, output.good() ? kPatienceMs : 0);
    if (interrupts.pending()) {
        return interrupts.exitStatus();
    }
    if (end == PendingAnswers::Wait::TimedOut) {
        writeOverdue(television, output);
    }
    return end == PendingAnswers::Wait::Answered && output.good() ? 0 : 1;
}

} // namespace desktop
