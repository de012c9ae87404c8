#include "desktop/cli/ShellCommand.h"

#include "desktop/cli/DesktopLine.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/LineEditor.h"
#include "desktop/cli/LineReader.h"
#include "desktop/cli/ShellCompletion.h"
#include "desktop/cli/ShellHelp.h"
#include "desktop/cli/Suggestion.h"
#include "desktop/host/CommandNames.h"

#include <sstream>

namespace desktop {

namespace {

constexpr const char* kListedByHelp = "help lists them.";
constexpr const char* kBlanks = " \t\n\v\f\r"; // what a stream skips before a word

/// Says that there is no command @p typed; @p hint when none is near it.
std::string unknownCommand(const std::string& typed, const std::string& hint)
{
    const std::string meant = nearestName(typed, commandNames());
    return "Unknown command \"" + typed + "\"; " + (meant.empty() ? hint : "did you mean \"" + meant + "\"?");
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
        return unknownCommand(line["command"].asString(), "desktop-tv commands lists them.");
    }
    const bool requestFits = !line.isMember("request") || line["request"].isObject();
    return requestFits ? "" : "\"request\" is no object.";
}

bool isBlank(const std::string& text)
{
    return text.find_first_not_of(kBlanks) == std::string::npos;
}

/// Shows the log above the line of an editor, which must outlive the object.
class LogAboveLine {
public:
    LogAboveLine(LogOutput& log, LineEditor& editor)
        : m_log(log)
    {
        m_log.showOnTerminal([&editor](const std::string& text) { editor.showAbove(text); });
    }
    ~LogAboveLine() { m_log.showOnTerminal(nullptr); }
    LogAboveLine(const LogAboveLine&) = delete;
    LogAboveLine& operator=(const LogAboveLine&) = delete;

private:
    LogOutput& m_log;
};

/// One run of the shell. All lines are written by one thread, so a reply comes before the notifications that follow it.
class Shell {
public:
    Shell(HostClient& client, Output& output, const Interrupts& interrupts, LogOutput& log)
        : m_client(client)
        , m_output(output)
        , m_interrupts(interrupts)
        , m_log(log)
    {
    }

    int run();

private:
    void runLines(LineSource& input);
    void runTypedLines();
    void runTyped(const std::string& text);
    void writeHelp(const std::string& command);
    void runLine(const std::string& text);
    void runCommand(const Json::Value& line);
    void runForDesktop(const Json::Value& line);
    bool writeUpdates();
    void writeLastUpdates();
    void writeUpdate(const HostUpdate& update);
    void writeUnansweredEnd(const RequestEnded& request);
    void writeWindowKey(const std::string& key);
    void writeError(int column, const std::string& reason);
    void writeMissingAnswers();
    void write(const Json::Value& line) { m_output.write(jsonLine(line)); }

