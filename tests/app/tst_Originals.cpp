// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/platform/NotificationService.h"
#include "tests/app/platform/PrivateBus.h"
#include "tests/engine/LeftCopy.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// The built window program, started after one that was killed amid a run.
class tst_Originals final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aStartPutsSourcesBack_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("with a window") << QStringList();
        QTest::newRow("for the bus") << QStringList{u"--gapplication-service"_s};
    }

    void aStartPutsSourcesBack()
    {
        QFETCH(QStringList, arguments);
        const test::PrivateBus bus;
        test::NotificationService desktop(QDBusConnection::connectToBus(bus.address(), u"desktop"_s));
        const QTemporaryDir home;
        const QByteArray source = QFile::encodeName(home.filePath(u"a.css"_s));
        QFile file(home.filePath(u"a.css"_s));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write("a { b : c }") > 0 && file.flush());
        QVERIFY(
            brevant::test::LeftCopy(home.filePath(u"a.css"_s), home.filePath(u"state/brevant/originals"_s))
                .isFilled());
        QVERIFY(file.resize(0));

        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_STATE_HOME"_s, home.filePath(u"state"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, home.path());
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(BREVANT), arguments);
        QVERIFY(program.waitForStarted());
        QByteArray said;
        QTRY_VERIFY_WITH_TIMEOUT((said += program.readAllStandardError()).contains("put back.\n"), 30'000);
        const QString sentence =
            QFile::decodeName(source) + u" was lost when a run was cut short, and has been put back."_s;
        QTRY_COMPARE(desktop.shown.size(), 1);
        QCOMPARE(desktop.shown.constFirst().body, sentence);
        program.terminate();
        QVERIFY(program.waitForFinished());
        QCOMPARE(desktop.asked.filter(u"close"_s), QStringList()); // it stays
        QDBusConnection::disconnectFromBus(u"desktop"_s);
        QCOMPARE(said.count("brevant: " + sentence.toUtf8()), 1);
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), "a { b : c }"_ba);
    }
};

BREVANT_TEST(tst_Originals, QCoreApplication)
#include "tst_Originals.moc"
