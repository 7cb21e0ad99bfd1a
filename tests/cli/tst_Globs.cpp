// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Globs.h"

#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// A repository with nothing but a .gitignore, in which git is asked about paths that need not be there.
class Repository final {
public:
    Repository() { static_cast<void>(git({u"init"_s, u"-q"_s})); }

    /// The paths that git ignores by these lines; those with a "/" at the end are folders.
    [[nodiscard]] QList<QByteArray> ignored(const QByteArray &lines, const QList<QByteArray> &paths) const
    {
        if (!writeFile(m_folder.filePath(u".gitignore"_s), lines))
            return {};
        QList<QByteArray> found =
            git({u"check-ignore"_s, u"--no-index"_s, u"-z"_s, u"--stdin"_s}, paths.join('\0') + '\0')
                .split('\0');
        found.removeLast();
        return found;
    }

private:
    [[nodiscard]] QByteArray git(const QStringList &arguments, const QByteArray &input = {}) const
    {
        QProcess git;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"GIT_CONFIG_GLOBAL"_s, u"/dev/null"_s);
        git.setProcessEnvironment(environment);
        git.setWorkingDirectory(m_folder.path());
        git.start(u"git"_s, arguments);
        git.write(input);
        git.closeWriteChannel();
        git.waitForFinished();
        return git.readAllStandardOutput();
    }

    QTemporaryDir m_folder;
};

/// Those of the paths that the patterns, one a line, cover.
QList<QByteArray> covered(const QByteArray &lines, const QList<QByteArray> &paths)
{
    GlobList globs;
    for (const QByteArray &line : lines.split('\n'))
        static_cast<void>(globs.add(line));
    QList<QByteArray> found;
    for (const QByteArray &path : paths) {
        const bool isFolder = path.endsWith('/');
        if (globs.covers(isFolder ? path.chopped(1) : path, isFolder))
            found << path;
    }
    return found;
}

QByteArray randomText(QRandomGenerator &random, const QList<QByteArray> &parts, int most)
{
    QByteArray text;
    for (int count = random.bounded(1, most + 1); count > 0; --count)
        text += parts[random.bounded(parts.size())];
    return text;
}

} // namespace

