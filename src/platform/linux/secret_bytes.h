#pragma once

#include <QByteArray>

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace nivora::linuxdesktop {

// A secret, shared by its copies and wiped from memory with the last of them.
class SecretBytes
{
public:
    SecretBytes() = default;
    explicit SecretBytes(std::string_view bytes)
        : m_buffer(std::make_shared<Buffer>(bytes))
    {
    }

    std::string_view view() const
    {
        return m_buffer ? std::string_view(m_buffer->bytes.data(), m_buffer->bytes.size())
                        : std::string_view();
    }
    // The caller's copy is no longer in our hands.
    QByteArray toByteArray() const
    {
        return {view().data(), static_cast<qsizetype>(view().size())};
    }

private:
    struct Buffer
    {
        explicit Buffer(std::string_view source)
            : bytes(source.begin(), source.end())
        {
        }
        ~Buffer() { ::explicit_bzero(bytes.data(), bytes.size()); }
        Buffer(const Buffer &) = delete;
        Buffer &operator=(const Buffer &) = delete;

        std::vector<char> bytes;
    };
    std::shared_ptr<Buffer> m_buffer;
};

} // namespace nivora::linuxdesktop
