#include "platform_linux/lazy_http_client.h"

#include "localcloud/server.h"

#include <QFile>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

bool isMapped(const QByteArray &library)
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

} // namespace

// What a request meets that has to wait for its module.
class TestLazyHttpClient : public QObject
{
    Q_OBJECT

    localcloud::Server m_server;
    int m_heads = 0;
    QByteArray m_bytes;
    int m_ends = 0;
    std::optional<platform::HttpFailure> m_failure;

    platform::Task send(platform::HttpClient &client)
    {
        return client.send(
            {.method = "POST"_ba, .url = m_server.url(), .body = "a text"_ba},
            {
                .onHead = [this](const platform::HttpHead &head) { m_heads += head.status == 200; },
                .onBytes = [this](const QByteArray &bytes) { m_bytes += bytes; },
                .onEnd =
                    [this](const auto &failure) {
                        ++m_ends;
                        m_failure = failure;
                    },
            });
    }

private Q_SLOTS:
    void init()
    {
        m_heads = m_ends = 0;
        m_bytes.clear();
        m_failure.reset();
    }

    void aRequestWithoutAModuleFailsAndSaysWhy()
    {
        linuxdesktop::LazyHttpClient client(u"/nowhere/network.so"_s);
        client.prepare();
        const platform::Task task = send(client);
        QCOMPARE(m_ends, 0);
        QTRY_COMPARE(m_ends, 1);
        QVERIFY(m_failure && m_failure->description.contains(u"/nowhere/network.so"));
        QCOMPARE(m_heads, 0);
    }

    void theFirstRequestsWaitForTheModule()
    {
        QVERIFY(m_server.listen());
        m_server.enqueue(localcloud::Answer::json(200, {}));
        linuxdesktop::LazyHttpClient client;
        QVERIFY(!isMapped("/network-"_ba));
        { // given up before it is made
            const platform::Task dropped = send(client);
        }
        platform::Task task = send(client);
        QTRY_COMPARE(m_ends, 1);
        QVERIFY(!m_failure);
        QCOMPARE(m_heads, 1);
        QCOMPARE(m_bytes, "{}"_ba);
        QVERIFY(isMapped("/network-"_ba));
        QCOMPARE(m_server.requests().size(), 1);
        QCOMPARE(m_server.requests().first().body, "a text"_ba);
    }
};

QTEST_GUILESS_MAIN(TestLazyHttpClient)
#include "tst_lazy_http_client.moc"
