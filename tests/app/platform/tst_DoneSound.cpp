// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/platform/ProbeRun.h"
#include "tests/app/platform/SoundServer.h"

#include <QTest>

#include <cmath>
#include <csignal>
#include <thread>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int leavesWith = 7; // the probe's own exit status

QStringList sound(int times, int milliseconds)
{
    return {u"sound"_s, QString::number(times), QString::number(milliseconds)};
}

QProcessEnvironment withServer(const QString &socket)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + socket);
    return environment;
}

/// A server that takes every connection and never says a word.
class DumbServer final {
public:
    explicit DumbServer(const QString &path) : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path);
        // Not accepted by us, a connection is established all the same.
        m_listens = ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                    ::listen(m_socket, 8) == 0;
    }
    ~DumbServer() { ::close(m_socket); }
    DumbServer(const DumbServer &) = delete;
    DumbServer &operator=(const DumbServer &) = delete;

    [[nodiscard]] bool listens() const { return m_listens; }

    /// Whether somebody has connected.
    [[nodiscard]] bool wasCalled() const
    {
        const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK);
        ::close(connection);
        return connection >= 0;
    }

private:
    int m_socket;
    bool m_listens = false;
};

} // namespace

/// Nothing but the probe's own word, and the status it left with. Where the server does not answer, this
/// tells that neither the main thread nor the end of the program waits for it: it would go on not answering.
static void verifyQuietEnd(const ProbeEnd &end)
{
    QCOMPARE(end.status, leavesWith);
    QCOMPARE(end.err, QByteArray("other warnings are heard\n"));
    QCOMPARE(end.out, QByteArray("leaving\n"));
}

class tst_DoneSound final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isHeard_data()
    {
        QTest::addColumn<int>("times");
        QTest::newRow("once") << 1;
        QTest::newRow("three calls are one sound") << 3;
    }

    void isHeard()
    {
        QFETCH(const int, times);
        const auto expected = doneSoundStatistics();
        QVERIFY(expected.value(u"Length (seconds)"_s) > 0.1);
        // On a busy machine the server itself drops pieces of what it plays or records.
        bool isWhole = false;
        for (int attempt = 0; attempt < 10 && !isWhole; ++attempt) {
            SoundServer server;
            QVERIFY2(server.error().isEmpty(), qPrintable(server.error()));
            QVERIFY(server.startRecording());
            verifyQuietEnd(runProbe(sound(times, 2000), server.environment()));
            const auto heard = soundStatistics(server.stopRecording());
            isWhole = true;
            for (const auto &[what, tolerance] :
                 {std::pair("Length (seconds)", 0.02), std::pair("Maximum amplitude", 0.005),
                  std::pair("Minimum amplitude", 0.005), std::pair("RMS amplitude", 0.005)}) {
                const QString name = QString::fromLatin1(what);
                qInfo("%s: heard %.3f of %.3f", what, heard.value(name), expected.value(name));
                isWhole = isWhole && std::abs(heard.value(name) - expected.value(name)) < tolerance;
            }
        }
        QVERIFY(isWhole);
    }

    void leavesInTheMiddle_data()
    {
        QTest::addColumn<int>("milliseconds");
        for (const int time : {0, 2, 5, 12, 30, 200, 600})
            QTest::addRow("%d ms", time) << time;
    }

    void leavesInTheMiddle()
    {
        QFETCH(const int, milliseconds);
        SoundServer server;
        QVERIFY2(server.error().isEmpty(), qPrintable(server.error()));
        for (int i = 0; i < 2; ++i)
            verifyQuietEnd(runProbe(sound(1, milliseconds), server.environment()));
    }

    void withoutServer()
    {
        const QTemporaryDir folder;
        verifyQuietEnd(runProbe(sound(2, 300), withServer(folder.filePath(u"none"_s))));
    }

    void serverThatNeverAnswers_data()
    {
        QTest::addColumn<int>("milliseconds");
        for (const int time : {0, 5, 50, 500})
            QTest::addRow("%d ms", time) << time;
    }

    void serverThatNeverAnswers()
    {
        QFETCH(const int, milliseconds);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"dumb"_s);
        const DumbServer server(path);
        QVERIFY(server.listens());
        verifyQuietEnd(runProbe(sound(1, milliseconds), withServer(path)));
        if (milliseconds == 500)
            QVERIFY(server.wasCalled());
    }

    void serverThatStops_data()
    {
        QTest::addColumn<int>("stopsAfter");
        for (const int time : {0, 150, 700})
            QTest::addRow("after %d ms", time) << time;
    }

    void serverThatStops()
    {
        QFETCH(const int, stopsAfter);
        SoundServer server;
        QVERIFY2(server.error().isEmpty(), qPrintable(server.error()));
        const auto stop = [&] { ::kill(static_cast<pid_t>(server.processId()), SIGSTOP); };
        std::jthread stopper;
        if (stopsAfter == 0)
            stop();
        else
            stopper = std::jthread([&] {
                QTest::qSleep(stopsAfter);
                stop();
            });
        verifyQuietEnd(runProbe(sound(2, 1200), server.environment()));
    }

    void serverThatGoesAway()
    {
        SoundServer server;
        QVERIFY2(server.error().isEmpty(), qPrintable(server.error()));
        const std::jthread ender([&] {
            QTest::qSleep(300);
            ::kill(static_cast<pid_t>(server.processId()), SIGKILL);
        });
        verifyQuietEnd(runProbe(sound(1, 1000), server.environment()));
    }
};

BREVANT_TEST(tst_DoneSound, QCoreApplication)
#include "tst_DoneSound.moc"
