#include "desktop/ocr_service.h"

#include "platform/screen_capture.h"
#include "platform/text_recognizer.h"

#include <QDir>
#include <QFile>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Above what all screens of a desktop give.
constexpr qint64 maxFile = 256ll * 1024 * 1024;

QStringList languages()
{
    return {u"ja-JP"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"en-US"_s};
}

class CaptureOperation final : public platform::Operation
{
public:
    CaptureOperation(platform::ScreenCapture &screenCapture, const QStringList &args,
                     std::function<void(std::optional<QByteArray>)> done)
        : m_path(QDir::tempPath() + u"/nivora_ocr_"_s +
                 QUuid::createUuid().toString(QUuid::WithoutBraces) + u".png"_s)
        , m_done(std::move(done))
        , m_run(screenCapture.run(args + QStringList{m_path}, [this](bool taken) {
            const std::optional<QByteArray> picture = taken ? contents() : std::nullopt;
            finish([&] { m_done(picture); });
        }))
    {
    }

private:
    std::optional<QByteArray> contents() const
    {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly) || file.size() > maxFile)
            return std::nullopt;
        const QByteArray data = file.readAll();
        return data.isEmpty() ? std::nullopt : std::optional(data);
    }

    void stop() override
    {
        m_run.cancel(); // writes nothing after this
        QFile::remove(m_path);
    }

    QString m_path;
    std::function<void(std::optional<QByteArray>)> m_done;
    platform::Task m_run;
};

} // namespace

platform::Task OCRService::queryAccess(std::function<void(bool)> done)
{
    return m_screenCapture.queryAccess(std::move(done));
}

platform::Task OCRService::capture(const QStringList &args,
                                   std::function<void(std::optional<QByteArray>)> done)
{
    return platform::Task(new CaptureOperation(m_screenCapture, args, std::move(done)));
}

platform::Task OCRService::prepare()
{
    return m_recognizer.prepare(languages());
}

platform::Task OCRService::recognize(const QByteArray &image,
                                     std::function<void(std::optional<QString>)> done)
{
    return m_recognizer.recognize(image, languages(),
                                  [done = std::move(done)](const QStringList &lines) {
                                      const QString text = lines.join(u'\n').trimmed();
                                      done(text.isEmpty() ? std::nullopt : std::optional(text));
                                  });
}

} // namespace nivora
