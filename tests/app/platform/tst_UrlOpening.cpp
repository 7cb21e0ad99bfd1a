// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/platform/ProbeRun.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant::test;

/// What a desktop's own program for opening addresses is given, on a real display.
class tst_UrlOpening final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void mailAddressIsHandedOverAsItIs();

private:
    QProcess m_display;
    QByteArray m_number;
};

void tst_UrlOpening::initTestCase()
{
    m_display.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                             QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    QVERIFY2(m_display.waitForReadyRead(10'000), "Xvfb does not start");
    m_number = m_display.readLine().trimmed();
}

void tst_UrlOpening::cleanupTestCase()
{
    m_display.terminate();
    m_display.waitForFinished();
}

void tst_UrlOpening::mailAddressIsHandedOverAsItIs()
{
    const QTemporaryDir folder;
    QFile opener(folder.filePath(QStringLiteral("xdg-open")));
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write(
        "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > \"${0%/*}/new\" && mv \"${0%/*}/new\" \"${0%/*}/seen\"\n");
    opener.close();
    QVERIFY(opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("PATH"),
                       folder.path() + QLatin1Char(':') + environment.value(QStringLiteral("PATH")));
    environment.insert(QStringLiteral("DISPLAY"), QLatin1Char(':') + QString::fromLatin1(m_number));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    const ProbeEnd end = runProbe({QStringLiteral("mail")}, environment);
    QCOMPARE(end.out, QByteArray("opened\n"));
    QCOMPARE(end.status, 0);

    QFile seen(folder.filePath(QStringLiteral("seen")));
    QTRY_VERIFY(seen.exists());
    QVERIFY(seen.open(QIODevice::ReadOnly));
    QCOMPARE(seen.readAll(), QByteArray("1\nmailto:support@brevant.example?SUBJECT=Brevant%201.0%20feedback,"
                                        "%20OS%20X%20Gr%C3%B6%C3%9Fe%20(a,%20b)%20%231%2050%25&\n"));
}

BREVANT_TEST(tst_UrlOpening, QCoreApplication)
#include "tst_UrlOpening.moc"
