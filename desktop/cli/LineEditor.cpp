#include "desktop/cli/LineEditor.h"

#include "desktop/cli/ShellCompletion.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/base/WriteAll.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cwchar>
#include <system_error>

namespace desktop {

namespace {

constexpr const char* kPrompt = "desktop-tv> ";
constexpr int kHistorySize = 1000; // lines

volatile std::sig_atomic_t s_terminalChanged = 0;

void noteTerminalChange(int /*signal*/)
{
    s_terminalChanged = 1;
}

char* prompt(EditLine* /*editor*/)
{
    static std::string s_prompt = kPrompt;
    return s_prompt.data();
}

// Without SA_RESTART, so that a waiting poll() ends. The program may have been stopped, and its terminal used by another, or
// the terminal may have another size.
void watchTerminal(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(SIGCONT, &action, nullptr);
    sigaction(SIGWINCH, &action, nullptr);
}

} // namespace

LineEditor::LineEditor(int terminal, const Interrupts& interrupts, OtherInput other)
    : m_terminal(terminal)
    , m_interrupts(interrupts)
    , m_other(std::move(other))
    , m_drawing(fdopen(fcntl(terminal, F_DUPFD_CLOEXEC, 0), "w"))
    , m_editor(m_drawing ? el_init("desktop-tv", stdin, m_drawing.get(), m_drawing.get()) : nullptr)
    , m_history(history_init())
{
    if (!m_editor || !m_history) {
        throw std::system_error(errno, std::generic_category(), "terminal");
    }
    HistEvent event = {};
    history(m_history.get(), &event, H_SETSIZE, kHistorySize);
    history(m_history.get(), &event, H_SETUNIQUE, 1);
    EditLine* const editor = m_editor.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_PROMPT, &prompt);
    el_set(editor, EL_HIST, history, m_history.get());
    el_set(editor, EL_GETCFN, &LineEditor::readCharacter);
    el_set(editor, EL_ADDFN, "complete-word", "Complete a name or a key", &LineEditor::complete);
    el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
    watchTerminal(&noteTerminalChange);
}

LineEditor::~LineEditor()
{
    watchTerminal(SIG_DFL);
}

std::optional<std::string> LineEditor::next()
{
    {
        const LockGuard lock(m_mutex);
        m_editing = true;
    }
    el_set(m_editor.get(), EL_PREP_TERM, 1); // before the prompt: the terminal would take a Ctrl-D in between for itself
    int length = 0;
    const char* const typed = m_ended ? nullptr : el_gets(m_editor.get(), &length);
    {
        const LockGuard lock(m_mutex);
        m_editing = false;
    }
    if (typed == nullptr || length <= 0 || m_ended) {
        writeText("\n"); // where the prompt stands
        showWaiting();
        return std::nullopt;
    }
    std::string line(typed, static_cast<std::size_t>(length));
    line.erase(line.find_last_not_of("\r\n") + 1);
    if (!line.empty()) {
        HistEvent event = {};
        history(m_history.get(), &event, H_ENTER, line.c_str());
    }
    showWaiting();
    return line;
}

void LineEditor::showAbove(const std::string& text)
{
    const LockGuard lock(m_mutex);
    if (m_editing) {
        m_waiting += text;
        m_shown.raise();
    } else {
        writeText(text);
    }
}

LineEditor& LineEditor::of(EditLine* editor)
{
    void* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return *static_cast<LineEditor*>(self);
}

int LineEditor::readCharacter(EditLine* editor, wchar_t* character)
{
    return of(editor).waitForCharacter(*character);
}

// The tabulator key: what is certain is put in, what is not is shown.
unsigned char LineEditor::complete(EditLine* editor, int /*key*/)
{
    const LineInfo* const line = el_line(editor);
    const std::string typed(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
    const Completion completion = completionOf(typed);
    if (completion.words.empty()) {
        return CC_REFRESH_BEEP;
    }
    std::string more = commonBeginning(completion.words).substr(typed.size() - completion.begin);
    if (completion.words.size() == 1) {
        more += completion.end;
    } else if (more.empty()) {
        LineEditor& self = of(editor);
        std::string words;
        for (const std::string& word : completion.words) {
            words += word + "\n";
        }
        self.hideLine();
        self.writeText(words);
        self.drawLine();
        return CC_NORM;
    }
    return el_insertstr(editor, more.c_str()) == 0 ? CC_REFRESH : CC_REFRESH_BEEP;
}

// As the library wants it: 1, or 0 at the end.
int LineEditor::waitForCharacter(wchar_t& character)
{
    std::array<pollfd, 4> waits = {
        {{STDIN_FILENO, POLLIN, 0}, {m_interrupts.fd(), POLLIN, 0}, {m_other.fd, POLLIN, 0}, {m_shown.fd(), POLLIN, 0}}};
    while (!m_ended) {
        const int ready = poll(waits.data(), waits.size(), -1);
        handleSignals();
        if (ready < 0) {
            continue;
        }
        if (waits[3].revents != 0) {
            hideLine();
            showWaiting();
            drawLine();
        }
        m_ended = waits[1].revents != 0 || (waits[2].revents != 0 && !handleOther());
        if (!m_ended && waits[0].revents != 0) {
            const int read = readByteOf(character);
            if (read != 0) {
                return read;
            }
        }
    }
    return 0;
}

// 1 when @p character is whole; 0 when it is not, or at the end.
int LineEditor::readByteOf(wchar_t& character)
{
    char byte = 0;
    const ssize_t got = read(STDIN_FILENO, &byte, 1);
    if (got <= 0) {
        m_ended = got == 0 || (errno != EINTR && errno != EAGAIN);
        return 0;
    }
    const std::size_t used = std::mbrtowc(&character, &byte, 1, &m_decoding);
    if (used == static_cast<std::size_t>(-1)) { // no UTF-8
        m_decoding = {};
        return 0;
    }
    return used == static_cast<std::size_t>(-2) ? 0 : 1;
}

bool LineEditor::handleOther()
{
    hideLine();
    const bool goesOn = m_other.handle();
    drawLine();
    return goesOn;
}

void LineEditor::handleSignals()
{
    if (s_terminalChanged != 0) {
        s_terminalChanged = 0;
        el_resize(m_editor.get());
        el_set(m_editor.get(), EL_PREP_TERM, 0); // which is forgotten while the program is stopped
        el_set(m_editor.get(), EL_PREP_TERM, 1);
        drawLine();
    }
}

void LineEditor::showWaiting()
{
    const LockGuard lock(m_mutex);
    m_shown.clear();
    writeText(std::exchange(m_waiting, {}));
}

// The line may be longer than the terminal is wide.
void LineEditor::hideLine()
{
    winsize size = {};
    const bool known = ioctl(m_terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    const LineInfo* const line = el_line(m_editor.get());
    const std::string_view before(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
    const std::size_t rows = (displayWidth(kPrompt) + displayWidth(before)) / (known ? size.ws_col : 80);
    writeText((rows > 0 ? "\x1b[" + std::to_string(rows) + "A" : "") + "\r\x1b[J");
}

void LineEditor::drawLine()
{
    el_set(m_editor.get(), EL_REFRESH);
}

void LineEditor::writeText(const std::string& text) const
{
    writeAll(m_terminal, text.data(), text.size()); // without a terminal the next reading ends
}

} // namespace desktop
