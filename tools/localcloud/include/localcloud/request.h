#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

#include <chrono>
#include <utility>

namespace nivora::localcloud {

// Header fields in the order of the wire. Names keep their spelling.
using Headers = QList<std::pair<QByteArray, QByteArray>>;

// The value of the first field of this name, in any spelling; a null array when
// there is none, an empty one when the field is there without a value.
QByteArray headerValue(const Headers &headers, QByteArrayView name);

// One complete request as it arrived.
struct Request
{
    QByteArray method; // "POST"
    QByteArray path;   // "/v1/translate", without the query, not decoded
    QByteArray query;  // without the question mark
    Headers headers;
    QByteArray body;
    // When its last byte was read.
    std::chrono::steady_clock::time_point arrival;
    int connection = 0; // counted from 1 in the order of acceptance

    QByteArray header(QByteArrayView name) const { return headerValue(headers, name); }
    bool hasHeader(QByteArrayView name) const { return !header(name).isNull(); }
};

} // namespace nivora::localcloud

Q_DECLARE_METATYPE(nivora::localcloud::Request)
