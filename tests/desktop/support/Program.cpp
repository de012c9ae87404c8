#include "tests/desktop/support/Program.h"

#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace testsupport {

namespace {

using desktop::UniqueFd;

struct Pipe {
    Pipe()
    {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("pipe");
        }
        out = UniqueFd(ends[0]);
        in = UniqueFd(ends[1]);
    }
    UniqueFd out;
    UniqueFd in;
};

// A cache that goes with the test; the user's own is left alone.
const std::string& cacheFolder()
{
    static const TemporaryDirectory s_folder;
    static const std::string s_path = s_folder.path();
    return s_path;
}

[[noreturn]] void become(const std::vector<std::string>& command, int input, int output, int error)
{
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    std::vector<char*> words;
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

// Appends what is there; false at the end.
bool appendFrom(const UniqueFd& fd, std::string& text)
{
    std::array<char, 65536> bytes;
    const ssize_t got = read(fd.get(), bytes.data(), bytes.size());
    if (got > 0) {
        text.append(bytes.data(), static_cast<std::size_t>(got));
    }
    return got > 0;
}

} // namespace

Program::Program(const std::vector<std::string>& command, Ends ends)
    : m_ends(ends)
{
    if (ends == Ends::Terminal) {
        startOnTerminal(command);
    } else {
        startOnPipes(command);
    }
}

void Program::startOnTerminal(const std::vector<std::string>& command)
{
    UniqueFd terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    char name[64] = {};
    const bool made =
        grantpt(terminal.get()) == 0 && unlockpt(terminal.get()) == 0 && ptsname_r(terminal.get(), name, sizeof name) == 0;
    if (!made) {
        throw std::runtime_error("no terminal");
    }
    const winsize size = {50, 100, 0, 0};
    ioctl(terminal.get(), TIOCSWINSZ, &size);
    const UniqueFd end(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
    const std::string& cache = cacheFolder();
    m_pid = fork();
    if (m_pid == 0) {
        setenv("XDG_CACHE_HOME", cache.c_str(), 1);
        setenv("TERM", "xterm", 1);
        setsid();
        ioctl(end.get(), TIOCSCTTY, 0);
        become(command, end.get(), end.get(), end.get());
    }
    m_input = UniqueFd(fcntl(terminal.get(), F_DUPFD_CLOEXEC, 0));
    m_output = std::move(terminal);
}

void Program::startOnPipes(const std::vector<std::string>& command)
{
    Pipe input;
    Pipe output;
    Pipe error;
    const std::string& cache = cacheFolder();
    m_pid = fork();
    if (m_pid == 0) {
        setenv("XDG_CACHE_HOME", cache.c_str(), 1);
        become(command, input.out.get(), output.in.get(), error.in.get());
    }
    m_input = std::move(input.in);
    m_output = std::move(output.out);
    m_error = std::move(error.out);
}

Program::~Program()
{
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
}

void Program::closeInput()
{
    if (m_ends == Ends::Terminal && m_input) {
        send("\x04");
    }
    m_input = UniqueFd();
}

void Program::send(const std::string& text)
{
    ASSERT_EQ(write(m_input.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

void Program::signal(int number) const
{
    ASSERT_EQ(kill(m_pid, number), 0);
}

bool Program::readUntil(const std::function<bool()>& found)
{
    while (!found()) {
        if (!readSome()) {
            return false;
        }
    }
    return true;
}

int Program::wait()
{
    closeInput();
    m_readErrors = true;
    while (readSome()) {
    }
    if (m_output || m_error) {
        ADD_FAILURE() << "the program does not end; it has said:\n" << m_outputText << m_errorText;
        kill(m_pid, SIGKILL);
    }
    int status = 0;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool Program::readSome()
{
    pollfd waits[] = {{m_output.get(), POLLIN, 0}, {m_readErrors ? m_error.get() : -1, POLLIN, 0}};
    if (!m_output && (!m_error || !m_readErrors)) {
        return false;
    }
    const auto deadline = std::chrono::duration_cast<std::chrono::milliseconds>(kDeadline).count();
    if (poll(waits, 2, static_cast<int>(deadline)) <= 0) {
        return false;
    }
    if (waits[0].revents != 0 && !appendFrom(m_output, m_outputText)) {
        m_output = UniqueFd();
    }
    if (waits[1].revents != 0 && !appendFrom(m_error, m_errorText)) {
        m_error = UniqueFd();
    }
    return true;
}

namespace {

std::vector<std::string> shellCommand(const std::vector<std::string>& options, std::vector<std::string> command)
{
    command.emplace_back(DESKTOP_TV);
    command.insert(command.end(), options.begin(), options.end());
    command.emplace_back("shell");
    return command;
}

} // namespace

Shell::Shell(const std::vector<std::string>& options, const std::vector<std::string>& prefix)
    : program(shellCommand(options, prefix))
{
}

void Shell::send(const std::string& command, const Json::Value& request)
{
    Json::Value line;
    line["command"] = command;
    line["request"] = request;
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    sendLine(Json::writeString(builder, line));
}

const std::vector<Json::Value>& Shell::lines()
{
    const std::string& output = program.output();
    for (std::size_t end; (end = output.find('\n', m_parsed)) != std::string::npos; m_parsed = end + 1) {
        Json::Value line;
        std::istringstream(output.substr(m_parsed, end - m_parsed)) >> line;
        m_lines.push_back(std::move(line));
    }
    return m_lines;
}

Json::Value Shell::next(const std::function<bool(const Json::Value&)>& wanted)
{
    Json::Value found;
    program.readUntil([&] {
        lines();
        while (found.isNull() && m_read < m_lines.size()) {
            const Json::Value& line = m_lines[m_read++];
            if (wanted(line)) {
                found = line;
            }
        }
        return !found.isNull();
    });
    return found;
}

Json::Value Shell::notification(const std::string& name)
{
    return next([&name](const Json::Value& line) { return line["notification"] == name; });
}

Json::Value Shell::reply()
{
    return next([](const Json::Value& line) { return line.isMember("command") || line.isMember("error"); });
}

std::vector<Json::Value> jsonLines(const std::string& text)
{
    std::vector<Json::Value> values;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        values.emplace_back();
        std::istringstream(line) >> values.back();
    }
    return values;
}

Json::Value changeRequest(const std::string& directory, const std::string& reqId)
{
    Json::Value request;
    request["channelId"] = "channel";
    request["reqId"] = reqId;
    request["number"] = 10;
    request["dirpath"] = directory;
    return request;
}

} // namespace testsupport
