#pragma once

#include "tests/desktop/support/Program.h"

#include <unistd.h>

#include <string>
#include <vector>

namespace testsupport {

/// The computer as far as mounts go, made for a test: what is mounted on it comes to the programs that run on it, and goes
/// with the object. An ordinary user gets one where the kernel allows.
class Computer {
public:
    Computer()
        : m_process(withRights({"--propagation", "shared", "sh", "-c", "echo ready; exec cat"}))
    {
        m_works = m_process.readUntil([this] { return m_process.output() == "ready\n"; });
    }

    /// Whether the kernel has allowed it.
    bool works() const { return m_works; }

    /// The words that come before those of a command that runs on the computer.
    std::vector<std::string> on() const
    {
        std::vector<std::string> words = {"nsenter", "-t", std::to_string(m_process.pid()), "-m"};
        if (geteuid() != 0) {
            words.insert(words.end(), {"-U", "--preserve-credentials"});
        }
        return words;
    }

    /// Runs shell command @p command; what it complained of, empty when it has succeeded.
    std::string run(const std::string& command) const
    {
        std::vector<std::string> words = on();
        words.insert(words.end(), {"sh", "-c", command});
        Program program(words);
        const int status = program.wait();
        return status == 0 ? "" : "status " + std::to_string(status) + ": " + program.errors();
    }

private:
    static std::vector<std::string> withRights(const std::vector<std::string>& command)
    {
        std::vector<std::string> words = {"unshare", geteuid() == 0 ? "-m" : "-Urm"};
        words.insert(words.end(), command.begin(), command.end());
        return words;
    }

    Program m_process;
    bool m_works = false;
};

} // namespace testsupport
