#pragma once

#include "e2e/scripted_program.h"
#include "support/application.h"
#include "support/wait.h"

namespace nivora::bench {

// A program that tells assistive tools nothing: what is selected in it can only be
// copied.
class SilentApplication final : public test::Application
{
public:
    explicit SilentApplication(const Desk &desk)
        : m_user(desk.user)
        , m_program(desk.session)
    {
        m_program.onCopy = [this] { m_program.copy(m_text.toUtf8()); };
        m_program.onPaste = [this] { m_program.paste(); };
    }

    bool open() override { return m_program.open(m_user, std::chrono::seconds(10)); }
    bool show(const QString &text) override
    {
        m_text = text;
        m_program.pasted.clear();
        return true;
    }
    bool select() override { return true; }
    bool deselect() override { return false; }
    QString selectedText() const override { return m_text; }
    QString content() const override
    {
        return m_program.pasted.isEmpty() ? m_text : QString::fromUtf8(m_program.pasted);
    }
    QRect place() const override { return {}; }
    QRect frame() const override { return {}; }
    Paste paste() const override { return Paste::ReplacesSelection; }
    test::X11Driver::WindowId window() const override { return m_program.window(); }

private:
    test::X11Driver &m_user;
    test::ScriptedProgram m_program;
    QString m_text;
};

} // namespace nivora::bench
