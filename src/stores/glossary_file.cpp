#include "glossary_file.h"

#include "glossary_format.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// Keeps the file under another name before it is replaced. A copy that was kept
// earlier may be the one with years of terms in it, so it stays.
bool keepRejected(const QString &path)
{
    const QString stem = path + ".rejected"_L1;
    QString name = stem;
    for (int attempt = 2; QFileInfo::exists(name); ++attempt)
        name = stem + u'-' + QString::number(attempt);
    // What cannot be read cannot be copied, but it can be renamed.
    if (!QFile::copy(path, name))
        return QFile::rename(path, name);
    QFile::setPermissions(name, ownerOnly);
    return true;
}

} // namespace

std::vector<GlossaryTerm> GlossaryFile::read()
{
    const QFileInfo info(m_path);
    if (!info.exists())
        return {};
    QFile file(m_path);
    // Opening a pipe would wait for a writer.
    if (info.isFile() && file.open(QIODevice::ReadOnly)) {
        if (auto terms = decodeGlossary(file.readAll()))
            return std::move(*terms);
    }
    m_rejected = true;
    return {};
}

void GlossaryFile::write(const std::vector<GlossaryTerm> &terms)
{
    const QString folder = QFileInfo(m_path).path();
    if (!QFileInfo(folder).isDir()) {
        QDir().mkpath(QFileInfo(folder).path());
        QDir().mkdir(folder, ownerOnly | QFileDevice::ExeOwner);
    }
    // Rather no new file than the loss of the old one.
    if (m_rejected && !keepRejected(m_path))
        return;
    m_rejected = false;
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(ownerOnly))
        return;
    file.write(encodeGlossary(terms));
    file.commit();
}

} // namespace nivora
