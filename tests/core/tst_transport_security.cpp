#include "core/auth_service.h"
#include "engine_run.h"
#include "platform_linux_network/qt_http_client.h"

#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora;
using namespace nivora::test;

// A token and a text are sent to nobody who cannot prove to be the service.
class TestTransportSecurity : public QObject
{
    Q_OBJECT

    QByteArray m_received; // deciphered
    QTemporaryDir m_folder;

    // A certificate that only it itself vouches for.
    bool makeCertificate(const QString &alternativeName) const
    {
        return QProcess::execute(
                   u"openssl"_s,
                   {u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                    u"ec_paramgen_curve:prime256v1"_s, u"-noenc"_s, u"-subj"_s, u"/CN=test"_s,
                    u"-addext"_s, u"subjectAltName="_s + alternativeName, u"-keyout"_s,
                    m_folder.filePath(u"key"_s), u"-out"_s, m_folder.filePath(u"cert"_s)}) == 0;
    }
    QSslConfiguration configuration() const
    {
        QFile key(m_folder.filePath(u"key"_s));
        auto result = QSslConfiguration::defaultConfiguration();
        if (key.open(QIODevice::ReadOnly))
            result.setPrivateKey(QSslKey(&key, QSsl::Ec));
        result.setLocalCertificateChain(
            QSslCertificate::fromPath(m_folder.filePath(u"cert"_s), QSsl::Pem));
        return result;
    }

private Q_SLOTS:
    void aServiceProvesWhoItIs_data()
    {
        QTest::addColumn<QString>("alternativeName");
        QTest::addColumn<bool>("vouchedFor");
        QTest::addColumn<bool>("reached");
        QTest::newRow("certificate of nobody known") << u"IP:127.0.0.1"_s << false << false;
        QTest::newRow("certificate of another host") << u"DNS:other.example"_s << true << false;
        QTest::newRow("its own certificate") << u"IP:127.0.0.1"_s << true << true;
    }

    void aServiceProvesWhoItIs()
    {
        QFETCH(const QString, alternativeName);
        QFETCH(const bool, vouchedFor);
        QFETCH(const bool, reached);
        QVERIFY(makeCertificate(alternativeName));
        const auto before = QSslConfiguration::defaultConfiguration();
        const auto restore =
            qScopeGuard([&] { QSslConfiguration::setDefaultConfiguration(before); });
        QSslServer server;
        server.setSslConfiguration(configuration());
        connect(&server, &QSslServer::pendingConnectionAvailable, this, [&] {
            QTcpSocket *socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                m_received += socket->readAll();
                socket->disconnectFromHost();
            });
        });
        QVERIFY(server.listen(QHostAddress::LocalHost));
        if (vouchedFor) {
            auto trusting = before;
            trusting.setCaCertificates(server.sslConfiguration().localCertificateChain());
            QSslConfiguration::setDefaultConfiguration(trusting);
        }

        linuxdesktop::QtHttpClient network;
        const QUrl address(u"https://127.0.0.1:%1"_s.arg(server.serverPort()));
        m_received.clear();
        Run run;
        TranslationEngine engine(network);
        TranslationConfig config;
        config.apiBaseURL = address;
        config.apiToken = "secret"_ba;
        run.start(engine, config);
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(m_received.contains("Authorization: Bearer secret"), reached);

        m_received.clear();
        bool ended = false;
        const platform::Task task =
            AuthService({network, address}, u"en"_s)
                .verify(u"me@x.org"_s, u"123456"_s, [&](const auto &) { ended = true; });
        QTRY_VERIFY(ended);
        QCOMPARE(m_received.contains("me@x.org"), reached);
        QCOMPARE(m_received.isEmpty(), !reached);
    }
};

QTEST_GUILESS_MAIN(TestTransportSecurity)
#include "tst_transport_security.moc"
