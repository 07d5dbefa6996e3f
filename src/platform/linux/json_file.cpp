#include "json_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// A lock that is taken again and again is free for moments only.
constexpr auto lockPause = 200us;

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// The last file of a chain of symbolic links, whether or not it exists.
QString followLinks(const QString &path)
{
    QFileInfo info(path);
    for (int depth = 0; depth < 40 && info.isSymbolicLink(); ++depth)
        info.setFile(info.symLinkTarget());
    return info.filePath();
}

// False with the old file intact.
bool replace(const QString &path, const QByteArray &text)
{
    // Readable by the user alone, as all temporary files are.
    QTemporaryFile file(path + ".XXXXXX"_L1);
    if (!file.open() || file.write(text) != text.size() || !file.flush() ||
        std::rename(QFile::encodeName(file.fileName()).constData(),
                    QFile::encodeName(path).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

// Returns once the disk has it.
void synchronise(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        ::fdatasync(file.handle());
}

} // namespace

FileLock::FileLock(const QString &path, const std::function<bool()> &goOn)
    : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    if (m_descriptor < 0)
        return;
    while (!(m_held = ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)) {
        if (!goOn())
            return;
        std::this_thread::sleep_for(lockPause);
    }
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

JsonFile::State JsonFile::read(QJsonObject &object) const
{
    const QString path = followLinks(m_path);
    const QFileInfo info(path);
    if (!info.exists())
        return State::Missing;
    // Opening a pipe would wait for a writer.
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return State::Unusable;
    const auto document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return State::Corrupt;
    object = document.object();
    return State::Object;
}

JsonFile::JsonFile(QString path)
    : m_path(std::move(path))
    , m_syncing(std::make_shared<QThreadPool>())
{
    m_syncing->setMaxThreadCount(1);
}

JsonFile::Writing JsonFile::write(const QJsonObject &object, FileLock lock)
{
    m_replaced = std::make_shared<bool>(false);
    m_writing.run([replaced = m_replaced, syncing = m_syncing, path = followLinks(m_path),
                   text = QJsonDocument(object).toJson(),
                   lock = std::make_shared<FileLock>(std::move(lock))]() mutable {
        *replaced = replace(path, text);
        lock.reset();
        syncing->clear(); // the one that is there by then is enough
        if (*replaced)
            syncing->start([path] { synchronise(path); });
    });
    return writing();
}

JsonFile::Writing JsonFile::writing(std::chrono::milliseconds wait) const
{
    if (!m_writing.isIdle(wait))
        return Writing::Pending;
    return !m_replaced || *m_replaced ? Writing::Done : Writing::Failed;
}

bool JsonFile::keepAside() const
{
    const QString path = followLinks(m_path);
    const QString time = QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    QString name = path + ".corrupt-"_L1 + time;
    for (int attempt = 2; attempt < 100; ++attempt) {
        // Refuses to replace a file.
        if (QFile::rename(path, name))
            return true;
        if (!QFileInfo::exists(name))
            return false;
        name = path + ".corrupt-"_L1 + time + u'-' + QString::number(attempt);
    }
    return false;
}

bool JsonFile::makeFolder() const
{
    const QString folder = QFileInfo(m_path).path();
    if (!QFileInfo(folder).isDir()) {
        QDir().mkpath(QFileInfo(folder).path());
        QDir().mkdir(folder, ownerOnly | QFileDevice::ExeOwner);
    }
    return QFileInfo(folder).isDir();
}

QString JsonFile::lockPath() const
{
    return m_path + ".lock"_L1;
}

std::optional<JsonFile::Stamp> JsonFile::version() const
{
    struct stat status;
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return std::nullopt;
    return Stamp{status.st_dev, status.st_ino, status.st_size,
                 status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec};
}

} // namespace nivora::linuxdesktop
