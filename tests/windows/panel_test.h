#pragma once

#include "windows/floating_panel.h"
#include "windows/floating_panel_controller.h"

#include "core/reading_service.h"
#include "core/translation_engine.h"
#include "desktop/speech_input_service.h"
#include "desktop/speech_service.h"
#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_memory/memory_desktop.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTest>

namespace nivora::test {

// What every test of the panel works with: a panel over a desktop in memory, with
// a real engine that talks to a real server. Controls are found by what assistive
// tools call them. `init` calls start().
class PanelTest : public QObject
{
protected:
    void start()
    {
        m_controller.reset();
        m_session.reset();
        m_readings.reset();
        m_speechInput.reset();
        m_speech.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_keychain = std::make_unique<KeychainStore>(m_desktop->secrets);
        m_settings =
            std::make_unique<SettingsStore>(m_desktop->preferences, *m_keychain, m_server->url());
        m_engine = std::make_unique<TranslationEngine>();
        m_readings = std::make_unique<ReadingService>(m_desktop->japaneseTokenizer);
        m_speech = std::make_unique<SpeechService>(m_desktop->speechSynthesizer);
        m_speechInput = std::make_unique<SpeechInputService>(m_desktop->audioInput,
                                                             m_desktop->speechRecognizer);
        m_session = std::make_unique<TranslationViewModel>(
            TranslationViewModel::Parts{.engine = *m_engine,
                                        .settings = *m_settings,
                                        .readings = *m_readings,
                                        .clipboard = m_desktop->clipboard,
                                        .settingsPanes = m_desktop->settingsPanes,
                                        .speech = m_speech.get(),
                                        .speechInput = m_speechInput.get()});
        m_controller = std::make_unique<FloatingPanelController>(*m_session, *m_settings,
                                                                 m_desktop->windowSystem);
    }

    static QString nameOf(QWidget *widget)
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

    // Of the panel and of what is open beside it.
    template<typename Widget = QWidget>
    Widget *named(const QString &name) const
    {
        for (Widget *widget : m_controller->panel()->findChildren<Widget *>()) {
            if (widget->isVisible() && nameOf(widget) == name)
                return widget;
        }
        return nullptr;
    }
    QAbstractButton *button(const QString &name) const { return named<QAbstractButton>(name); }

    // The names of all that can be pressed, in the order of Tab.
    QStringList buttons() const
    {
        QStringList names;
        const QWidget *panel = m_controller->panel();
        for (QWidget *each = panel->nextInFocusChain(); each != panel;
             each = each->nextInFocusChain()) {
            if (qobject_cast<QAbstractButton *>(each) && each->isVisible())
                names << nameOf(each);
        }
        return names;
    }

    // What assistive tools read there; null when there is no such text.
    QString text(const QString &name) const
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(named(name));
        QAccessibleTextInterface *text = accessible ? accessible->textInterface() : nullptr;
        return text ? text->text(0, text->characterCount()) : QString();
    }

    void show(PanelMode mode)
    {
        m_controller->show(mode, QRectF(100, 100, 50, 20));
        QVERIFY(QTest::qWaitForWindowActive(m_controller->panel()));
    }
    void showSelection(const QString &source, bool hasInsertTarget = true)
    {
        m_session->setSource(source, hasInsertTarget, std::nullopt);
        show(PanelMode::Selection);
    }
    Phase::Kind phase() const { return m_session->phase().kind; }

    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<ReadingService> m_readings;
    std::unique_ptr<SpeechService> m_speech;
    std::unique_ptr<SpeechInputService> m_speechInput;
    std::unique_ptr<TranslationViewModel> m_session;
    std::unique_ptr<FloatingPanelController> m_controller;
};

} // namespace nivora::test