class tst_Globs final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void patterns_data()
    {
        QTest::addColumn<QByteArray>("patterns"); // one a line
        QTest::addColumn<QByteArray>("path");     // a folder with a "/" at its end
        QTest::addColumn<bool>("isCovered");

        const auto row = [](const char *patterns, const char *path, bool isCovered) {
            QTest::addRow("%s: %s", patterns, path) << QByteArray(patterns) << QByteArray(path) << isCovered;
        };
        for (const char *name : {"a.css", "d/a.css", "d/e/a.css"}) {
            row("a.css", name, true);
            row("*.css", name, true);
            row("a?c*", name, true);
            row("**/a.css", name, true);
            row("*.js", name, false);
        }
        row("/a.css", "a.css", true);
        row("/a.css", "d/a.css", false);
        row("d/a.css", "d/a.css", true);
        row("d/a.css", "e/d/a.css", false);
        row("d/*.css", "d/e/a.css", false);
        row("d/", "d/a.css", true);
        row("d/", "e/d/", true);
        row("d/", "d", false);
        row("d/**", "d/e/a.css", true);
        row("d/**", "d/", false);
        row("d/**/a.css", "d/a.css", true);
        row("d/**/a.css", "d/e/f/a.css", true);
        row("d/**/a.css", "da.css", false);
        row("**/d/a.css", "e/d/a.css", true);
        row("d/b**", "d/bc", true);
        row("*.css\n!a.css", "a.css", false);
        row("*.css\n!a.css", "b.css", true);
        row("!a.css\n*.css", "a.css", true);
        row("d/\n!d/a.css", "d/a.css", true);
        row("d/*\n!d/a.css", "d/a.css", false);
        row("[ab].css", "b.css", true);
        row("[a-c]", "b", true);
        row("[!a-c]", "b", false);
        row("[^a-c]", "d", true);
        row("[]-]", "]", true);
        row("[]-]", "-", true);
        row("[a\\]]", "]", true);
        row("[[:digit:]_]", "7", true);
        row("[[:alpha:]]", "7", false);
        row("d[/]a", "d/a", false);
        row("\\!a", "!a", true);
        row("\\#a", "#a", true);
        row("a\\*", "a*", true);
        row("a\\*", "ab", false);
        row("a ", "a", true);
        row("a\\ ", "a ", true);
        row("a\\ ", "a", false);
        row("\xc3\xa4.css", "\xc3\xa4.css", true);
        row("?.css", "\xc3\xa4.css", false); // bytes count, as for git
        row("\xe9*", "\xe9.css", true);
        row("", "a", false);
    }

    void patterns()
    {
        QFETCH(QByteArray, patterns);
        QFETCH(QByteArray, path);
        const bool isCovered = !covered(patterns, {path}).isEmpty();
        QTEST(isCovered, "isCovered");
    }

    void namesWithNewlines()
    {
        GlobList globs;
        QCOMPARE(globs.add("a\nb*"), QString());
        QVERIFY(globs.covers("a\nb.css", false));
        QVERIFY(!globs.covers("a", false));
    }

    void wrongPatterns_data()
    {
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<QString>("word");
        QTest::newRow("nothing") << QByteArray() << u"matches nothing"_s;
        QTest::newRow("blanks") << QByteArray("  ") << u"matches nothing"_s;
        QTest::newRow("slash") << QByteArray("/") << u"matches nothing"_s;
        QTest::newRow("exclamation mark") << QByteArray("!") << u"matches nothing"_s;
        QTest::newRow("comment") << QByteArray("#a") << u"\\#"_s;
        QTest::newRow("open class") << QByteArray("a[b") << u"\\["_s;
        QTest::newRow("open inverted class") << QByteArray("[!]") << u"\\["_s;
        QTest::newRow("class with a range at the end") << QByteArray("[a-") << u"\\["_s;
        QTest::newRow("class with a backslash at the end") << QByteArray("[a\\") << u"\\["_s;
        QTest::newRow("class of an unknown name") << QByteArray("[[:letter:]]") << u"[:letter:]"_s;
        QTest::newRow("backslash at the end") << QByteArray("a\\") << u"\\\\"_s;
    }

    void wrongPatterns()
    {
        QFETCH(QByteArray, pattern);
        QFETCH(QString, word);
        GlobList globs;
        const QString error = globs.add(pattern);
        QVERIFY2(error.contains(word), qPrintable(error));
    }

    /// The ways through such a pattern grow with the power of its stars.
    void slowPatterns()
    {
        GlobList globs;
        QCOMPARE(globs.add("**/**/**/**/**/**/**/a*b*c*d*e*f*g*h"), QString());
        QCOMPARE(globs.add(QByteArray("*a").repeated(200) + "b"), QString());
        QVERIFY(!globs.covers(QByteArray("a/").repeated(500) + QByteArray("abcdefg").repeated(100), false));
        QVERIFY(globs.covers(QByteArray("a/").repeated(500) + "abcdefgh", false));
    }

    void likeGit()
    {
        if (QStandardPaths::findExecutable(u"git"_s).isEmpty())
            QSKIP("git is not installed");
        const Repository repository;
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        const QList<QByteArray> names{"a", "b", "ab", "-", "]", "!", "a.b", " ", "\\"};
        const QList<QByteArray> parts{"a",    "b",    "/",           "*", "**", "?",    "**/",  "/**",
                                      "[ab]", "[!a]", "[a-b]",       "!", "\\", "\\a",  ".",    "[",
                                      "]",    "-",    "[[:alpha:]]", " ", "#",  "[]a]", "[^-b]"};
        for (int round = 0; round < 150; ++round) {
            QList<QByteArray> paths;
            for (int i = 0; i < 40; ++i) {
                QByteArray path = names[random.bounded(names.size())];
                for (int depth = random.bounded(4); depth > 0; --depth)
                    path += '/' + names[random.bounded(names.size())];
                paths << path;
            }
            QByteArray lines = randomText(random, parts, 6);
            for (int more = random.bounded(3); more > 0; --more)
                lines += '\n' + randomText(random, parts, 6);
            if (covered(lines, paths) != repository.ignored(lines, paths))
                QFAIL(qPrintable(u"seed %1: \"%2\": here %3, git %4"_s.arg(seed).arg(
                    QString::fromUtf8(lines), QString::fromUtf8(covered(lines, paths).join(' ')),
                    QString::fromUtf8(repository.ignored(lines, paths).join(' ')))));
        }
    }
};

BREVANT_TEST(tst_Globs, QCoreApplication)
#include "tst_Globs.moc"
