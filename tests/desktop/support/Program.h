#pragma once

#include "desktop/base/UniqueFd.h"

#include <json/json.h>

#include <functional>
#include <string>
#include <vector>

namespace testsupport {

/// What a program's input, output and errors are.
enum class Ends {
    Pipes,
    Terminal, ///< one of 100 columns for all: the errors come with the output, and what is typed is echoed there
};

/// A program that a test runs, with its ends in the test's hands. It is killed, and waited for, with the object.
class Program {
public:
    /// Starts @p command; its first word is the program's path or name.
    explicit Program(const std::vector<std::string>& command, Ends ends = Ends::Pipes);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void send(const std::string& text);
    /// On a terminal: types Ctrl-D, which ends the input on an empty line.
    void closeInput();
    /// Stops reading: the program finds nobody at the other end.
    void closeOutput() { m_output = desktop::UniqueFd(); }
    void signal(int number) const;
    pid_t pid() const { return m_pid; }
    /// Leaves the program's error output in its pipe, which then fills up, until the next wait().
    void leaveErrorsUnread() { m_readErrors = false; }

    /// Reads until @p found holds for what the program has written; false at the deadline or at the end of the output.
    bool readUntil(const std::function<bool()>& found);
    /// Closes the input, reads everything and waits for the end: the exit status, or 128 and the signal's number.
    int wait();

    const std::string& output() const { return m_outputText; }
    const std::string& errors() const { return m_errorText; }

private:
    void startOnPipes(const std::vector<std::string>& command);
    void startOnTerminal(const std::vector<std::string>& command);
    bool readSome();

    const Ends m_ends;
    pid_t m_pid = -1;
    desktop::UniqueFd m_input;
    desktop::UniqueFd m_output;
    desktop::UniqueFd m_error;
    bool m_readErrors = true;
    std::string m_outputText;
    std::string m_errorText;
};

/// The program's conversation in JSON lines.
class Shell {
public:
    /// Starts desktop-tv with @p options and the shell command; @p prefix are the words before, of a program that runs it.
    explicit Shell(const std::vector<std::string>& options, const std::vector<std::string>& prefix = {});

    void send(const std::string& command, const Json::Value& request = Json::Value(Json::objectValue));
    void sendLine(const std::string& line) { program.send(line + "\n"); }
    /// The next line for which @p wanted holds, other lines before it skipped; null at the deadline or the end.
    Json::Value next(const std::function<bool(const Json::Value&)>& wanted);
    /// The next notification @p name.
    Json::Value notification(const std::string& name);
    /// The next reply, or error.
    Json::Value reply();
    /// Every line so far.
    const std::vector<Json::Value>& lines();

    Program program;

private:
    std::vector<Json::Value> m_lines;
    std::size_t m_parsed = 0; ///< bytes of the output that m_lines stands for
    std::size_t m_read = 0;   ///< lines that next() has gone past
};

/// The values that @p text, JSON lines, is made of.
std::vector<Json::Value> jsonLines(const std::string& text);

/// The request of a directory change.
Json::Value changeRequest(const std::string& directory, const std::string& reqId = "1");

} // namespace testsupport
