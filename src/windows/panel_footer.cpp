#include "panel_footer.h"

#include "panel_button.h"
#include "symbol_label.h"

#include "session/translation_view_model.h"

#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

PanelFooter::PanelFooter(TranslationViewModel &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_primary(new PanelButton(PanelButton::Look::Prominent, this))
    , m_copy(new PanelButton(PanelButton::Look::Plain, this))
    , m_tokens(new NoteLabel(11, this))
    , m_historyMark(new QWidget(this))
{
    connect(m_primary, &PanelButton::clicked, this, &PanelFooter::triggerPrimaryAction);
    m_copy->setHint(tr("复制译文"));
    connect(m_copy, &PanelButton::clicked, this, [this] { m_session.copyResult(); });

    auto *markRow = new QHBoxLayout(m_historyMark);
    markRow->setContentsMargins(0, 0, 0, 0);
    markRow->setSpacing(3);
    auto *markText = new NoteLabel(11, m_historyMark);
    markText->setText(tr("历史"));
    markRow->addWidget(new SymbolLabel(u"clock.arrow.circlepath"_s, SymbolLabel::Tone::Secondary,
                                       12, m_historyMark));
    markRow->addWidget(markText);
    m_historyMark->setToolTip(tr("复用了本地历史中的相同翻译，未重新请求"));
    m_historyMark->setAccessibleName(m_historyMark->toolTip());

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 4, 10, 10);
    row->setSpacing(4);
    row->addWidget(m_primary);
    row->addWidget(m_copy);
    row->addStretch();
    row->addWidget(m_tokens);
    row->addWidget(m_historyMark);

    const auto follow = [this](auto signal) {
        connect(&m_session, signal, this, &PanelFooter::renderActions);
    };
    follow(&TranslationViewModel::translatedTextReplaced);
    follow(&TranslationViewModel::phaseChanged);
    follow(&TranslationViewModel::modeChanged);
    follow(&TranslationViewModel::hasInsertTargetChanged);
    follow(&TranslationViewModel::justCopiedChanged);
    connect(&m_session, &TranslationViewModel::lastTokensChanged, this, &PanelFooter::renderNotes);
    connect(&m_session, &TranslationViewModel::fromHistoryChanged, this, &PanelFooter::renderNotes);
    // The first piece of a run changes the phase before the text is there.
    connect(&m_session, &TranslationViewModel::translatedTextAppended, this, [this] {
        if (m_copy->isHidden())
            renderActions();
    });
    renderActions();
    renderNotes();
}

QString PanelFooter::primaryText() const
{
    const bool reply = m_session.mode() == PanelMode::Reply;
    const bool copied = m_session.justCopied();
    switch (m_session.primaryAction()) {
    case PrimaryAction::Replace:
        return tr("⌘↩ 替换原文");
    case PrimaryAction::Insert:
        return tr("⌘↩ 插入到输入框");
    case PrimaryAction::Copy:
        if (reply)
            return copied ? tr("已复制，粘到回复框") : tr("⌘↩ 复制，粘到回复框");
        return copied ? tr("已复制") : tr("⌘↩ 复制");
    case PrimaryAction::None:
        break;
    }
    return {};
}

void PanelFooter::renderActions()
{
    const QString text = primaryText();
    m_primary->setText(text);
    m_primary->updateGeometry();
    m_primary->setVisible(!text.isEmpty());
    m_copy->setSymbol(m_session.justCopied() ? u"checkmark"_s : u"doc.on.doc"_s);
    m_copy->setVisible(!m_session.translatedText().isEmpty());
    renderEmptiness();
}

void PanelFooter::renderNotes()
{
    const qint64 tokens = m_session.lastTokens().value_or(0);
    m_tokens->setText(tr("%1 tok").arg(tokens));
    m_tokens->setVisible(tokens >= 1);
    m_historyMark->setVisible(m_session.fromHistory());
    renderEmptiness();
}

void PanelFooter::renderEmptiness()
{
    const QWidgetList all{m_primary, m_copy, m_tokens, m_historyMark};
    setVisible(!std::ranges::all_of(all, &QWidget::isHidden));
}

void PanelFooter::triggerPrimaryAction()
{
    switch (m_session.primaryAction()) {
    case PrimaryAction::Replace:
    case PrimaryAction::Insert:
        m_session.insert();
        break;
    case PrimaryAction::Copy:
        m_session.copyResult();
        break;
    case PrimaryAction::None:
        break;
    }
}

} // namespace nivora
