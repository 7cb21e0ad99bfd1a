// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/JsonText.h"
#include "cli/project/Project.h"
#include "cli/project/ProjectFile.h"
#include "cli/project/ProjectPlaces.h"
#include "settings/SettingsKeys.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What is read from a project file, what is said of a wrong one, and where it is looked for.
class tst_ProjectFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_top = QFileInfo(m_folder->path()).canonicalFilePath();
        qputenv("HOME", "/nonexistent");
    }

    void allThatAFileCanSay()
    {
        const Project project =
            read("{\"paths\": [\"src/\", \"./a.css\"], \"exclude\": [\"*.min.*\", \"!x\"],\n"
                 " \"include\": [\"*.css\"], \"gitignore\": true, \"sort\": false,\n"
                 " \"also\": [\"mjs\"], \"outDir\": \"dist\", \"copyRest\": true,\n"
                 " \"keepTimes\": true, \"settings\": {\"suffixKeyString\": \"\\u00e9\",\n"
                 " \"selectedFolderKeyString\": \"out\", \"gzipCheckerKeyString\": true},\n"
                 " \"overrides\": [{\"files\": [\"vendor/\"], \"settings\":\n"
                 " {\"compressorsKeyString\": \"modern\"}}],\n"
                 " \"profiles\": {\"r\": {\"sort\": true}}}");
        QCOMPARE(project.error, QString());
        const ProjectValues &values = project.values;
        QCOMPARE(values.paths, (QStringList{m_top + "/src"_L1, m_top + "/a.css"_L1}));
        QVERIFY(values.exclude->globs.covers("a/b.min.js", false) &&
                !values.exclude->globs.covers("a", false));
        QCOMPARE(values.exclude->texts, (QStringList{u"*.min.*"_s, u"!x"_s}));
        QVERIFY(values.include->globs.covers("a.css", false));
        QCOMPARE(values.gitignore, true);
        QCOMPARE(values.sort, false);
        QCOMPARE(values.also, QStringList{u"mjs"_s});
        QCOMPARE(values.outDir, m_top + "/dist"_L1);
        QCOMPARE(values.copyRest, true);
        QCOMPARE(values.keepTimes, true);
        QCOMPARE(values.settings, (QJsonObject{{suffixKeyString, u"\u00e9"_s},
                                               {selectedFolderKeyString, m_top + "/out"_L1},
                                               {gzipCheckerKeyString, true}}));
        QCOMPARE(values.overrides.size(), 1U);
        QVERIFY(values.overrides[0].files.globs.covers("vendor/a.js", false));
        QCOMPARE(values.overrides[0].settings, (QJsonObject{{compressorsKeyString, u"modern"_s}}));
        QCOMPARE(project.profiles.at(u"r"_s).sort, true);
        QVERIFY(!project.profiles.at(u"r"_s).gitignore);
    }

    void wrongOnes_data()
    {
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *text, const char *expected) {
            QTest::newRow(text) << QString::fromUtf8(expected);
        };
        row("{\"exlude\": []}", "1:2: there is no key \"exlude\"; did you mean \"exclude\"?");
        row("{\n  \"q\": 1}", "2:3: there is no key \"q\"; there are $schema, paths, exclude, include, "
                              "gitignore, sort, also, outDir, copyRest, keepTimes, settings, overrides, "
                              "profiles");
        row("{\"profiles\": {\"profiles\": {\"profiles\": {}}}}",
            "1:28: there is no key \"profiles\"; there are $schema, paths, exclude, include, gitignore, "
            "sort, "
            "also, outDir, copyRest, keepTimes, settings, overrides");
        row("{\"paths\":\n\t\"a\"}", "2:2: this must be a list of texts, as in [\"a\"]");
        row("{\"paths\": [\"a\", \"\"]}", "1:17: this must be a text that is not empty");
        row("{\"paths\": [\"\u00e4\u00f6\", 5]}", "1:18: this must be a text that is not empty");
        row("{\"sort\": \"true\"}", "1:10: this must be true or false");
        row("{\"paths\": [\"../a\"]}", "1:12: \"../a\" is not within the folder of the project file");
        row("{\"outDir\": \"/tmp\"}", "1:12: \"/tmp\" is not within the folder of the project file");
        row("{\"exclude\": [\"[a\"]}", "1:14: \"[a\" has a [ without its ]; write \\[ for one in the name");
        row("{\"also\": [\"css\"]}", "1:11: there is no other kind \"css\"; there are mjs, cjs, htm, svg");
        row("{\"settings\": {\"gzipCheckerKey\": true}}",
            "1:15: there is no setting \"gzipCheckerKey\"; there are suffixKeyString, ");
        row("{\"settings\": {\"gzipCheckerkeyString\": true}}",
            "1:15: there is no setting \"gzipCheckerkeyString\"; did you mean \"gzipCheckerKeyString\"?");
        row("{\"settings\": {\"gzipCheckerKeyString\": \"true\"}}",
            "1:39: gzipCheckerKeyString takes true or false, without quotes");
        row("{\"settings\": {\"suffixKeyString\": 5}}", "1:34: suffixKeyString takes a text in quotes");
        row("{\"settings\": {\"suffixKeyString\": \"/../a\"}}", "1:34: suffixKeyString cannot hold a \"/\"");
        row("{\"settings\": {\"lineBreakKeyString\": \"-1\"}}",
            "1:37: lineBreakKeyString takes a whole number in quotes, as in \"80\"");
        row("{\"settings\": {\"compressorsKeyString\": \"c\"}}",
            "1:39: compressorsKeyString takes classic or modern, not \"c\"");
        row("{\"settings\": {\"esbuildPathKeyString\": \"x\"}}",
            "1:39: esbuildPathKeyString names a program, which a project file cannot; use --set");
        row("{\"settings\": {\"keepOriginalsCheckerKeyString\": true}}",
            "1:48: keepOriginalsCheckerKeyString is for the window alone; leave it out");
        row("{\"overrides\": [{\"files\": [\"a\"]}]}",
            "1:16: this must have both \"files\" and \"settings\"");
        row("{\"overrides\": [{\"files\": [], \"settings\": {}}]}",
            "1:16: \"files\" must hold a pattern, as in [\"vendor/\"]");
        row("{\"overrides\": [{\"files\": [\"a\"], \"settings\":\n{\"sameFolderKeyString\": true}}]}",
            "2:2: sameFolderKeyString holds for all files; move it to the \"settings\" outside");
        row("[]", "1:1: a project file must hold an object, as in {\"paths\": [\".\"]}");
        row("\n{\"sort\": true,}", "2:15: it is no JSON: missing a name for object member");
        row("{\"sort\": true}\n}",
            "2:1: it is no JSON: the document root must not be followed by other values");
        row("", "1:1: it is no JSON: the document is empty");
        row("{\"sort\": true,\n \"sort\": true}", "2:2: \"sort\" is there twice; leave out one of the two");
        row("[[[[[[[[[[[[[[[[[[[[", "1:17: values are nested too deeply");
        row("{\"$schema\": \"\\u0000\"}", "1:13: the text holds what is no character");
        row("{\"$schema\": \"\\udc80\"}", "1:13: the text holds what is no character");
    }

    void wrongOnes()
    {
        QFETCH(QString, expected);
        const QString error = read(QTest::currentDataTag()).error;
        QVERIFY2(error.startsWith(u"%1/brevant.json:%2"_s.arg(m_top, expected)), qPrintable(error));
        QVERIFY2(expected.endsWith(u' ') || error.endsWith(expected), qPrintable(error));
    }

    void zeroBytes()
    {
        QCOMPARE(read(QByteArray("{}\n\0{", 5)).error,
                 m_top + "/brevant.json:2:1: it is no JSON: it holds a zero byte"_L1);
        QVERIFY(read("{\"$schema\": \"\xE9\"}").error.contains(u"1:"_s));
    }

    void links()
    {
        QVERIFY(QDir(m_top).mkdir(u"inside"_s) && QDir(m_top).mkdir(u"site"_s));
        const auto link = [this](const char *to, const char *name) {
            return ::symlink(to, QFile::encodeName(m_top + "/site/"_L1 + QLatin1StringView(name))) == 0;
        };
        QVERIFY(link("../inside", "out") && link("/nonexistent/a", "gone") && link("deep", "in") &&
                link("loop", "loop"));
        QVERIFY(QDir(m_top).mkpath(u"site/deep/er"_s));
        const auto errorOf = [this](const QString &text) {
            return placeInProject(m_top + "/site"_L1, text).error;
        };
        const QString leadsOut = u"leads out of the folder of the project file"_s;
        for (const char *text : {"out", "out/new", "gone", "gone/new", "loop", "in/../../inside"})
            QVERIFY2(!errorOf(QLatin1StringView(text)).isEmpty(), text);
        QCOMPARE(errorOf(u"out/new"_s), leadsOut);
        for (const char *text : {".", "./", "deep", "in", "in/er", "deep/er/new", "new/er"})
            QCOMPARE(errorOf(QLatin1StringView(text)), QString());
        // A copy there could be a hook, which git would run.
        QVERIFY(QDir(m_top).mkpath(u"site/.git/hooks"_s) && link(".git/hooks", "hooks"));
        for (const char *text : {".git", ".GIT/new", "deep/.hg", "new/.svn/", "hooks", "hooks/new"})
            QVERIFY2(errorOf(QLatin1StringView(text)).contains(u"version control"_s), text);
        QCOMPARE(placeInProject(m_top + "/site"_L1, u"./deep//er/"_s).path, m_top + "/site/deep/er"_L1);
    }

    void whereItIsLookedFor()
    {
        QVERIFY(QDir(m_top).mkpath(u"a/b/c"_s));
        QCOMPARE(find("a/b/c"), QString());
        add("brevant.json");
        QCOMPARE(find("a/b/c"), u"brevant.json"_s);
        add("a/b/brevant.json");
        QCOMPARE(find("a/b/c"), u"a/b/brevant.json"_s);
        QCOMPARE(find("a/b"), u"a/b/brevant.json"_s);
        QCOMPARE(find("a"), u"brevant.json"_s);
    }

    void itEndsAtARepository_data()
    {
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("repository") << true;
        QTest::newRow("worktree") << false;
    }

    void itEndsAtARepository()
    {
        QFETCH(bool, isFolder);
        QVERIFY(QDir(m_top).mkpath(u"a/b"_s));
        add("brevant.json");
        if (isFolder)
            QVERIFY(QDir(m_top).mkdir(u"a/.git"_s));
        else
            add("a/.git");
        QCOMPARE(find("a/b"), QString());
        QCOMPARE(find("a"), QString());
        add("a/brevant.json");
        QCOMPARE(find("a/b"), u"a/brevant.json"_s);
    }

    void itEndsAtTheHome()
    {
        QVERIFY(QDir(m_top).mkpath(u"home/site"_s));
        QVERIFY(::symlink("home", QFile::encodeName(m_top + "/link"_L1)) == 0);
        add("brevant.json");
        qputenv("HOME", QFile::encodeName(m_top + "/link"_L1));
        QCOMPARE(find("home/site"), QString());
        add("home/brevant.json");
        QCOMPARE(find("home/site"), u"home/brevant.json"_s);
        qunsetenv("HOME");
        QCOMPARE(find("home/site"), u"home/brevant.json"_s);
    }

    void whatIsNoneIsFoundToo()
    {
        QVERIFY(QDir(m_top).mkpath(u"a/brevant.json"_s));
        add("brevant.json");
        QCOMPARE(find("a"), u"a/brevant.json"_s);
    }

    void refusedOnes_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("folder") << u"is no regular file"_s;
        QTest::newRow("pipe") << u"is no regular file"_s;
        QTest::newRow("link") << u"is a link, which a project file must not be"_s;
        QTest::newRow("writable") << u"can be written by every user; take that away with chmod o-w"_s;
        QTest::newRow("long") << u"is longer than 1 MB"_s;
        QTest::newRow("foreign") << u"belongs to another user"_s;
        QTest::newRow("missing") << u"cannot be read: No such file or directory"_s;
    }

    void refusedOnes()
    {
        QFETCH(QString, expected);
        const QByteArray what = QTest::currentDataTag();
        const QString path = m_top + "/brevant.json"_L1;
        const QByteArray encoded = QFile::encodeName(path);
        if (what == "folder")
            QVERIFY(QDir().mkdir(path));
        else if (what == "pipe")
            QVERIFY(::mkfifo(encoded.constData(), 0600) == 0);
        else if (what == "link")
            QVERIFY(writeFile(m_top + "/a"_L1, "{}") && ::symlink("a", encoded.constData()) == 0);
        else if (what != "missing")
            QVERIFY(writeFile(path, what == "long" ? QByteArray(1'000'001, ' ') : QByteArray("{}")));
        if (what == "writable")
            QVERIFY(::chmod(encoded.constData(), 0666) == 0);
        if (what == "foreign" && ::chown(encoded.constData(), 1, 1) != 0)
            QSKIP("only root can give files away");
        const ProjectFile::Content content = ProjectFile::read(path);
        QCOMPARE(content.error, u"%1 %2; --no-project goes without it"_s.arg(path, expected));
        QCOMPARE(content.bytes, QByteArray());
    }

    void aFileOfTheGroup()
    {
        add("brevant.json");
        QVERIFY(::chmod(QFile::encodeName(m_top + "/brevant.json"_L1).constData(), 0664) == 0);
        QCOMPARE(ProjectFile::read(m_top + "/brevant.json"_L1).error, QString());
    }

private:
    [[nodiscard]] Project read(const QByteArray &text) const
    {
        return readProject(m_top + "/brevant.json"_L1, text);
    }

    void add(const char *name) const { QVERIFY(writeFile(m_top + u'/' + QLatin1StringView(name), "{}")); }

    /// What is found from that folder, relative to the top.
    [[nodiscard]] QString find(const char *folder) const
    {
        const QString path = ProjectFile::find(m_top + u'/' + QLatin1StringView(folder));
        return path.isEmpty() ? path : path.sliced(m_top.size() + 1);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_top;
};

BREVANT_TEST(tst_ProjectFile, QCoreApplication)
#include "tst_ProjectFile.moc"
