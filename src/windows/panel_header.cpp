#include "panel_header.h"

#include "context_popover.h"
#include "open_menu.h"
#include "panel_button.h"
#include "spinner.h"

#include "session/translation_view_model.h"

#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

PanelHeader::PanelHeader(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                         QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_windowSystem(windowSystem)
    , m_direction(new PanelButton(PanelButton::Look::Plain, this))
    , m_spinner(new Spinner(12, this))
    , m_context(new PanelButton(PanelButton::Look::Plain, this))
    , m_pin(new PanelButton(PanelButton::Look::Plain, this))
{
    m_direction->setKind(PanelButton::Kind::Menu);
    m_direction->setSymbol(u"chevron.down"_s, PanelButton::SymbolPlace::AfterText);
    connect(m_direction, &PanelButton::clicked, this, &PanelHeader::openLanguageMenu);
    m_context->setKind(PanelButton::Kind::Popover);
    m_context->setHint(tr("背景"));
    connect(m_context, &PanelButton::clicked, this, &PanelHeader::toggleContext);
    m_pin->setKind(PanelButton::Kind::Toggle);
    connect(m_pin, &PanelButton::clicked, this,
            [this] { m_session.setPinned(!m_session.isPinned()); });
    auto *close = new PanelButton(PanelButton::Look::Plain, this);
    close->setSymbol(u"xmark"_s);
    close->setHint(tr("关闭面板"));
    connect(close, &PanelButton::clicked, this, &PanelHeader::closeRequested);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(6, 6, 8, 4);
    row->setSpacing(4);
    row->addWidget(m_direction);
    row->addWidget(m_spinner);
    row->addStretch();
    row->addWidget(m_context);
    row->addWidget(m_pin);
    row->addWidget(close);

    connect(&m_session, &TranslationViewModel::directionChanged, this,
            &PanelHeader::renderDirection);
    connect(&m_session, &TranslationViewModel::phaseChanged, this, &PanelHeader::renderPhase);
    connect(&m_session, &TranslationViewModel::isPinnedChanged, this, &PanelHeader::renderPin);
    connect(&m_session, &TranslationViewModel::modeChanged, this, &PanelHeader::renderContext);
    connect(&m_session, &TranslationViewModel::contextTextChanged, this,
            &PanelHeader::renderContext);
    renderDirection();
    renderPhase();
    renderPin();
    renderContext();
}

void PanelHeader::renderDirection()
{
    m_direction->setText(displayName(m_session.detectedSource()) + u" → "_s +
                         displayName(m_session.effectiveTarget()));
    m_direction->updateGeometry();
}

void PanelHeader::renderPhase()
{
    m_spinner->setVisible(m_session.phase().kind == Phase::Kind::Loading);
}

void PanelHeader::renderPin()
{
    const bool pinned = m_session.isPinned();
    m_pin->setSymbol(pinned ? u"pin.fill"_s : u"pin"_s);
    m_pin->setHint(pinned ? tr("已钉住（失焦不关闭）") : tr("钉住"));
    m_pin->setActive(pinned);
}

void PanelHeader::renderContext()
{
    m_context->setSymbol(m_session.contextText().isEmpty() ? u"text.bubble"_s
                                                           : u"text.bubble.fill"_s);
    m_context->setVisible(m_session.mode() != PanelMode::Selection);
}

void PanelHeader::openLanguageMenu()
{
    auto menu = std::make_unique<QMenu>();
    QAction *current = nullptr;
    for (const Language target : selectableTargets(m_session.detectedSource())) {
        QAction *action = menu->addAction(displayName(target));
        action->setCheckable(true);
        action->setChecked(target == m_session.effectiveTarget());
        if (action->isChecked())
            current = action;
        connect(action, &QAction::triggered, this,
                [this, target] { m_session.selectTarget(target); });
    }
    menu->setActiveAction(current); // where the keys begin
    openMenu(std::move(menu), *m_direction,
             m_direction->mapToGlobal(QPoint(0, m_direction->height() + 2)));
}

void PanelHeader::toggleContext()
{
    if (m_popover && m_popover->isVisible())
        return closePopover();
    if (!m_popover)
        m_popover = new ContextPopover(m_session, m_windowSystem, this);
    m_popover->open(*m_context);
}

void PanelHeader::closePopover()
{
    if (m_popover)
        m_popover->hide();
    if (QMenu *menu = openMenuOf(*m_direction))
        menu->close();
}

} // namespace nivora
