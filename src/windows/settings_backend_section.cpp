#include "settings_backend_section.h"

#include "panel_button.h"
#include "settings_binding.h"
#include "spinner.h"
#include "symbol_label.h"
#include "toggle_switch.h"

#include "core/endpoint_address.h"
#include "stores/settings_store.h"

#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int fieldWidth = 270;
constexpr int notePixels = 11;
constexpr int spinnerSide = 12;
constexpr int gap = 8;

QHBoxLayout *makeLine(QWidget *content)
{
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(gap);
    return line;
}

QString hintFor(const QString &address)
{
    if (address.isEmpty())
        return SettingsBackendSection::tr("未填写时，请求会发往 Nivora 云端。");
    switch (addressProblem(address)) {
    case AddressProblem::NoScheme:
        return SettingsBackendSection::tr("地址要以 http:// 或 https:// 开头。");
    case AddressProblem::NoHost:
        return SettingsBackendSection::tr("地址里没有可用的主机名。");
    case AddressProblem::EndsInVersion:
        return SettingsBackendSection::tr("地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。");
    case AddressProblem::None:
        break;
    }
    return {};
}

// Whether a request can be sent there at all.
bool isReachable(const QString &address)
{
    const AddressProblem problem = addressProblem(address);
    return problem == AddressProblem::None || problem == AddressProblem::EndsInVersion;
}

} // namespace

SettingsBackendSection::SettingsBackendSection(SettingsStore &settings,
                                               const ConnectionTest &connectionTest,
                                               QWidget *parent)
    : SettingsSection(tr("翻译服务"), parent)
    , m_settings(settings)
    , m_connectionTest(connectionTest)
{
    addBackend();
    addAddress();
    addModel();
    addKey();
    m_ownRows << addCaption(tr("把请求发往你自己的 OpenAI 兼容服务，登录态绝不外发。"));

    addRow(tr("实时翻译"), makeToggle(settings.liveTranslate, this));
    addCaption(tr("开启后边输入边翻译；关闭则按 ⌘↩ 或「翻译」按钮手动触发，更省用量。"));
    auto *timeout = new SettingsSlider(settings.requestTimeoutSec,
                                       {.least = 30, .most = 300, .step = 10}, tr("%1 s"), this);
    addRow(tr("请求超时"), timeout, timeout->slider());

    for (SettingNotifier *each : std::initializer_list<SettingNotifier *>{
             &settings.apiBaseURLString, &settings.modelName, &settings.byoApiKeyNotifier()})
        connect(each, &SettingNotifier::changed, this, &SettingsBackendSection::forgetReport);
    renderBackend();
    renderAddress();
}

void SettingsBackendSection::addBackend()
{
    m_backend = makePicker(this);
    m_backend->addItem(tr("Nivora 云端"), false);
    m_backend->addItem(tr("自建后端（BYO）"), true);
    addRow(tr("后端"), m_backend);
    m_cloudNote = addCaption(tr("由 Nivora 云端提供翻译，开箱即用。"));
    connect(m_backend, &QComboBox::currentIndexChanged, this,
            [this] { m_settings.useCustomBackend.set(m_backend->currentData().toBool()); });
    connect(&m_settings.useCustomBackend, &SettingNotifier::changed, this,
            &SettingsBackendSection::renderBackend);
}

void SettingsBackendSection::addAddress()
{
    auto *content = new QWidget(this);
    content->setFixedWidth(fieldWidth);
    m_address = makeField(m_settings.apiBaseURLString, content);
    m_address->setPlaceholderText(u"https://"_s);
    m_address->setInputMethodHints(Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase);
    m_test = new PanelButton(PanelButton::Look::Secondary, content);
    m_test->setText(tr("测试连接"));
    auto *line = makeLine(content);
    line->addWidget(m_address, 1);
    line->addWidget(m_test);
    m_ownRows << addRow(tr("API 地址"), content, m_address);
    connect(&m_settings.apiBaseURLString, &SettingNotifier::changed, this,
            &SettingsBackendSection::renderAddress);
    connect(m_test, &PanelButton::clicked, this, &SettingsBackendSection::testConnection);

    m_hint = new NoteLabel(notePixels, this);
    m_hintRow = addNote(m_hint);
    auto *result = new QWidget(this);
    m_spinner = new Spinner(spinnerSide, result);
    m_report = new NoteLabel(notePixels, result);
    m_report->setWordWrap(true);
    auto *resultLine = makeLine(result);
    resultLine->addWidget(m_spinner);
    resultLine->addWidget(m_report, 1);
    m_reportRow = addSubRow(result);
}

