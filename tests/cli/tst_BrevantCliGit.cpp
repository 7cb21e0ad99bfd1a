// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QStandardPaths>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QString prepare = uR"(
    export GIT_CONFIG_GLOBAL=/dev/null
    git init -q repo
    cd repo
    mkdir -p dist/sub src/gen new/deep inner "sp ace" || exit 1
    printf 'dist/\n*.log.css\ngen\n/kept.css\nsp ace/b*\nnot-utf8*\n' >.gitignore
    touch a.css kept.css dist/a.css dist/sub/b.css src/a.css src/gen/b.css src/x.log.css new/c.css \
        new/deep/d.log.css "sp ace/a.css" "sp ace/b.css"
    git add -f kept.css src/a.css
    git init -q inner
    echo i.css >inner/.gitignore
    touch inner/i.css inner/j.css
)"_s;

} // namespace

/// What git ignores is left out.
class tst_BrevantCliGit final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(u"git"_s).isEmpty())
            QSKIP("git is not installed");
    }

    void leftOut_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QByteArray>("files"); // below repo
        const QByteArray all = "a.css inner/j.css kept.css new/c.css sp ace/a.css src/a.css ";
        QTest::newRow("from the top") << u"$CLI --list --print0 --sort --gitignore ."_s << all;
        QTest::newRow("from above") << u"cd ..; $CLI --list --print0 --sort --gitignore repo"_s << all;
        QTest::newRow("a folder") << u"$CLI --list --print0 --gitignore src"_s << QByteArray("src/a.css ");
        QTest::newRow("an ignored folder")
            << u"$CLI --list --print0 --gitignore dist; $CLI --list --print0 --gitignore dist/sub"_s
            << QByteArray();
        QTest::newRow("files that are named")
            << u"find . -name '*.css' -print0 | sort -z | $CLI --list --print0 --gitignore --files-from - -0"_s
            << all;
        QTest::newRow("files of a repository inside")
            << u"$CLI --list --print0 --gitignore inner/i.css inner/j.css src/x.log.css a.css"_s
            << QByteArray("inner/j.css a.css ");
        QTest::newRow("a file from elsewhere")
            << u"cd /; $CLI --list --print0 --gitignore \"$OLDPWD/a.css\" \"$OLDPWD/dist/a.css\" \"$OLDPWD/src\""_s
            << QByteArray("a.css src/a.css ");
        QTest::newRow("files through links")
            << u"ln -s src inside; ln -s repo/dist ../outside; "
               "$CLI --list --print0 --gitignore src/x.log.css inside/x.log.css inside/a.css ../outside/a.css"_s
            << QByteArray("inside/a.css ");
        QTest::newRow("with patterns of its own")
            << u"$CLI --list --print0 --sort --gitignore --exclude 'a*' --exclude inner ."_s
            << QByteArray("kept.css new/c.css ");
        QTest::newRow("in a hook") << u"export GIT_DIR=.git; cd src; $CLI --list --print0 --gitignore ."_s
                                   << QByteArray("src/a.css ");
        QTest::newRow("in an alias")
            << u"export GIT_LITERAL_PATHSPECS=1; cd src; $CLI --list --print0 --gitignore . x.log.css"_s
            << QByteArray("src/a.css ");
        QTest::newRow("names that are not UTF-8")
            << u"d=$(printf 'd\\351'); mkdir \"$d\"; mv dist src new \"$d\"; cd \"$d\"; touch not-utf8.css; "
               "rm -r src/gen; $CLI --list --gitignore . >&2; cd ..; $CLI --list --print0 --gitignore --exclude 'd*' --sort ."_s
            << QByteArray("a.css inner/j.css kept.css sp ace/a.css ");
    }

    void leftOut()
    {
        QFETCH(QString, script);
        QFETCH(QByteArray, files);
        const Sandbox sandbox;
        const QByteArray before = sandbox.path().toUtf8() + "/repo/";
        QByteArray found = sandbox.runShell(prepare + script).out;
        QCOMPARE(found.replace(before, "").replace('\0', ' '), files);
    }

    void cannotTell_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QByteArray>("error"); // with the sandbox for %
        QTest::newRow("no repository")
            << u"mkdir w; GIT_CEILING_DIRECTORIES=$PWD $CLI --gitignore w"_s
            << QByteArray("--gitignore: git cannot tell what it ignores in %/w (fatal: ");
        QTest::newRow("no git") << u"mkdir w; PATH=/none; $CLI --gitignore w"_s
                                << QByteArray("--gitignore needs git, which is not installed\n");
        QTest::newRow("a broken repository inside")
            << u"git init -q .; mkdir -p w/d; echo gitdir: /none >w/d/.git; $CLI --gitignore w"_s
            << QByteArray("--gitignore: git cannot tell what it ignores in %/w/d (fatal: ");
    }

    void cannotTell()
    {
        QFETCH(QString, script);
        QFETCH(QByteArray, error);
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(script);
        QVERIFY2(ended.err.startsWith("brevant-cli: " + error.replace("%", sandbox.path().toUtf8())),
                 ended.err);
        QCOMPARE(ended.err.count('\n'), 1);
        QCOMPARE(ended.status, 2);
    }

    /// A repository from somewhere else must not gain anything by being looked at.
    /// Git waits for ever for what is written to that pipe.
    void leavesNoGitBehind()
    {
        const Ended ended = Sandbox().runShell(uR"(
            git init -q repo && mkfifo repo/.gitignore || exit 1
            "$CLI" --gitignore --list repo & cli=$!
            until
                git=$(cut -d ' ' -f 1 "/proc/$cli/task/$cli/children")
                grep -aqs check-ignore "/proc/$git/cmdline"
            do sleep 0.01; done
            kill -9 $cli
            while grep -qs '^State:.[^Z]' "/proc/$git/status"; do sleep 0.01; done
            echo gone
        )"_s);
        QCOMPARE(ended.out, "gone\n"_ba);
    }

    void runsNothingOfTheRepository()
    {
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(
            prepare + u"printf '#!/bin/sh\\ntouch \"%s/ran\"\\n' \"$PWD\" >hook; chmod +x hook\n"
                      "git config core.fsmonitor \"$PWD/hook\"; $CLI --list --gitignore . a.css"_s);
        QCOMPARE(ended.status, 0);
        QVERIFY(!sandbox.has(u"repo/ran"_s));
    }

    /// git would fetch a .gitignore that is not checked out from where the repository says, as it says.
    void fetchesNothing()
    {
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(
            prepare + u"echo z.css >src/.gitignore; touch src/z.css; git add src/.gitignore\n"
                      "git update-index --skip-worktree src/.gitignore; rm src/.gitignore\n"
                      "object=$(git rev-parse :src/.gitignore | sed 's,..,&/,'); rm -f .git/objects/$object\n"
                      "printf '#!/bin/sh\\ntouch \"%s/ran\"\\n' \"$PWD\" >hook; chmod +x hook\n"
                      "git config core.repositoryFormatVersion 1; git config extensions.partialClone origin\n"
                      "git config remote.origin.url \"$PWD\"\n"
                      "git config remote.origin.uploadpack \"$PWD/hook\"; $CLI --list --gitignore . a.css"_s);
        QCOMPARE(ended.status, 0);
        QVERIFY(!sandbox.has(u"repo/ran"_s));
    }
};

BREVANT_TEST(tst_BrevantCliGit, QCoreApplication)
#include "tst_BrevantCliGit.moc"
