#pragma once

#include "text_flow.h"

#include "stores/history_entry.h"

#include <QCache>
#include <QHash>
#include <QRect>
#include <QUuid>

namespace nivora {

// "中文 → 日本語". An unknown source counts as one that was not detected, an
// unknown target as Chinese.
QString directionOf(const HistoryEntry &entry);
// In the user's way to write dates: the day in short, and the time to the minute.
QString dateOf(const HistoryEntry &entry);
// All of a row that there is room for, in the order in which it shows.
QString spokenRow(const HistoryEntry &entry);

enum class HistoryText { Source, Translation };

// One entry laid out for a width. Of long texts only the beginning shows. Places
// are in logical pixels from the row's top-left.
class HistoryRow
{
public:
    HistoryRow(const HistoryEntry &entry, int width);

    int width() const { return m_width; }
    int height() const { return m_height; }
    QRect header() const; // one line, as wide as the texts
    QRect copyButton() const;
    QRect place(HistoryText which) const;

    const TextFlow &text(HistoryText which) const
    {
        return which == HistoryText::Source ? m_source : m_translation;
    }

    QString direction;
    QString date;

private:
    TextFlow m_source;
    TextFlow m_translation;
    int m_width;
    int m_height;
};

// The rows that were laid out last, and the heights of all that ever were.
class HistoryRows
{
public:
    // In this width, or where the row was never laid out in it, in the last one in which
    // it was.
    int height(const HistoryEntry &entry, int width);
    // Whether height() is that in this width.
    bool isSettled(const HistoryEntry &entry, int width) const;
    // Until the next call of this or height().
    const HistoryRow &row(const HistoryEntry &entry, int width);

private:
    struct Height
    {
        int width;
        int height;
    };

    QHash<QUuid, Height> m_heights;
    QCache<QUuid, HistoryRow> m_rows{64};
};

} // namespace nivora