void SettingsBackendSection::addModel()
{
    m_model = makePicker(this);
    m_model->setFixedWidth(fieldWidth);
    m_model->setEditable(true);
    m_model->setInsertPolicy(QComboBox::NoInsert);
    m_model->completer()->setFilterMode(Qt::MatchContains);
    m_model->completer()->setCompletionMode(QCompleter::PopupCompletion);
    m_model->setEditText(m_settings.modelName.value());
    m_ownRows << addRow(tr("模型名"), m_model, m_model->lineEdit());
    setName(*m_model, tr("模型名"));
    connect(m_model, &QComboBox::editTextChanged, this, [this](const QString &name) {
        if (name != m_settings.modelName.value())
            m_settings.modelName.set(name);
    });
    connect(&m_settings.modelName, &SettingNotifier::changed, this,
            [this] { showText(*m_model->lineEdit(), m_settings.modelName.value()); });
}

void SettingsBackendSection::addKey()
{
    m_key = makeField(this);
    m_key->setFixedWidth(fieldWidth);
    m_key->setEchoMode(QLineEdit::Password);
    m_ownRows << addRow(tr("API Key（可选）"), m_key);
    connect(m_key, &QLineEdit::textChanged, this, [this](const QString &key) {
        if (key != m_settings.byoApiKey())
            m_settings.setByoApiKey(key);
    });
    connect(&m_settings.byoApiKeyNotifier(), &SettingNotifier::changed, this,
            [this] { showText(*m_key, m_settings.byoApiKey()); });
}

void SettingsBackendSection::renderBackend()
{
    const bool isOwn = m_settings.useCustomBackend.value();
    showChoice(*m_backend, isOwn, false);
    m_cloudNote->setVisible(!isOwn);
    for (QWidget *row : std::as_const(m_ownRows))
        row->setVisible(isOwn);
    if (isOwn && isVisible())
        showText(*m_key, m_settings.byoApiKey());
    renderAddress();
    forgetReport();
}

void SettingsBackendSection::renderAddress()
{
    const QString address = m_settings.apiBaseURLString.value();
    const QString hint = hintFor(address);
    m_hint->setText(hint);
    m_hintRow->setVisible(m_settings.useCustomBackend.value() && !hint.isEmpty());
    m_test->setEnabled(isReachable(address));
}

// The key is asked for when it is to be seen, not before.
void SettingsBackendSection::showEvent(QShowEvent *event)
{
    if (m_settings.useCustomBackend.value())
        showText(*m_key, m_settings.byoApiKey());
    SettingsSection::showEvent(event);
}

void SettingsBackendSection::testConnection()
{
    m_report->setText(tr("正在测试…"));
    m_spinner->show();
    m_reportRow->show();
    m_testing = m_connectionTest.run(
        m_settings.config(), [this](const ConnectionReport &report) { showReport(report); });
}

void SettingsBackendSection::showReport(const ConnectionReport &report)
{
    m_spinner->hide();
    m_report->setText(report.summary());
    m_report->updateGeometry();
    if (!report.models)
        return;
    const QSignalBlocker programmatic(m_model);
    const QString typed = m_model->currentText();
    m_model->clear();
    m_model->addItems(*report.models);
    m_model->setEditText(typed);
}

// What was found holds for what was tried.
void SettingsBackendSection::forgetReport()
{
    m_testing.cancel();
    m_reportRow->hide();
}

} // namespace nivora
