#include "notes_browser.h"

#include "windows/theme.h"

#include <QEvent>
#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int pageMargin = 18;
constexpr int listIndent = 22;
constexpr std::size_t maximumPictures = 32;

// Languages differ in how they print the same ideograph.
Language printedLanguage(const QString &tag)
{
    const QString lower = tag.toLower();
    if (lower.startsWith(u"ja"))
        return Language::Japanese;
    if (lower.startsWith(u"ko"))
        return Language::Korean;
    if (lower.startsWith(u"zh-hk") || lower.startsWith(u"yue"))
        return Language::Cantonese;
    if (lower.startsWith(u"zh-hant") || lower.startsWith(u"zh-tw"))
        return Language::TraditionalChinese;
    return Language::Auto;
}

// A style sheet knows no alpha in borders.
QColor overWindow(const QColor &color, const QColor &window)
{
    const auto mix = [&](int over, int under) {
        return under + int((over - under) * color.alphaF());
    };
    return {mix(color.red(), window.red()), mix(color.green(), window.green()),
            mix(color.blue(), window.blue())};
}

QString notesStyle(const QPalette &palette)
{
    const QColor window = palette.color(QPalette::Base);
    const QString line = overWindow(hairline(palette), window).name();
    const QString quote = overWindow(secondaryText(palette), window).name();
    const QString tint = overWindow(hoverTint(palette), window).name();
    return u"h1{font-size:x-large;font-weight:600;margin-top:4px;margin-bottom:8px}"
           "h2{font-size:large;font-weight:600;margin-top:16px;margin-bottom:6px}"
           "h3,h4,h5,h6{font-size:medium;font-weight:600;margin-top:12px;margin-bottom:4px}"
           "p,ul,ol,dl{margin-top:6px;margin-bottom:6px}li{margin-bottom:3px}"
           "blockquote{color:%1;margin-left:16px;margin-right:0}"
           "code,kbd,samp{font-family:monospace;background-color:%2}"
           "pre{font-family:monospace;white-space:pre-wrap}"
           "table{border-collapse:collapse;border-color:%3;margin-top:8px;margin-bottom:8px}"
           "td,th{border:1px solid %3;padding:5px}"_s.arg(quote, tint, line);
}

} // namespace

NotesBrowser::NotesBrowser(ReleaseNotes &notes, QWidget *parent)
    : QTextBrowser(parent)
    , m_notes(notes)
{
    setAccessibleName(tr("更新说明"));
    setFrameShape(QFrame::NoFrame);
    setBackgroundRole(QPalette::Base); // below the scroll bar
    setAutoFillBackground(true);
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(pageMargin);
    document()->setIndentWidth(listIndent);
    setFont(textFont(textPixels));
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl &link) { Q_EMIT linkActivated(m_page.url.resolved(link)); });
}

void NotesBrowser::setPage(const ReleaseNotes::Page &page)
{
    m_pictures.clear();
    m_page = page;
    setFont(textFont(textPixels, printedLanguage(page.notes.language)));
    document()->clear(); // forgets the pictures
    render();
    verticalScrollBar()->setValue(0);
}

// The colours stand in the text, so a change of the theme reads it again.
void NotesBrowser::render()
{
    const int place = verticalScrollBar()->value();
    document()->setDefaultStyleSheet(notesStyle(palette()));
    setHtml(m_page.notes.html);
    verticalScrollBar()->setValue(place);
}

void NotesBrowser::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        render();
}

QVariant NotesBrowser::loadResource(int type, const QUrl &name)
{
    if (type != QTextDocument::ImageResource)
        return {};
    if (!m_pictures.contains(name) && m_pictures.size() < maximumPictures)
        fetchPicture(name);
    // A dot until it is there.
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
}

void NotesBrowser::fetchPicture(const QUrl &name)
{
    m_pictures[name] = m_notes.picture(m_page.url.resolved(name), [this, name](QImage picture) {
        if (!picture.isNull())
            showPicture(name, std::move(picture));
    });
}

void NotesBrowser::showPicture(const QUrl &name, QImage picture)
{
    const qreal ratio = devicePixelRatioF();
    const int room = int((viewport()->width() - 2 * pageMargin) * ratio);
    // A picture's pixel is one of the page's, unless the page would be too narrow.
    if (picture.width() * ratio > room) {
        if (picture.width() > room)
            picture = picture.scaledToWidth(room, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(picture.width() / (room / ratio));
    }
    document()->addResource(QTextDocument::ImageResource, name, picture);
    document()->markContentsDirty(0, document()->characterCount());
}

} // namespace nivora
