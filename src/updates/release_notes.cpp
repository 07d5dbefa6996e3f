#include "updates/release_notes.h"

#include <QBuffer>
#include <QImageReader>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

QImage pictureOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    const bool isPicture =
        QByteArrayList{"png"_ba, "jpeg"_ba, "gif"_ba, "webp"_ba}.contains(reader.format());
    const bool fits =
        size.isValid() && qint64(size.width()) * size.height() <= ReleaseNotes::maximumPixels;
    return isPicture && fits ? reader.read() : QImage();
}

} // namespace

platform::Task ReleaseNotes::page(const QUrl &url, std::function<void(Result)> done)
{
    return m_server.document(
        url, maximumNotesPage, [done = std::move(done)](const UpdateServer::Result &result) {
            if (const auto *problem = std::get_if<QString>(&result))
                return done(*problem);
            const auto &document = std::get<UpdateServer::Document>(result);
            done(Page{document.url, readNotes(document.bytes, document.contentType)});
        });
}

platform::Task ReleaseNotes::picture(const QUrl &url, std::function<void(QImage)> done)
{
    return m_server.document(
        url, maximumPicture, [done = std::move(done)](const UpdateServer::Result &result) {
            const auto *document = std::get_if<UpdateServer::Document>(&result);
            done(document ? pictureOf(document->bytes) : QImage());
        });
}

} // namespace nivora
