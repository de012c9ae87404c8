#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"
#include "desktop/base/Wakeup.h"

#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace desktop {

/// Makes a stream of text safe for a terminal, piece by piece, as visibleText() does; line ends and tabs stay.
class TerminalText {
public:
    /// What can be shown now that @p bytes have come; the beginning of a character or of a line end waits for its rest.
    std::string add(std::string_view bytes);
    /// What still waited.
    std::string finish();

private:
    std::string m_waiting;
};

/// Copies what is written to a pipe to a terminal, made safe for it, in order.
class TerminalPump {
public:
    /// Throws std::system_error when there is no pipe to be had.
    explicit TerminalPump(UniqueFd terminal);
    /// Copies all that has been written so far, and ends.
    ~TerminalPump();
    TerminalPump(const TerminalPump&) = delete;
    TerminalPump& operator=(const TerminalPump&) = delete;

    /// What is to be written to.
    int inlet() const { return m_inlet.get(); }
    /// Lets @p show, called on the pump's thread, write what it copies; null: the pump does it itself again. When this
    /// returns, the earlier one is not called any more.
    void setShow(std::function<void(const std::string& text)> show);
    /// Begins to copy, on a thread of its own. Until then the pipe keeps what comes.
    void start();

private:
    void copyUntilStopped();
    bool copySome();
    void show(const std::string& text);
    void write(const std::string& text) const;

    const UniqueFd m_terminal;
    UniqueFd m_outlet;
    UniqueFd m_inlet;
    Wakeup m_stop;
    TerminalText m_text;
    Mutex m_mutex;
    std::function<void(const std::string& text)> m_show GUARDED_BY(m_mutex);
    std::thread m_thread;
};

} // namespace desktop
