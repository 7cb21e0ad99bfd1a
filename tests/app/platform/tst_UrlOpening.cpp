// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/app/platform/ProbeRun.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What a desktop's own program for opening addresses is given, on a real display.
class tst_UrlOpening final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_display.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
        QVERIFY2(m_display.waitForReadyRead(10'000), "Xvfb does not start");
        m_number = m_display.readLine().trimmed();
    }

    void cleanupTestCase()
    {
        m_display.terminate();
        m_display.waitForFinished();
    }

    void mailAddressIsHandedOverAsItIs()
    {
        const QTemporaryDir folder;
        QFile opener(folder.filePath(u"xdg-open"_s));
        QVERIFY(opener.open(QIODevice::WriteOnly));
        opener.write("#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > \"${0%/*}/new\" && mv \"${0%/*}/new\" "
                     "\"${0%/*}/seen\"\n");
        opener.close();
        QVERIFY(opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name :
             {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION", "WAYLAND_DISPLAY"})
            environment.remove(QString::fromLatin1(name));
        environment.insert(u"PATH"_s, folder.path() + QLatin1Char(':') + environment.value(u"PATH"_s));
        environment.insert(u"DISPLAY"_s, QLatin1Char(':') + QString::fromLatin1(m_number));
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        const ProbeEnd end = runProbe({u"mail"_s}, environment);
        QCOMPARE(end.out, QByteArray("opened\n"));
        QCOMPARE(end.status, 0);

        const QString seen = folder.filePath(u"seen"_s);
        QTRY_VERIFY(QFile::exists(seen));
        QCOMPARE(readFile(seen),
                 QByteArray("1\nmailto:support@brevant.example?SUBJECT=Brevant%201.0%20feedback,"
                            "%20OS%20X%20Gr%C3%B6%C3%9Fe%20(a,%20b)%20%231%2050%25&\n"));
    }

private:
    QProcess m_display;
    QByteArray m_number;
};

BREVANT_TEST(tst_UrlOpening, QCoreApplication)
#include "tst_UrlOpening.moc"
