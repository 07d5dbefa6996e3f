#pragma once

#include "platform/screen_capture.h"
#include "platform/text_recognizer.h"

#include <QFile>

namespace nivora::memory {

// A user who marks a region at once.
class MemoryScreenCapture final : public platform::ScreenCapture
{
public:
    platform::Task queryAccess(std::function<void(bool)> done) override
    {
        return platform::delay(std::chrono::milliseconds(0),
                               [granted = m_granted, done = std::move(done)] { done(granted); });
    }

    platform::Task run(const QStringList &arguments, std::function<void(bool)> done) override
    {
        m_runs.append(arguments);
        return platform::delay(std::chrono::milliseconds(0), [this, arguments, done] {
            QFile file(arguments.last());
            done(file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
                 file.write(m_picture) == m_picture.size() && !m_picture.isNull());
        });
    }

    void setGranted(bool granted) { m_granted = granted; }
    // What the file holds then; a null picture stands for a user who cancels, after
    // the tool has begun its file.
    void setPicture(const QByteArray &picture) { m_picture = picture; }
    const QList<QStringList> &runs() const { return m_runs; }

private:
    bool m_granted = true;
    QByteArray m_picture;
    QList<QStringList> m_runs;
};

// Takes a picture for the text in it.
class MemoryTextRecognizer final : public platform::TextRecognizer
{
public:
    platform::Task prepare(const QStringList &) override { return {}; }

    platform::Task recognize(const QByteArray &picture, const QStringList &,
                             std::function<void(QStringList)> done) override
    {
        return platform::delay(std::chrono::milliseconds(0), [picture, done = std::move(done)] {
            done(QString::fromUtf8(picture).split(QChar::LineFeed));
        });
    }
};

} // namespace nivora::memory
