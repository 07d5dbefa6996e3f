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

    // Gets ready for a picture that is likely to come, so that recognize() with the
    // same languages answers sooner. Dropping the task gives back what that took;
    // there is nothing to call back about.
    virtual Task prepare(const QStringList &languages) = 0;

    // `picture` is the whole of a picture's file, PNG or another usual format;
    // `languages` are those to expect, as in "ja-JP" and "zh-Hans". The answer is
    // the text's lines in reading order, none where nothing could be read, for
    // whatever reason. Takes from some 100 ms to 20 s, but never this thread's
    // time.
    virtual Task recognize(const QByteArray &picture, const QStringList &languages,
                           std::function<void(QStringList)> done) = 0;
};

} // namespace nivora::platform
