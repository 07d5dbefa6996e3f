#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What every fuzz target implements; libFuzzer calls it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace nivora::fuzz {

// Unlike an assertion it holds in every build.
inline void check(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

// Deals the input out from its front; past the end everything is 0 or empty.
class Input
{
public:
    Input(const uint8_t *data, size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), qsizetype(size))
    {
    }

    bool isEmpty() const { return m_at == m_bytes.size(); }
    qsizetype left() const { return m_bytes.size() - m_at; }

    // 0 to `below` - 1; `below` is at most 256.
    int number(int below) { return isEmpty() ? 0 : uint8_t(m_bytes[m_at++]) % below; }

    QByteArray bytes(qsizetype count)
    {
        const qsizetype taken = std::min(count, left());
        m_at += taken;
        return m_bytes.sliced(m_at - taken, taken);
    }
    QByteArray rest() { return bytes(left()); }

    // Up to the next line end.
    QByteArray line()
    {
        const qsizetype end = m_bytes.indexOf('\n', m_at);
        const QByteArray taken = bytes(end < 0 ? left() : end - m_at);
        bytes(1);
        return taken;
    }
    QString text() { return QString::fromUtf8(line()); }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

} // namespace nivora::fuzz
