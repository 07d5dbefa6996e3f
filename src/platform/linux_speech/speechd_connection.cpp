#include "speechd_connection.h"

#include <QByteArrayList>

#include <libspeechd.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

template<auto release>
struct Releaser
{
    template<typename Type>
    void operator()(Type *object) const
    {
        release(object);
    }
};
// Where the service has ended the descriptor is closed already, and its number may
// be in use for something else.
void closeConnection(SPDConnection *connection)
{
    if (!connection->stream)
        connection->socket = -1;
    spd_close(connection);
}
using Connection = std::unique_ptr<SPDConnection, Releaser<closeConnection>>;
using Modules = std::unique_ptr<char *, Releaser<free_spd_modules>>;
using Voices = std::unique_ptr<SPDVoice *, Releaser<free_spd_voices>>;

class Descriptor
{
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    int number() const { return m_number; }

private:
    int m_number;
};

// The library hands its events to plain functions, without a word on which
// connection they belong to except the service's number of the client.
class Handlers
{
public:
    static Handlers &instance()
    {
        static Handlers handlers;
        return handlers;
    }

    void set(std::size_t client, SpeechdConnection::Handler handler)
    {
        const std::lock_guard lock(m_mutex);
        m_handlers[client] = std::move(handler);
    }
    void remove(std::size_t client)
    {
        const std::lock_guard lock(m_mutex);
        m_handlers.erase(client);
    }
    void call(std::size_t client, std::size_t message, SpeechdConnection::Event event)
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_handlers.find(client); found != m_handlers.end())
            found->second(int(message), event);
    }

private:
    std::mutex m_mutex;
    std::map<std::size_t, SpeechdConnection::Handler> m_handlers;
};

template<SpeechdConnection::Event event>
void passOn(std::size_t message, std::size_t client, SPDNotificationType)
{
    Handlers::instance().call(client, message, event);
}

// The service's number of the client. The library's own function for it crashes
// where the service ends instead of answering.
std::optional<std::size_t> clientNumber(SPDConnection *connection)
{
    char *reply = nullptr;
    const int failure = spd_execute_command_with_reply(connection, "HISTORY GET CLIENT_ID", &reply);
    const std::unique_ptr<char, Releaser<std::free>> owned(reply);
    if (failure || !reply)
        return std::nullopt;
    bool isNumber = false;
    // "245-7", and a line that says that all is well
    const auto lines = QByteArrayView(reply).toByteArray().split('\n');
    const auto number = lines.front().trimmed().mid(4).toULongLong(&isNumber);
    return isNumber ? std::optional<std::size_t>(number) : std::nullopt;
}

// A voice's language as a module takes it where no voice is named.
QByteArray moduleLanguage(const QString &language)
{
    return language.section(u'-', 0, 0).toUtf8();
}

} // namespace

struct SpeechdConnection::Link
{
    Connection connection;
    // The library closes its own descriptor when the service ends.
    Descriptor watch;
    std::size_t client = 0;
};

std::unique_ptr<SpeechdConnection> SpeechdConnection::open(Handler handler)
{
    char *error = nullptr;
    auto link = std::make_unique<Link>();
    link->connection.reset(
        spd_open2("nivora", "main", nullptr, SPD_MODE_THREADED, nullptr, 1, &error));
    std::free(error);
    SPDConnection *const connection = link->connection.get();
    if (!connection)
        return nullptr;
    const auto client = clientNumber(connection);
    link->watch = Descriptor(fcntl(connection->socket, F_DUPFD_CLOEXEC, 0));
    if (!client || link->watch.number() < 0)
        return nullptr;
    link->client = *client;
    Handlers::instance().set(link->client, std::move(handler));
    connection->callback_begin = passOn<Event::Begin>;
    connection->callback_end = passOn<Event::End>;
    connection->callback_cancel = passOn<Event::Cancel>;
    std::unique_ptr<SpeechdConnection> opened(new SpeechdConnection(std::move(link)));
    for (const auto notification : {SPD_BEGIN, SPD_END, SPD_CANCEL}) {
        if (spd_set_notification_on(connection, notification) < 0)
            return nullptr;
    }
    return opened;
}

SpeechdConnection::SpeechdConnection(std::unique_ptr<Link> link)
    : m_link(std::move(link))
{
}

SpeechdConnection::~SpeechdConnection()
{
    Handlers::instance().remove(m_link->client);
}

std::optional<std::vector<SpeechdVoice>> SpeechdConnection::voices()
{
    SPDConnection *const connection = m_link->connection.get();
    const Modules modules(spd_list_modules(connection));
    std::vector<SpeechdVoice> found;
    for (char **module = modules.get(); module && *module; ++module) {
        if (spd_set_output_module(connection, *module) < 0)
            continue;
        const Voices voices(spd_list_synthesis_voices(connection));
        for (SPDVoice **voice = voices.get(); voice && *voice; ++voice) {
            found.push_back({QString::fromUtf8(*module), QString::fromUtf8((*voice)->name),
                             QString::fromUtf8((*voice)->language),
                             QString::fromUtf8((*voice)->variant)});
        }
    }
    if (isBroken())
        return std::nullopt;
    return found;
}

std::optional<int> SpeechdConnection::say(const QString &text, const QString &language,
                                          const SpeechdVoiceId &voice, int rate)
{
    SPDConnection *const connection = m_link->connection.get();
    // Each of these may be refused, by a module that is gone for instance: the text
    // is then said as well as can be.
    if (!voice.name.isEmpty()) {
        spd_set_output_module(connection, voice.module.toUtf8().constData());
        spd_set_synthesis_voice(connection, voice.name.toUtf8().constData());
    } else {
        spd_set_language(connection, moduleLanguage(language).constData());
    }
    spd_set_voice_rate(connection, rate);
    if (isBroken())
        return std::nullopt;
    // Unlike a text, a message is not dropped for what another program says.
    const int message = spd_say(connection, SPD_MESSAGE, text.toUtf8().constData());
    return message > 0 ? std::optional(message) : std::nullopt;
}

void SpeechdConnection::cancel()
{
    if (!isBroken())
        spd_cancel(m_link->connection.get());
}

int SpeechdConnection::descriptor() const
{
    return m_link->watch.number();
}

bool SpeechdConnection::isBroken() const
{
    char byte;
    const auto received = recv(descriptor(), &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return received == 0 || (received < 0 && errno != EAGAIN && errno != EINTR);
}

void SpeechdConnection::interrupt()
{
    shutdown(descriptor(), SHUT_RDWR);
}

} // namespace nivora::linuxdesktop
