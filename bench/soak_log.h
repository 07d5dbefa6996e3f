#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

namespace nivora::bench {

// The product's log, read as it grows: to read all of it each time would take longer
// the longer the soak runs.
class SoakLog
{
public:
    explicit SoakLog(const QString &path)
        : m_file(path)
    {
        m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    // How often the product has read what is selected, and how often it has left a
    // text on the clipboard that it did not dare to paste.
    qsizetype captures() { return count().captures; }
    qsizetype heldBack() { return count().heldBack; }

private:
    struct Counts
    {
        qsizetype captures = 0;
        qsizetype heldBack = 0;
    };

    const Counts &count()
    {
        m_rest += m_file.readAll();
        for (qsizetype end; (end = m_rest.indexOf('\n')) >= 0; m_rest.remove(0, end + 1)) {
            const QByteArrayView line = QByteArrayView(m_rest).first(end);
            m_counts.captures += line.contains("focusedEditable=") || line.contains("未捕获到选区");
            m_counts.heldBack += line.contains("stays on the clipboard");
        }
        return m_counts;
    }

    QFile m_file;
    QByteArray m_rest;
    Counts m_counts;
};

} // namespace nivora::bench
