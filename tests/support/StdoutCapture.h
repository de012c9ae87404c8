#pragma once

#include <string>

namespace testsupport {

/// Takes over standard output while it lives. What is printed is part of the plugin's contract.
class StdoutCapture {
public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    /// What has been printed since the last call.
    std::string take();

private:
    int m_file;
    int m_terminal;
    long m_taken = 0;
};

} // namespace testsupport
