#include "history_file.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto lockPatience = 50ms;
constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;
// SQLite gives the files that it makes the mode of the database.
constexpr const char *suffixes[] = {"", "-wal", "-shm", "-journal"};

class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// The temporary folder is everybody's: neither a folder nor a link that somebody
// else put there will do.
bool makeOwnFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    QDir().mkpath(QFileInfo(path).path());
    ::mkdir(name.constData(), folderMode);
    struct stat entry;
    struct stat folder;
    return ::lstat(name.constData(), &entry) == 0 && ::stat(name.constData(), &folder) == 0 &&
           S_ISDIR(folder.st_mode) && entry.st_uid == ::geteuid() && folder.st_uid == ::geteuid();
}

// Takes from everybody what `mode` does not hold, and gives nothing.
void restrict(const QByteArray &path, mode_t mode)
{
    struct stat status;
    if (::stat(path.constData(), &status) == 0 && (status.st_mode & 0777 & ~mode) != 0)
        ::chmod(path.constData(), status.st_mode & mode);
}

int openFolder(const QString &file)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(file).path());
    return ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// The folder's lock goes with the process, so a crash leaves nothing behind.
bool lock(const Descriptor &folder)
{
    const QDeadlineTimer deadline(lockPatience);
    while (::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

QString freeName(const QString &path)
{
    const QString stem =
        path + ".corrupt-"_L1 + QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    QString name = stem;
    for (int attempt = 2; QFileInfo::exists(name); ++attempt)
        name = stem + u'-' + QString::number(attempt);
    return name;
}

} // namespace

QString HistoryFile::defaultPath()
{
    QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Nivora"_L1;
    if (!makeOwnFolder(folder))
        folder = QDir::tempPath() + "/Nivora"_L1;
    return folder + "/history.sqlite"_L1;
}

bool HistoryFile::makePrivate()
{
    m_seen = identity();
    const QString folder = QFileInfo(m_path).path();
    if (!makeOwnFolder(folder))
        return false;
    restrict(QFile::encodeName(folder), folderMode);
    // A file that is there is not opened: closing it would take away the locks
    // that another connection of this process has on it.
    if (!m_seen)
        create();
    const QByteArray path = QFile::encodeName(m_path);
    for (const char *suffix : suffixes)
        restrict(path + suffix, fileMode);
    m_seen = identity();
    return true;
}

// What a deleted database left beside it would pass for the new one's. The lock
// keeps another process from having its new log taken away here.
void HistoryFile::create() const
{
    const QByteArray path = QFile::encodeName(m_path);
    const Descriptor folder(openFolder(m_path));
    if (lock(folder) && !identity()) {
        for (const char *suffix : suffixes) {
            if (*suffix)
                ::unlink((path + suffix).constData());
        }
    }
    const Descriptor created(
        ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, fileMode));
}

std::optional<HistoryFile::Identity> HistoryFile::identity() const
{
    struct stat status;
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

bool HistoryFile::isGone() const
{
    const auto present = identity();
    return !present || present != m_seen;
}

std::optional<QString> HistoryFile::keepAside() const
{
    const Descriptor folder(openFolder(m_path));
    if (!lock(folder))
        return std::nullopt;
    if (isGone())
        return QString();
    const QString name = freeName(m_path);
    for (const char *suffix : suffixes) {
        const QByteArray from = QFile::encodeName(m_path) + suffix;
        const QByteArray to = QFile::encodeName(name) + suffix;
        if (::rename(from.constData(), to.constData()) != 0 && !*suffix)
            return std::nullopt;
    }
    return name;
}

} // namespace nivora
