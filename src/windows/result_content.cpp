#include "result_content.h"

#include "flowing_text.h"
#include "focus_ring.h"
#include "spinner.h"
#include "symbol_label.h"
#include "variant_button.h"
#include "windows/theme.h"

#include "session/translation_view_model.h"

#include <QHBoxLayout>
#include <QPainter>

namespace nivora {

namespace {

// Logical pixels.
constexpr int resultPixels = 15;
constexpr int annotationPixels = 12;
constexpr int variantPixels = 13;
constexpr int spinnerSide = 12;
constexpr int gap = 6;
constexpr int gapBetweenVariants = 4;

} // namespace

ResultContent::ResultContent(TranslationViewModel &session, int width, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_width(width)
    , m_translation(makeText(false, tr("译文")))
    , m_reading(makeText(true, tr("读音")))
    , m_backTranslation(makeText(true, tr("回译")))
    , m_loading(new QWidget(this))
{
    auto *row = new QHBoxLayout(m_loading);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    auto *loadingText = new NoteLabel(annotationPixels, m_loading);
    loadingText->setText(tr("生成说法…"));
    row->addWidget(new Spinner(spinnerSide, m_loading));
    row->addWidget(loadingText, 1);

    using Session = TranslationViewModel;
    connect(&m_session, &Session::translatedTextReplaced, this,
            [this] { m_translation->replaceText(m_session.translatedText()); });
    connect(&m_session, &Session::translatedTextAppended, this, [this](const QString &piece) {
        // The first piece shows in the same frame as the buttons that come with it.
        if (m_translation->text().isEmpty())
            m_translation->replaceText(piece);
        else
            m_translation->appendText(piece);
    });
    connect(&m_session, &Session::readingChanged, this, &ResultContent::renderReading);
    connect(&m_session, &Session::backTranslationReplaced, this,
            &ResultContent::renderBackTranslation);
    connect(&m_session, &Session::backTranslationAppended, this, [this](const QString &piece) {
        m_backTranslation->appendText(piece);
        m_backTranslation->show();
    });
    connect(&m_session, &Session::variantsChanged, this, &ResultContent::renderVariants);
    connect(&m_session, &Session::loadingVariantsChanged, this, &ResultContent::renderVariants);
    connect(&m_session, &Session::directionChanged, this, &ResultContent::renderFonts);

    renderFonts();
    m_translation->replaceText(m_session.translatedText());
    renderReading();
    renderBackTranslation();
    renderVariants();
}

ResultContent::~ResultContent() = default;

FlowingText *ResultContent::makeText(bool annotation, const QString &name)
{
    auto *text = new FlowingText(
        annotation ? FlowingText::Weight::Annotation : FlowingText::Weight::Main, this);
    text->setAccessibleName(name);
    text->resize(m_width, 0);
    connect(text, &FlowingText::textHeightChanged, this, &ResultContent::layOut);
    connect(text, &FlowingText::ringChanged, this, qOverload<>(&QWidget::update));
    connect(text, &FlowingText::cursorShown, this,
            [this, text](const QRect &place) { Q_EMIT placeShown(place.translated(text->pos())); });
    return text;
}

void ResultContent::focusTranslation(Qt::FocusReason reason)
{
    m_translation->setFocus(reason);
}

// The reading belongs to the Japanese side, and the check is in Chinese.
void ResultContent::renderFonts()
{
    m_translation->setTextFont(textFont(resultPixels, m_session.effectiveTarget()));
    m_reading->setTextFont(textFont(annotationPixels, Language::Japanese));
    m_backTranslation->setTextFont(textFont(annotationPixels, Language::Chinese));
}

void ResultContent::renderReading()
{
    m_reading->replaceText(m_session.reading());
    m_reading->setVisible(!m_session.reading().isEmpty());
    layOut();
}

void ResultContent::renderBackTranslation()
{
    m_backTranslation->replaceText(m_session.backTranslation());
    m_backTranslation->setVisible(!m_session.backTranslation().isEmpty());
    layOut();
}

void ResultContent::renderVariants()
{
    // One of them may be the sender of the very click that takes it.
    for (VariantButton *button : m_variants) {
        button->hide();
        button->deleteLater();
    }
    m_variants.clear();
    const QFont font = textFont(variantPixels, m_session.effectiveTarget());
    QWidget *above = m_backTranslation;
    for (const QString &variant : m_session.variants()) {
        auto *button = new VariantButton(variant, font, this);
        connect(button, &VariantButton::clicked, this,
                [this, variant] { m_session.useVariant(variant); });
        button->show();
        setTabOrder(std::exchange(above, button), button);
        m_variants.push_back(button);
    }
    m_loading->setVisible(m_session.loadingVariants());
    layOut();
}

void ResultContent::paintEvent(QPaintEvent *)
{
    for (const FlowingText *text : {m_translation, m_reading, m_backTranslation}) {
        if (!text->showsRing())
            continue;
        QPainter painter(this);
        drawFocusRing(
            painter,
            text->geometry().adjusted(-room.width(), -room.height(), room.width(), room.height()),
            palette());
    }
}

void ResultContent::layOut()
{
    int y = room.height();
    const auto place = [&](QWidget *widget, int height, int space) {
        if (widget->isHidden())
            return;
        if (y > room.height())
            y += space;
        widget->setGeometry(room.width(), y, m_width, height);
        y += height;
    };
    place(m_translation, m_translation->flow().height(), 0);
    place(m_reading, m_reading->flow().height(), gap / 2);
    place(m_backTranslation, m_backTranslation->flow().height(), gap / 2);
    place(m_loading, m_loading->sizeHint().height(), gap);
    for (VariantButton *button : m_variants)
        place(button, button->layOut(m_width),
              button == m_variants.front() ? gap : gapBetweenVariants);
    y += room.height();
    if (height() == y)
        return;
    resize(m_width + 2 * room.width(), y);
    Q_EMIT heightChanged();
}

} // namespace nivora
