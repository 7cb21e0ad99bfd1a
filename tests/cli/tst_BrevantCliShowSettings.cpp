// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PathString.h"
#include "tests/TestClass.h"
#include "tests/cli/ProjectFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Which of several settings holds, and what is said of that.
class tst_BrevantCliShowSettings final : public QObject, ProjectFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }

    void whoWins_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("source");
        const auto row = [](const char *name, const QStringList &arguments, const char *value,
                            const char *source) {
            QTest::newRow(name) << arguments << QString::fromLatin1(value) << QString::fromLatin1(source);
        };
        const QString release = u"--profile=release"_s;
        const QString empty = u"--profile=empty"_s;
        row("project", {}, "-project", "project");
        row("profile", {release}, "-release", "project, profile release");
        row("profile without it", {empty}, "-project", "project");
        row("command line", {release, u"--suffix=-line"_s}, "-line", "command line");
        row("user's own", {u"--no-project"_s}, "-user", "the user's file");
        row("another file", {u"--no-project"_s, u"--settings=other.json"_s}, "-other", "other.json");
        row("project over a file", {u"--settings=other.json"_s}, "-project", "project");
        row("default", {u"--no-project"_s, u"--no-user-settings"_s}, ".min", "default");
        row("override", {u"vendor/c.css"_s}, "-2", "project, overrides, 2");
        row("override over profile", {release, u"vendor/c.css"_s}, "-3",
            "project, profile release, overrides, 1");
        row("override elsewhere", {u"src/a.css"_s}, "-project", "project");
        row("command line over override", {u"--suffix=-line"_s, u"vendor/c.css"_s}, "-line", "command line");
    }

    void whoWins()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, value);
        QFETCH(QString, source);
        write("{\"settings\": {\"suffixKeyString\": \"-project\"}, \"overrides\": ["
              "{\"files\": [\"vendor/\"], \"settings\": {\"suffixKeyString\": \"-1\"}},"
              "{\"files\": [\"c.css\"], \"settings\": {\"suffixKeyString\": \"-2\"}}],"
              "\"profiles\": {\"empty\": {}, \"release\": {\"settings\": {\"suffixKeyString\": \"-release\"},"
              "\"overrides\": [{\"files\": [\"vendor/\"], \"settings\": {\"suffixKeyString\": \"-3\"}}]}}}");
        m_sandbox->add(u"../home/config/brevant/settings.json"_s, "{\"suffixKeyString\": \"-user\"}");
        m_sandbox->add(u"other.json"_s, "{\"suffixKeyString\": \"-other\"}");
        const Ended shown = m_sandbox->run(QStringList(u"--show-settings"_s) + arguments);
        QCOMPARE(shown.err, QByteArray());
        const QString expected = u"\nsuffixKeyString=%1  (%2)\n"_s.arg(value, source);
        QVERIFY2(QString::fromUtf8(shown.out).contains(expected), shown.out.constData());
        // What it shows is what is done.
        if (arguments.isEmpty() || !arguments.last().endsWith(".css"_L1))
            arguments.append(u"src/a.css"_s);
        const QStringView stem = PathString::stem(arguments.last());
        QCOMPARE(outputOf(arguments), stem.toString() + value + ".css"_L1);
    }

    void showSettings()
    {
        write("{\"paths\": [\"src\"], \"outDir\": \"dist\", \"profiles\": {\"r\": {\"sort\": true}}}");
        const Ended ended = m_sandbox->run({u"--show-settings"_s, u"--profile=r"_s, u"--gitignore"_s});
        QCOMPARE(ended.status, 0);
        const QString top = m_sandbox->path();
        QCOMPARE(
            QString::fromUtf8(ended.out).section(u"suffixKeyString"_s, 0, 0),
            u"Project file: %1/brevant.json\nSettings file: %2/config/brevant/settings.json\n\n"
            "paths=%1/src  (project)\ngitignore=true  (command line)\n"
            "sort=true  (project, profile r)\noutDir=%1/dist  (project)\n"_s.arg(top, m_sandbox->home()));
        QVERIFY(ended.out.contains("\nselectedFolderKeyString=" + top.toUtf8() + "/dist  (outDir)\n"));
        const QByteArray bare =
            m_sandbox->run({u"--show-settings"_s, u"--no-project"_s, u"--no-user-settings"_s}).out;
        QVERIFY(
            bare.startsWith("Project file: none\nSettings file: none\n\nsuffixKeyString=.min  (default)\n"));
    }

    void profiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("unknown") << QByteArray("{\"profiles\": {\"b\": {}, \"a\": {}}}")
                                 << u"%1 has no profile \"x\", but these: a, b"_s;
        QTest::newRow("none") << QByteArray("{}") << u"%1 has no profile \"x\", but no profiles"_s;
        QTest::newRow("no project")
            << QByteArray()
            << u"--profile x needs a project file, and there is no brevant.json in this folder or above it"_s;
    }

    void profiles()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        if (!text.isEmpty())
            write(text);
        const Ended ended = m_sandbox->run({u"--profile"_s, u"x"_s, u"src"_s});
        const QString error =
            expected.contains("%1"_L1) ? expected.arg(m_sandbox->path(projectFile)) : expected;
        QCOMPARE(QString::fromUtf8(ended.err), u"brevant-cli: %1\n"_s.arg(error));
        QCOMPARE(ended.status, 2);
    }
};

BREVANT_TEST(tst_BrevantCliShowSettings, QCoreApplication)
#include "tst_BrevantCliShowSettings.moc"
