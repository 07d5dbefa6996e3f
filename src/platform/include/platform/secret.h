#pragma once

#include <QByteArray>
#include <QString>

#include <cstring>
#include <memory>

namespace nivora::platform {

// A secret, a QByteArray or QString, that is overwritten in memory when the last copy
// of this object goes. A text that somebody took out and still holds is left as it
// is, and so is a constant of the program. Copies may go in any thread.
template<typename Text>
class Secret
{
public:
    Secret() = default;
    Secret(Text text) // NOLINT: a text becomes a secret wherever one is wanted
        : m_box(std::make_shared<Box>(std::move(text)))
    {
    }

    const Text &operator*() const
    {
        static const Text none;
        return m_box ? m_box->text : none;
    }
    bool isEmpty() const { return (**this).isEmpty(); }

    friend bool operator==(const Secret &one, const Secret &other) { return *one == *other; }

private:
    struct Box
    {
        explicit Box(Text &&secret)
            : text(std::move(secret))
        {
        }
        ~Box()
        {
            if (text.isDetached())
                ::explicit_bzero(text.data(), std::size_t(text.size()) * sizeof *text.data());
        }
        Q_DISABLE_COPY_MOVE(Box)

        Text text;
    };
    std::shared_ptr<Box> m_box;
};

using SecretBytes = Secret<QByteArray>;
using SecretText = Secret<QString>;

} // namespace nivora::platform
