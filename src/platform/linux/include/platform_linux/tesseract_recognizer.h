#pragma once

#include "platform/text_recognizer.h"

#include <QPointer>

namespace nivora::linuxdesktop {

// Tesseract, in a program of ours that lives for one picture: a picture that
// brings it down costs that picture alone, and its memory is given back. What the
// program is missing or has no models for is a log line and no text.
class TesseractRecognizer final : public platform::TextRecognizer
{
public:
    TesseractRecognizer();
    ~TesseractRecognizer() override;

    platform::Task prepare(const QStringList &languages) override;
    platform::Task recognize(const QByteArray &picture, const QStringList &languages,
                             std::function<void(QStringList)> done) override;

private:
    class Preparation;

    QPointer<Preparation> m_preparation; // the last, while somebody holds it
};

} // namespace nivora::linuxdesktop
