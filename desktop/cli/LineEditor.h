#pragma once

#include "desktop/cli/Interrupts.h"
#include "desktop/cli/LineSource.h"

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"

#include <cstdio>
#include <histedit.h>
#include <memory>

namespace desktop {

/// Lines that are typed on a terminal, edited and with a history. What is written meanwhile stands above the line, which is
/// drawn again below it. Used on one thread, but for showAbove().
class LineEditor final : public LineSource {
public:
    /// Reads from standard input and draws on @p terminal, a descriptor that must outlive the object.
    LineEditor(int terminal, const Interrupts& interrupts, OtherInput other);
    ~LineEditor() override;
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    std::optional<std::string> next() override;
    /// Writes @p text, whole lines, to the terminal without disturbing the line that is edited. Safe on any thread.
    void showAbove(const std::string& text);

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    struct EndEditing {
        void operator()(EditLine* editor) const { el_end(editor); }
    };
    struct EndHistory {
        void operator()(History* history) const { history_end(history); }
    };

    static LineEditor& of(EditLine* editor);
    static int readCharacter(EditLine* editor, wchar_t* character);
    static unsigned char complete(EditLine* editor, int key);

    int waitForCharacter(wchar_t& character);
    int readByteOf(wchar_t& character);
    bool handleOther();
    void handleSignals();
    void showWaiting();
    void hideLine();
    void drawLine();
    void writeText(const std::string& text) const;

    const int m_terminal;
    const Interrupts& m_interrupts;
    const OtherInput m_other;
    std::unique_ptr<std::FILE, CloseFile> m_drawing;
    std::unique_ptr<EditLine, EndEditing> m_editor;
    std::unique_ptr<History, EndHistory> m_history;
    bool m_ended = false;
    std::mbstate_t m_decoding = {};
    Mutex m_mutex;
    bool m_editing GUARDED_BY(m_mutex) = false;
    std::string m_waiting GUARDED_BY(m_mutex); ///< to be shown above the line
    Wakeup m_shown;                            ///< there is something waiting
};

} // namespace desktop
