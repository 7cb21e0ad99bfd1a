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

class tst_OutputPath final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void table_data();
    void table();
    void folders_data();
    void folders();
    void suffixIsAppendedAsItIs_data();
    void suffixIsAppendedAsItIs();
    void extensionCarriesOver();
    void pathCarriesOver();
    void nothingBeforeTheFirst_data();
    void nothingBeforeTheFirst();
    void settingsAreReadEachTime();
    void switchTurnedMeanwhile();
};

namespace {

QString textOf(const std::optional<QString> &path)
{
    return path.value_or(QStringLiteral("(none)"));
}

} // namespace

void tst_OutputPath::table_data()
{
    QTest::addColumn<QJsonValue>("suffixSwitch");
    QTest::addColumn<QJsonValue>("sameFolder");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("expected");
    const QJsonValue one(1);
    const QJsonValue text(QStringLiteral("true"));
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

void tst_OutputPath::table()
{
    QFETCH(QJsonValue, suffixSwitch);
    QFETCH(QJsonValue, sameFolder);
    QFETCH(QString, entry);
    const QueueSettings settings{{suffixSwitcherKeyString, suffixSwitch},
                                 {sameFolderKeyString, sameFolder},
                                 {selectedFolderKeyString, QStringLiteral("/out")}};
    OutputPath output(settings.store());
    QTEST(textOf(output.next(entry)), "expected");
}

void tst_OutputPath::folders_data()
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

void tst_OutputPath::folders()
{
    const QueueSettings settings{{sameFolderKeyString, false},
                                 {selectedFolderKeyString, QString::fromLatin1(QTest::currentDataTag())}};
    OutputPath output(settings.store());
    QTEST(textOf(output.next(QStringLiteral("/x/y/app.js"))), "expected");
}

void tst_OutputPath::suffixIsAppendedAsItIs_data()
{
    QTest::addColumn<QJsonValue>("suffix");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QJsonValue(QString()) << QStringLiteral("/x/a.css");
    QTest::newRow("dash") << QJsonValue(QStringLiteral("-min")) << QStringLiteral("/x/a-min.css");
    QTest::newRow("separator") << QJsonValue(QStringLiteral("/b")) << QStringLiteral("/x/a/b.css");
    QTest::newRow("number") << QJsonValue(5) << QStringLiteral("/x/a5.css");
    QTest::newRow("boolean: the default") << QJsonValue(true) << QStringLiteral("/x/a.min.css");
}

void tst_OutputPath::suffixIsAppendedAsItIs()
{
    QFETCH(QJsonValue, suffix);
    const QueueSettings settings{{suffixKeyString, suffix}};
    OutputPath output(settings.store());
    QTEST(textOf(output.next(QStringLiteral("/x/a.css"))), "expected");
}

void tst_OutputPath::extensionCarriesOver()
{
    const QueueSettings settings;
    OutputPath output(settings.store());
    QStringList outputs;
    for (const char *entry :
         {"/x/first.txt", "/x/a.CSS", "/x/b.txt", "/x/c", "/x/d.js", "/x/e.htm", "/x/.css"})
        outputs << textOf(output.next(QString::fromLatin1(entry)));
    const QStringList expected{QStringLiteral("(none)"),        QStringLiteral("/x/a.min.css"),
                               QStringLiteral("/x/b.min.css"),  QStringLiteral("/x/c.min.css"),
                               QStringLiteral("/x/d.min.js"),   QStringLiteral("/x/e.min.js"),
                               QStringLiteral("/x/.css.min.js")};
    QCOMPARE(outputs, expected);
}

void tst_OutputPath::pathCarriesOver()
{
    QueueSettings settings;
    OutputPath output(settings.store());
    QCOMPARE(textOf(output.next(QStringLiteral("/x/a.css"))), QStringLiteral("/x/a.min.css"));
    settings.set(suffixSwitcherKeyString, 1);
    QCOMPARE(textOf(output.next(QStringLiteral("/x/b.js"))), QStringLiteral("/x/a.min.css"));
    settings.set(sameFolderKeyString, false);
    QCOMPARE(textOf(output.next(QStringLiteral("/x/c.php"))), QStringLiteral("/x/a.min.css"));
    // The extension has moved on all the same.
    settings.set(suffixSwitcherKeyString, true);
    settings.set(sameFolderKeyString, true);
    QCOMPARE(textOf(output.next(QStringLiteral("/x/d.txt"))), QStringLiteral("/x/d.min.php"));
}

void tst_OutputPath::nothingBeforeTheFirst_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QJsonValue>("suffixSwitch");
    QTest::newRow("of no kind, suffix") << QStringLiteral("/x/a.txt") << QJsonValue(true);
    QTest::newRow("of no kind, no suffix") << QStringLiteral("/x/a.txt") << QJsonValue(false);
    QTest::newRow("undecided") << QStringLiteral("/x/a.css") << QJsonValue(1);
}

void tst_OutputPath::nothingBeforeTheFirst()
{
    QFETCH(QString, entry);
    QFETCH(QJsonValue, suffixSwitch);
    const QueueSettings settings{{suffixSwitcherKeyString, suffixSwitch}};
    OutputPath output(settings.store());
    QVERIFY(!output.next(entry).has_value());
    QVERIFY(!output.next(entry).has_value());
}

void tst_OutputPath::settingsAreReadEachTime()
{
    QueueSettings settings;
    OutputPath output(settings.store());
    const QString entry = QStringLiteral("/x/a.css");
    QCOMPARE(textOf(output.next(entry)), QStringLiteral("/x/a.min.css"));
    settings.set(suffixKeyString, QStringLiteral("-m"));
    QCOMPARE(textOf(output.next(entry)), QStringLiteral("/x/a-m.css"));
    settings.set(suffixSwitcherKeyString, false);
    QCOMPARE(textOf(output.next(entry)), QStringLiteral("/x/a.css"));
    settings.set(sameFolderKeyString, false);
    settings.set(selectedFolderKeyString, QStringLiteral("/o"));
    QCOMPARE(textOf(output.next(entry)), QStringLiteral("/o/a.css"));
}

void tst_OutputPath::switchTurnedMeanwhile()
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
        const QString stem = QStringLiteral("/x/%1").arg(i);
        const QString path = textOf(output.next(stem + QLatin1StringView(".css")));
        if (path != stem + QLatin1StringView(".css") && path != stem + QLatin1StringView(".min.css"))
            ++wrong;
    }
    stop = true;
    for (std::thread &user : users)
        user.join();
    QCOMPARE(wrong, 0);
}

BREVANT_TEST(tst_OutputPath, QCoreApplication)
#include "tst_OutputPath.moc"
