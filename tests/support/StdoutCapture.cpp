#include "tests/support/StdoutCapture.h"

#include <cstdio>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace testsupport {

StdoutCapture::StdoutCapture()
    : m_file(memfd_create("stdout", MFD_CLOEXEC))
    , m_terminal(dup(STDOUT_FILENO))
{
    std::fflush(stdout);
    if (m_file < 0 || m_terminal < 0 || dup2(m_file, STDOUT_FILENO) < 0) {
        throw std::runtime_error("standard output cannot be captured");
    }
}

StdoutCapture::~StdoutCapture()
{
    std::fflush(stdout);
    dup2(m_terminal, STDOUT_FILENO);
    close(m_terminal);
    close(m_file);
}

std::string StdoutCapture::take()
{
    std::fflush(stdout);
    std::string text;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = pread(m_file, buffer, sizeof buffer, m_taken)) > 0) {
        text.append(buffer, static_cast<std::size_t>(count));
        m_taken += count;
    }
    return text;
}

} // namespace testsupport
