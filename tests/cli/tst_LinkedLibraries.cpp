// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// brevant-cli must run on a machine without a desktop.
class tst_LinkedLibraries final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noWindows()
    {
        // What ldd(1) lists: everything that is loaded, not only what the program itself names.
        const Sandbox sandbox;
        const Ended ended = sandbox.runProgram(u"/usr/bin/ldd"_s, {cliProgram()});
        QCOMPARE(ended.status, 0);
        QStringList libraries;
        for (const QString &line : QString::fromUtf8(ended.out).split(u'\n', Qt::SkipEmptyParts))
            libraries << line.trimmed().section(u' ', 0, 0).section(u'/', -1);
        QVERIFY2(libraries.contains(u"libQt6Core.so.6"_s), ended.out);
        QCOMPARE(libraries.filter(u"Qt6"_s), QStringList{u"libQt6Core.so.6"_s});
        const QRegularExpression windows(u"^lib(X11|xcb|wayland|GL|EGL|gtk|dbus|sndfile|qscintilla)"_s);
        QCOMPARE(libraries.filter(windows), QStringList());
    }
};

BREVANT_TEST(tst_LinkedLibraries, QCoreApplication)
#include "tst_LinkedLibraries.moc"
