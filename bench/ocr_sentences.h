#pragma once

#include <QList>
#include <QStringList>

namespace nivora::bench {

// Text of one kind, as mails, documents and programs have it.
struct OcrKind
{
    const char *name;
    QStringList fonts;
    QList<QStringList> texts; // lines
    bool vertical = false;
};

// What the thresholds of the recognition were chosen by.
QList<OcrKind> tuningKinds();

// What they never saw. A sentence that a threshold has been changed for belongs to
// the others from then on.
QList<OcrKind> heldOutKinds();

} // namespace nivora::bench
