// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/OutputPath.h"
#include "tests/TestClass.h"
#include "tests/queue/QueueSettings.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

QString textOf(const std::optional<QString> &path)
{
    return path.value_or(u"(none)"_s);
}

} // namespace

class tst_OutputPath final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void table_data()
    {
        QTest::addColumn<QJsonValue>("suffixSwitch");
        QTest::addColumn<QJsonValue>("sameFolder");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        const QJsonValue one(1);
        const QJsonValue text(u"true"_s);
        const auto row = [](const char *name, const QJsonValue &suffixSwitch, const QJsonValue &sameFolder,
                            const char *entry, const char *expected) {
            QTest::newRow(name) << suffixSwitch << sameFolder << QString::fromLatin1(entry)
                                << QString::fromLatin1(expected);
        };
        row("suffix, same folder", true, true, "/x/a.css", "/x/a.min.css");
        row("suffix, same folder, upper case", true, true, "/x/Theme.CSS", "/x/Theme.min.css");
        row("suffix, same folder, dots", true, true, "/x.y/jquery.1.2.js", "/x.y/jquery.1.2.min.js");
        row("suffix, same folder, html", true, true, "/x/p.html", "/x/p.min.html");
        row("suffix, same folder, phtml", true, true, "/x/p.PHTML", "/x/p.min.phtml");
        row("suffix, same folder, php", true, true, "/x/p.Php", "/x/p.min.php");
        row("suffix, same folder, folder as entry", true, true, "/x/theme.css/", "/x/theme.min.css");
        row("suffix, same folder, not normalised", true, true, "~/x/../a.css", "~/x/../a.min.css");
        row("suffix, other folder", true, false, "/x/y/app.js", "/out/app.min.js");
        row("suffix, other folder, upper case", true, false, "/x/y/App.JS", "/out/App.min.js");
        row("suffix, folder is 1", true, one, "/x/y/app.js", "/out/app.min.js");
        row("suffix, folder is a text", true, text, "/x/y/app.js", "/out/app.min.js");
        row("suffix, other folder, folder as entry", true, false, "/x/theme.css/", "/out/theme.min.css");
        row("no suffix, other folder, folder as entry", false, false, "/x/theme.css//", "/out/theme.css");
        row("no suffix, same folder", false, true, "/x/a.css", "/x/a.css");
        row("no suffix, same folder, upper case", false, true, "/x/A.CSS", "/x/A.css");
        row("no suffix, other folder", false, false, "/x/y/app.js", "/out/app.js");
        row("no suffix, folder is 1", false, one, "/x/y/app.js", "/out/app.js");
        row("no suffix, folder is a text", false, text, "/x/y/app.js", "/out/app.js");
        row("suffix is 1, same folder", one, true, "/x/a.css", "(none)");
        row("suffix is 0, same folder", 0, true, "/x/a.css", "(none)");
        row("suffix is a text, same folder", text, true, "/x/a.css", "(none)");
        row("suffix is 1, other folder", one, false, "/x/a.css", "(none)");
        row("suffix is 1, folder is 1", one, one, "/x/a.css", "(none)");
    }

    void table()
    {
        QFETCH(QJsonValue, suffixSwitch);
        QFETCH(QJsonValue, sameFolder);
        QFETCH(QString, entry);
        const QueueSettings settings{{suffixSwitcherKeyString, suffixSwitch},
                                     {sameFolderKeyString, sameFolder},
                                     {selectedFolderKeyString, u"/out"_s}};
        OutputPath output(settings.store());
        QTEST(textOf(output.next(entry)), "expected");
    }

    void folders_data()
    {
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *folder, const char *expected) {
            QTest::newRow(folder) << QString::fromLatin1(expected);
        };
        row("/out", "/out/app.min.js");
        row("/out/", "/out//app.min.js");
        row("", "/app.min.js");
        row("/", "//app.min.js");
        row("~/out", "~/out/app.min.js");
        row("out/../%1", "out/../%1/app.min.js");
    }

    void folders()
    {
        const QueueSettings settings{{sameFolderKeyString, false},
                                     {selectedFolderKeyString, QString::fromLatin1(QTest::currentDataTag())}};
        OutputPath output(settings.store());
        QTEST(textOf(output.next(u"/x/y/app.js"_s)), "expected");
    }

    void suffixIsAppendedAsItIs_data()
    {
        QTest::addColumn<QJsonValue>("suffix");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << QJsonValue(QString()) << u"/x/a.css"_s;
        QTest::newRow("dash") << QJsonValue(u"-min"_s) << u"/x/a-min.css"_s;
        QTest::newRow("separator") << QJsonValue(u"/b"_s) << u"/x/a/b.css"_s;
        QTest::newRow("number") << QJsonValue(5) << u"/x/a5.css"_s;
        QTest::newRow("boolean: the default") << QJsonValue(true) << u"/x/a.min.css"_s;
    }

    void suffixIsAppendedAsItIs()
    {
        QFETCH(QJsonValue, suffix);
        const QueueSettings settings{{suffixKeyString, suffix}};
        OutputPath output(settings.store());
        QTEST(textOf(output.next(u"/x/a.css"_s)), "expected");
    }

    void extensionCarriesOver()
    {
        const QueueSettings settings;
        OutputPath output(settings.store());
        QStringList outputs;
        for (const char *entry :
             {"/x/first.txt", "/x/a.CSS", "/x/b.txt", "/x/c", "/x/d.js", "/x/e.htm", "/x/.css"})
            outputs << textOf(output.next(QString::fromLatin1(entry)));
        const QStringList expected{u"(none)"_s,      u"/x/a.min.css"_s, u"/x/b.min.css"_s,  u"/x/c.min.css"_s,
                                   u"/x/d.min.js"_s, u"/x/e.min.js"_s,  u"/x/.css.min.js"_s};
        QCOMPARE(outputs, expected);
    }

    void pathCarriesOver()
    {
        QueueSettings settings;
        OutputPath output(settings.store());
        QCOMPARE(textOf(output.next(u"/x/a.css"_s)), u"/x/a.min.css"_s);
        settings.set(suffixSwitcherKeyString, 1);
        QCOMPARE(textOf(output.next(u"/x/b.js"_s)), u"/x/a.min.css"_s);
        settings.set(sameFolderKeyString, false);
        QCOMPARE(textOf(output.next(u"/x/c.php"_s)), u"/x/a.min.css"_s);
        // The extension has moved on all the same.
        settings.set(suffixSwitcherKeyString, true);
        settings.set(sameFolderKeyString, true);
        QCOMPARE(textOf(output.next(u"/x/d.txt"_s)), u"/x/d.min.php"_s);
    }

    void nothingBeforeTheFirst_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QJsonValue>("suffixSwitch");
        QTest::newRow("of no kind, suffix") << u"/x/a.txt"_s << QJsonValue(true);
        QTest::newRow("of no kind, no suffix") << u"/x/a.txt"_s << QJsonValue(false);
        QTest::newRow("undecided") << u"/x/a.css"_s << QJsonValue(1);
    }

    void nothingBeforeTheFirst()
    {
        QFETCH(QString, entry);
        QFETCH(QJsonValue, suffixSwitch);
        const QueueSettings settings{{suffixSwitcherKeyString, suffixSwitch}};
        OutputPath output(settings.store());
        QVERIFY(!output.next(entry).has_value());
        QVERIFY(!output.next(entry).has_value());
    }

    void settingsAreReadEachTime()
    {
        QueueSettings settings;
        OutputPath output(settings.store());
        const QString entry = u"/x/a.css"_s;
        QCOMPARE(textOf(output.next(entry)), u"/x/a.min.css"_s);
        settings.set(suffixKeyString, u"-m"_s);
        QCOMPARE(textOf(output.next(entry)), u"/x/a-m.css"_s);
        settings.set(suffixSwitcherKeyString, false);
        QCOMPARE(textOf(output.next(entry)), u"/x/a.css"_s);
        settings.set(sameFolderKeyString, false);
        settings.set(selectedFolderKeyString, u"/o"_s);
        QCOMPARE(textOf(output.next(entry)), u"/o/a.css"_s);
    }

    void switchTurnedMeanwhile()
    {
        // Whatever moment the user chooses: the switch is true or false, never neither, so no entry may be
        // written over the output of the one before.
        QueueSettings settings;
        std::atomic<bool> stop = false;
        std::vector<std::thread> users; // several, so that one of them runs in between even on a busy machine
        for (const bool first : {false, true, false}) {
            users.emplace_back([&, first] {
                for (bool on = first; !stop; on = !on) {
                    settings.set(suffixSwitcherKeyString, on);
                    std::this_thread::yield();
                }
            });
        }
        OutputPath output(settings.store());
        int wrong = 0;
        for (int i = 0; i < 200000; ++i) {
            const QString stem = u"/x/%1"_s.arg(i);
            const QString path = textOf(output.next(stem + ".css"_L1));
            if (path != stem + ".css"_L1 && path != stem + ".min.css"_L1)
                ++wrong;
        }
        stop = true;
        for (std::thread &user : users)
            user.join();
        QCOMPARE(wrong, 0);
    }

    void eachEntryByItsOwnSettings_data()
    {
        QTest::addColumn<bool>("isOnce");
        QTest::newRow("read anew") << false;
        QTest::newRow("read once") << true;
    }

    void eachEntryByItsOwnSettings()
    {
        QFETCH(bool, isOnce);
        const QueueSettings store;
        EntrySettings settings(store.store());
        const auto isIn = [](const QString &folder) {
            return [folder](const QString &entry) { return entry.startsWith(folder); };
        };
        settings.addRule(isIn(u"/y/"_s), {{suffixKeyString, u"-y"_s}});
        settings.addRule(isIn(u"/z/"_s), {{suffixSwitcherKeyString, 1}});
        settings.addRule(isIn(u"/m/"_s), {{compressorsKeyString, u"modern"_s}});
        OutputPath output(settings, isOnce ? OutputPath::Reading::Once : OutputPath::Reading::Anew);
        QStringList outputs;
        for (const char *entry :
             {"/x/a.css", "/y/b.js", "/z/c.html", "/y/d.txt", "/x/e.mjs", "/m/e.mjs", "/z/f.js"}) {
            outputs << textOf(output.next(QString::fromLatin1(entry)));
            QCOMPARE(textOf(output.atStart()), outputs.last());
        }
        // What an undecided one, or one of no kind, falls back on is that of the entry before, whatever its
        // settings.
        const QStringList expected{u"/x/a.min.css"_s,  u"/y/b-y.js"_s,    u"/y/b-y.js"_s,   u"/y/d-y.html"_s,
                                   u"/x/e.min.html"_s, u"/m/e.min.mjs"_s, u"/m/e.min.mjs"_s};
        QCOMPARE(outputs, expected);
    }

    void settingsOfOneMoment()
    {
        QueueSettings settings;
        OutputPath output(settings.store(), OutputPath::Reading::Once);
        settings.set(suffixKeyString, u"-x"_s);
        QCOMPARE(textOf(output.next(u"/x/a.css"_s)), u"/x/a.min.css"_s);
        QCOMPARE(textOf(output.atStart()), u"/x/a.min.css"_s);
        QCOMPARE(textOf(OutputPath(settings.store(), OutputPath::Reading::Once).next(u"/x/a.css"_s)),
                 u"/x/a-x.css"_s);
    }
};

BREVANT_TEST(tst_OutputPath, QCoreApplication)
#include "tst_OutputPath.moc"
