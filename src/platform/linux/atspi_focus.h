#pragma once

#include "atspi_calls.h"
#include "atspi_element.h"

#include <QHash>
#include <QObject>

#include <list>

class QDBusMessage;

namespace nivora::linuxdesktop {

// Follows the keyboard focus of the programs on one accessibility bus. Belongs
// to a thread that may block.
class AtspiFocus : public QObject
{
    Q_OBJECT

public:
    // `ownProcess` is never asked anything.
    AtspiFocus(const QDBusConnection &bus, qint64 ownProcess);

    // False when there is nobody to tell of focus changes.
    bool listen(QDeadlineTimer deadline);

    // Finds out, as far as that is not known, what has the focus in a program.
    void prepare(qint64 process, QDeadlineTimer deadline);

    // The focused element of the program with this process id. Of a Chromium that
    // shows nothing but its windows, which it does as it comes, an element of no
    // known kind in which nothing counts as selected: Chromium offers the text of
    // a selected password as PRIMARY, where it would be looked for next. It does
    // not let it be copied. With 0 that of the
    // last program that had the focus: its element no longer does, since the
    // focus is in this program now.
    std::optional<platform::FocusedElement> read(qint64 process, int gtkScale,
                                                 QDeadlineTimer deadline);

private Q_SLOTS:
    void onStateChanged(const QDBusMessage &signal);

private:
    struct Program
    {
        qint64 process = 0;
        // The newest first, two at most: some programs tell of the focus in a
        // text and then of the focus in something around it.
        std::vector<AtspiObject> focused;
        bool searched = false;
        bool isChromium = false;
        int gtkScale = 1;
    };

    Program &program(qint64 process);
    qint64 processOf(const QString &service, AtspiCalls &calls);
    void remember(Program &program, const AtspiObject &object);
    void search(Program &program, AtspiCalls &calls);
    std::optional<platform::FocusedElement> readKnown(Program &program, bool mustHaveFocus,
                                                      AtspiCalls &calls);
    static std::optional<platform::FocusedElement> unseenOf(const Program &program);

    QDBusConnection m_bus;
    qint64 m_ownProcess;
    qint64 m_lastProcess = 0;
    std::list<Program> m_programs;      // the last used first
    QHash<QString, qint64> m_processes; // by bus name
};

} // namespace nivora::linuxdesktop
