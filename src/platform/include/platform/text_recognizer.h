#pragma once

#include "platform/task.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace nivora::platform {

// Reads the text in pictures.
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;

    // `picture` is the whole of a picture's file, PNG or another usual format;
    // `languages` are those to expect, as in "ja-JP" and "zh-Hans". The answer is
    // the text's lines in reading order, none where nothing could be read, for
    // whatever reason. Takes from some 100 ms to 20 s, but never this thread's
    // time.
    virtual Task recognize(const QByteArray &picture, const QStringList &languages,
                           std::function<void(QStringList)> done) = 0;
};

} // namespace nivora::platform
