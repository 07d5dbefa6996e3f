#pragma once

#include "core/prompts.h"
#include "core/translation_engine.h"
#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

// What the engine's rules say, in one place for all of its tests.
inline constexpr auto retryPause = 400ms;
inline const auto emptyMessage = u"未收到译文，请重试。"_s;
inline const auto timeoutMessage = u"请求超时（模型可能正在加载，请重试）。"_s;
inline const auto connectMessage = u"无法连接翻译服务，请检查网络或服务地址。"_s;
inline const auto networkMessage = u"网络错误："_s;

inline QString httpMessage(int status)
{
    return u"服务返回错误 (HTTP %1)。"_s.arg(status);
}

inline TranslationConfig configFor(const localcloud::Server &server, bool cloud = true)
{
    return {.apiBaseURL = server.url(),
            .modelName = u"some-model"_s,
            .requestTimeout = 5s,
            .apiToken = "secret"_ba,
            .cloud = cloud,
            .translateTemplate = PromptTemplate::defaultTranslate()};
}

// One call of translate() and all that came of it.
struct Run
{
    TranslationEngine::Callbacks callbacks()
    {
        clock.start();
        TranslationEngine::Callbacks result;
        result.onPiece = [this](const QString &piece) {
            misplaced += ends > 0;
            pieces.append(piece);
            if (onPiece)
                onPiece();
        };
        result.onUsage = [this](const TokenUsage &each) {
            misplaced += ends > 0;
            usage.append(each);
        };
        result.onTranslationId = [this](const QString &id) {
            misplaced += !pieces.isEmpty() || ends > 0;
            ids.append(id);
        };
        result.onFinished = [this](const std::optional<TranslationError> &error) {
            ++ends;
            elapsed = std::chrono::milliseconds(clock.elapsed());
            message = error ? error->errorDescription() : QString();
        };
        return result;
    }

    void start(TranslationEngine &engine, const TranslationConfig &config,
               const QString &text = u"你好"_s)
    {
        task = engine.translate(text, Language::Japanese, {}, config, callbacks());
    }

    QElapsedTimer clock;
    std::function<void()> onPiece; // called after each piece
    QStringList pieces;
    QList<TokenUsage> usage;
    QStringList ids;
    QString message; // of the error; empty without one
    std::chrono::milliseconds elapsed{0};
    int ends = 0;
    int misplaced = 0;   // deliveries in the wrong order
    platform::Task task; // gone first, so that nothing calls into the rest
};

// A server for each test. `init` calls start().
class EngineTest : public QObject
{
protected:
    void start()
    {
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
    }

    linuxdesktop::QtHttpClient m_network;
    TranslationEngine m_engine{m_network};
    std::unique_ptr<localcloud::Server> m_server;
};

} // namespace nivora::test