    HostClient& m_client;
    Output& m_output;
    const Interrupts& m_interrupts;
    LogOutput& m_log;
    bool m_isTyped = false; ///< by a person on a terminal
    int m_lineNumber = 0;
};

int Shell::run()
{
    if (isatty(STDIN_FILENO) == 1 && m_output.isTerminal()) {
        runTypedLines();
    } else {
        LineReader input(STDIN_FILENO, m_interrupts, {m_client.fd(), [this] { return writeUpdates(); }});
        runLines(input);
    }
    const auto timeout = m_output.good() ? HostClient::kAnswerTimeout : std::chrono::seconds(0);
    const auto end = m_client.waitForAnswers(timeout, [this](const HostUpdate& update) { writeUpdate(update); });
    if (m_interrupts.pending()) {
        return m_interrupts.exitStatus();
    }
    if (end == HostClient::WaitResult::TimedOut) {
        writeMissingAnswers();
    }
    const bool isWhole = end == HostClient::WaitResult::Answered && !m_client.isCutOff();
    writeLastUpdates();
    return isWhole && m_output.good() ? 0 : 1;
}

// What the commands have led to, though it answers none of them, is due when the host closes.
void Shell::writeLastUpdates()
{
    if (m_output.good()) {
        m_client.host().close();
        m_client.takeUpdates([this](const HostUpdate& update) { writeUpdate(update); });
    }
}

void Shell::runLines(LineSource& input)
{
    while (const auto text = input.next()) {
        ++m_lineNumber;
        if (!isBlank(*text)) {
            if (m_isTyped) {
                runTyped(*text);
            } else {
                runLine(*text);
            }
        }
        if (!writeUpdates()) {
            break;
        }
    }
}

// The log comes to the same terminal.
void Shell::runTypedLines()
{
    m_isTyped = true;
    LineEditor editor(m_output.fd(), m_interrupts, {m_client.fd(), [this] { return writeUpdates(); }});
    const LogAboveLine logAbove(m_log, editor);
    runLines(editor);
}

// A person may type plain words, too.
void Shell::runTyped(const std::string& text)
{
    std::istringstream words(text);
    std::string first;
    std::string second;
    words >> first >> second;
    if (first.front() == '{') {
        runLine(text);
    } else if (first == "help") {
        writeHelp(second);
    } else if (!isCommandName(first)) {
        writeError(1, unknownCommand(first, kListedByHelp));
    } else if (!second.empty()) {
        writeError(1, "A request is typed as {\"command\":\"" + first + "\",\"request\":{...}}.");
    } else {
        Json::Value line;
        line["command"] = first;
        runCommand(line);
    }
}

void Shell::writeHelp(const std::string& command)
{
    const std::string help = command.empty() ? shellHelp() : commandHelp(command);
    if (help.empty()) {
        writeError(1, unknownCommand(command, kListedByHelp));
    } else {
        m_output.write(help);
    }
}

void Shell::runLine(const std::string& text)
{
    Json::Value line;
    JsonError error;
    if (!parseJsonLine(text, line, error)) {
        writeError(error.column, error.reason);
        return;
    }
    const bool forDesktop = line.isMember("desktop");
    const std::string fault = forDesktop ? faultOfDesktopLine(line) : faultOf(line);
    if (!fault.empty()) {
        writeError(1, fault);
    } else if (forDesktop) {
        runForDesktop(line);
    } else {
        runCommand(line);
    }
}

void Shell::runCommand(const Json::Value& line)
{
    const Json::Value request = line.get("request", Json::Value(Json::objectValue));
    CommandReply reply = m_client.execute(line["command"].asString(), request);
    if (!reply.error.empty()) {
        writeError(1, reply.error);
        return;
    }
    Json::Value answer;
    answer["command"] = line["command"];
    answer["result"] = reply.result;
    answer["reply"] = std::move(reply.body);
    write(answer);
}

void Shell::runForDesktop(const Json::Value& line)
{
    const Json::Value answer = runDesktopLine(m_client.host(), line);
    if (answer.isMember("error")) {
        writeError(1, answer["error"].asString());
    } else if (!answer.isNull()) {
        write(answer);
    }
}

// False when the conversation is over.
bool Shell::writeUpdates()
{
    m_client.takeUpdates([this](const HostUpdate& update) { writeUpdate(update); });
    if (m_client.isCutOff()) {
        Json::Value error;
        error["error"] = "Notifications have been dropped: they were not read in time.";
        write(error);
        return false;
    }
    return m_output.good();
}

void Shell::writeUpdate(const HostUpdate& update)
{
    if (const auto* notification = std::get_if<Notification>(&update)) {
        write(notificationLine(*notification));
    } else if (const auto* screen = std::get_if<ScreenSwitched>(&update)) {
        write(screenLine(screen->off));
    } else if (const auto* pressed = std::get_if<KeyPressed>(&update)) {
        writeWindowKey(pressed->key);
    } else if (const auto* ended = std::get_if<RequestEnded>(&update); ended != nullptr && !ended->answered) {
        writeUnansweredEnd(*ended);
    }
}

void Shell::writeUnansweredEnd(const RequestEnded& request)
{
    Json::Value line;
    line["ended"] = request.command;
    line["channelId"] = request.channel;
    line["reqId"] = request.reqId;
    write(line);
}

void Shell::writeWindowKey(const std::string& key)
{
    Json::Value line;
    line["desktop"] = "window";
    line["key"] = key;
    write(line);
}

void Shell::writeError(int column, const std::string& reason)
{
    Json::Value error;
    error["error"] = reason;
    error["line"] = m_lineNumber;
    error["column"] = column;
    write(error);
}

void Shell::writeMissingAnswers()
{
    for (const auto& [number, pending] : m_client.pendingAnswers()) {
        Json::Value missing;
        missing["error"] = "No answer has come.";
        missing["command"] = pending.command;
        missing["reqId"] = pending.reqId;
        write(missing);
    }
}

} // namespace

int runShell(HostClient& client, Output& output, const Interrupts& interrupts, LogOutput& log)
{
    return Shell(client, output, interrupts, log).run();
}

} // namespace desktop
