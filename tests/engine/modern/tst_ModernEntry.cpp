// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/ModernEntry.h"
#include "files/Descriptor.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/engine/modern/ModernFixture.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <sys/xattr.h>

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;

namespace {

QByteArray unpacked(const QString &program, const QString &path)
{
    QProcess process;
    process.start(program, {u"-dc"_s, path});
    return process.waitForFinished() ? process.readAllStandardOutput() : "(not unpacked)"_ba;
}

} // namespace

/// What is written, and how. A shell script stands for esbuild, so that this does not need it.
class tst_ModernEntry final : public QObject, ModernFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(u"a.css"_s), "a { b: c }\n"));
        QVERIFY(writeFile(path(u"esbuild"_s), "#!/bin/sh\ntr -d ' \\n'\n"));
        QVERIFY(setMode(path(u"esbuild"_s), 0755));
        m_options = {};
        m_options.esbuild = path(u"esbuild"_s);
    }

    void aNewOutputHasTheModeOfItsSource()
    {
        QVERIFY(setMode(path(u"a.css"_s), 0640));
        const EntryResult result = run(u"a.min.css"_s);
        QCOMPARE(result.reason(), QString());
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(result.sizeBefore, 11);
        QCOMPARE(result.sizeAfter, 6);
        QCOMPARE(readFile(path(u"a.min.css"_s)), "a{b:c}"_ba);
        QCOMPARE(m_written, "a{b:c}"_ba);
        QCOMPARE(modeOf(path(u"a.min.css"_s)), 0640u);
        QCOMPARE(names(), QStringList({u"a.css"_s, u"a.min.css"_s, u"esbuild"_s}));
    }

    void anOutputIsReplacedAsAWhole()
    {
        QVERIFY(writeFile(path(u"a.min.css"_s), "old"));
        QVERIFY(setMode(path(u"a.min.css"_s), 0600));
        const ino_t before = statusOf(path(u"a.min.css"_s)).st_ino;
        QCOMPARE(run(u"a.min.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"a.min.css"_s)), "a{b:c}"_ba);
        QCOMPARE(modeOf(path(u"a.min.css"_s)), 0600u);
        QVERIFY(statusOf(path(u"a.min.css"_s)).st_ino != before);
    }

    void aLinkIsFollowed()
    {
        QVERIFY(writeFile(path(u"real.css"_s), "old"));
        QVERIFY(makeLink(u"real.css"_s, path(u"a.min.css"_s)));
        QCOMPARE(run(u"a.min.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"real.css"_s)), "a{b:c}"_ba);
        QVERIFY(QFileInfo(path(u"a.min.css"_s)).isSymLink());
    }

    void aFileWithSeveralNamesIsWrittenInto()
    {
        QVERIFY(writeFile(path(u"a.min.css"_s), "old and longer than the new one"));
        QVERIFY(!isWrittenInto(path(u"a.min.css"_s)));
        QVERIFY(makeHardLink(path(u"a.min.css"_s), path(u"other.css"_s)));
        QVERIFY(isWrittenInto(path(u"a.min.css"_s)));
        QVERIFY(!isWrittenInto(path(u"none.css"_s)));
        QCOMPARE(run(u"a.min.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"other.css"_s)), "a{b:c}"_ba);
        QCOMPARE(statusOf(path(u"a.min.css"_s)).st_ino, statusOf(path(u"other.css"_s)).st_ino);
    }

    void aSourceReplacesItself()
    {
        QVERIFY(setMode(path(u"a.css"_s), 0604));
        QCOMPARE(run(u"a.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"a.css"_s)), "a{b:c}"_ba);
        QCOMPARE(modeOf(path(u"a.css"_s)), 0604u);
    }

    void aSourceThatDoesNotGetSmallerIsNotTouched()
    {
        QVERIFY(writeFile(path(u"a.css"_s), "a{b:c}"));
        const ino_t before = statusOf(path(u"a.css"_s)).st_ino;
        EntryResult result = run(u"a.css"_s);
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(statusOf(path(u"a.css"_s)).st_ino, before);
        result = run(u"a.min.css"_s);
        QCOMPARE(readFile(path(u"a.min.css"_s)), "a{b:c}"_ba);
        QCOMPARE(result.messages.inWords(),
                 u"not smaller when minified, so the output is the source as it is"_s);
    }

    void aFailureChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("reason");

        QTest::newRow("status") << "echo x; exit 1"_ba << u"a.min.css"_s << u"esbuild ended with status 1"_s;
        QTest::newRow("signal") << "echo x; kill -9 $$"_ba << u"a.min.css"_s
                                << u"esbuild was ended by signal 9"_s;
        QTest::newRow("in place") << "echo x; exit 1"_ba << u"a.css"_s << u"esbuild ended with status 1"_s;
        QTest::newRow("folder") << "echo x"_ba << u"folder"_s << u"the output is a folder"_s;
        QTest::newRow("no folder") << "echo x"_ba << u"none/a.css"_s
                                   << u"the folder of the output: No such file or directory"_s;
        QTest::newRow("name too long") << "echo x"_ba << QString(300, u'x') + u".css"_s
                                       << u"the output could not be written: File name too long"_s;
    }

    void aFailureChangesNothing()
    {
        QFETCH(const QByteArray, script);
        QFETCH(const QString, output);
        QVERIFY(writeFile(path(u"esbuild"_s), "#!/bin/sh\ncat > /dev/null\n" + script));
        QVERIFY(writeFile(path(u"a.min.css"_s), "old"));
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s));
        const QStringList before = names();
        const EntryResult result = run(output);
        QCOMPARE(result.outcome, Outcome::NotMinified);
        QTEST(result.reason(), "reason");
        QCOMPARE(readFile(path(u"a.css"_s)), "a { b: c }\n"_ba);
        QCOMPARE(readFile(path(u"a.min.css"_s)), "old"_ba);
        QCOMPARE(names(), before);
        static_cast<void>(makeAllCopies(result));
        QCOMPARE(names(), before);
    }

    void aSourceThatIsChangedMeanwhileStays_data()
    {
        QTest::addColumn<QByteArray>("change");
        QTest::addColumn<QByteArray>("left");

        QTest::newRow("written") << "echo newer > a.css"_ba
                                 << "newer\n"_ba;
        QTest::newRow("replaced") << "cp -p a.css b; mv b a.css"_ba
                                  << "a { b: c }\n"_ba;
        QTest::newRow("removed") << "rm a.css"_ba
                                 << "(cannot be read)"_ba;
    }

    void aSourceThatIsChangedMeanwhileStays()
    {
        QFETCH(const QByteArray, change);
        QVERIFY(writeFile(path(u"esbuild"_s), "#!/bin/sh\ncat > /dev/null\ncd '" +
                                                  QFile::encodeName(m_folder->path()) + "'\n" + change +
                                                  "\necho x\n"));
        const EntryResult result = run(u"a.css"_s);
        QCOMPARE(result.reason(), u"the source was changed meanwhile"_s);
        QVERIFY(result.isUntouched);
        QTEST(readFile(path(u"a.css"_s)), "left");
        QCOMPARE(names().filter(u"brevant"_s), QStringList());
    }

    void somebodysEsbuildThatMakesNothingIsRefused()
    {
        QVERIFY(writeFile(path(u"esbuild"_s), "#!/bin/sh\ncat > /dev/null\n"));
        QCOMPARE(run(u"a.css"_s).reason(), path(u"esbuild"_s) + u" made an empty text of it"_s);
        QCOMPARE(readFile(path(u"a.css"_s)), "a { b: c }\n"_ba);
        QVERIFY(writeFile(path(u"a.css"_s), " \n"));
        QCOMPARE(run(u"a.css"_s).reason(), QString());
    }

    void whatIsNoFileIsNotWrittenInto()
    {
        QVERIFY(::mkfifo(QFile::encodeName(path(u"a.min.css"_s)), 0600) == 0);
        QVERIFY(::link(QFile::encodeName(path(u"a.min.css"_s)), QFile::encodeName(path(u"b"_s))) == 0);
        const Descriptor reader = openFile(QFile::encodeName(path(u"b"_s)), O_RDONLY);
        const EntryResult result = run(u"a.min.css"_s);
        QCOMPARE(result.reason(), u"the output could not be written: Invalid argument"_s);
        QVERIFY(!result.isUntouched);
    }

    void aFileWithAnAccessListIsWrittenInto()
    {
        const QByteArray file = QFile::encodeName(path(u"a.css"_s));
        // Of the owner, one more user, the group, the mask and all others, as acl(5) and the kernel have
        // them.
        const QByteArray list = QByteArray::fromHex("0200000001000600ffffffff"
                                                    "02000600fe000000"
                                                    "04000400ffffffff"
                                                    "10000600ffffffff"
                                                    "20000400ffffffff");
        if (::setxattr(file.constData(), "system.posix_acl_access", list.constData(),
                       static_cast<std::size_t>(list.size()), 0) != 0)
            QSKIP("no access control lists here");
        QVERIFY(isWrittenInto(path(u"a.css"_s)));
        QCOMPARE(run(u"a.css"_s).outcome, Outcome::Done);
        QVERIFY(isWrittenInto(path(u"a.css"_s)));
    }

    void aSourceThatIsNoFileIsRefused()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder.css"_s));
        QCOMPARE(run(u"a.min.css"_s, u"folder.css"_s).reason(), u"the source is a folder"_s);
        QCOMPARE(run(u"a.min.css"_s, u"none.css"_s).reason(),
                 u"the source cannot be read: No such file or directory"_s);
        QVERIFY(::mkfifo(QFile::encodeName(path(u"pipe.css"_s)), 0600) == 0);
        QCOMPARE(run(u"a.min.css"_s, u"pipe.css"_s).reason(),
                 u"the source cannot be read: it is not a regular file"_s);
    }

    void copiesHaveModeAndTimeOfTheOutput()
    {
        QVERIFY(writeFile(path(u"a.min.css.gz"_s), "old"));
        QVERIFY(setMode(path(u"a.css"_s), 0640));
        EntryResult result = run(u"a.min.css"_s);
        result = makeAllCopies(result);
        QCOMPARE(result.outcome, m_hasBrotli ? Outcome::Done : Outcome::NoBrotliCopy);
        QStringList copies{u"a.min.css.gz"_s};
        if (m_hasBrotli)
            copies.append(u"a.min.css.br"_s);
        for (const QString &name : copies) {
            const bool isGzip = name.endsWith(u"gz"_s);
            QCOMPARE(modeOf(path(name)), 0640u);
            QCOMPARE(QFileInfo(path(name)).lastModified(), QFileInfo(path(u"a.min.css"_s)).lastModified());
            QCOMPARE(isGzip ? result.gzipSize : result.brotliSize, QFileInfo(path(name)).size());
            QCOMPARE(unpacked(isGzip ? u"/usr/bin/gzip"_s : Tools::brotli(), path(name)), "a{b:c}"_ba);
        }
    }

    void aCopyReplacesALink()
    {
        QVERIFY(writeFile(path(u"mine"_s), "mine"));
        QVERIFY(makeLink(u"mine"_s, path(u"a.min.css.gz"_s)));
        EntryResult result = run(u"a.min.css"_s);
        makeCompressedCopies(true, false, {}, stop, result);
        QCOMPARE(result.outcome, Outcome::Done);
        QVERIFY(!QFileInfo(path(u"a.min.css.gz"_s)).isSymLink());
        QCOMPARE(readFile(path(u"mine"_s)), "mine"_ba);
    }

    /// What else may have become of the output meanwhile is not in them.
    void copiesAreMadeOfWhatWasWritten()
    {
        EntryResult result = run(u"a.min.css"_s);
        makeCompressedCopies(true, false, "known"_ba, stop, result);
        QCOMPARE(unpacked(u"/usr/bin/gzip"_s, path(u"a.min.css.gz"_s)), "known"_ba);
    }

    void aCopyThatCannotBeMadeIsSaid()
    {
        QVERIFY(QDir(m_folder->path()).mkpath(u"a.min.css.gz/full"_s));
        EntryResult result = run(u"a.min.css"_s);
        makeCompressedCopies(true, false, {}, stop, result);
        QCOMPARE(result.reason(), u"the gzip copy could not be made"_s);
        QVERIFY(!result.gzipSize);
        QCOMPARE(readFile(path(u"a.min.css"_s)), "a{b:c}"_ba);
    }

    void aSourceMapLiesBesideItsOutput()
    {
        const QByteArray map = QByteArray(R"({"version":3,"sources":["<stdin>"]})").toBase64();
        QVERIFY(writeFile(path(u"esbuild"_s), "#!/bin/sh\ncat > /dev/null\necho 'a{}'\necho '/*# "
                                              "sourceMappingURL=data:application/json;base64," +
                                                  map + " */'\n"));
        m_options.makeSourceMap = true;
        QVERIFY(QDir(m_folder->path()).mkdir(u"out"_s));
        QCOMPARE(run(u"out/a.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"out/a.css"_s)), "a{}\n/*# sourceMappingURL=a.css.map */"_ba);
        QCOMPARE(readFile(path(u"out/a.css.map"_s)),
                 R"({"file":"a.css","sources":["../a.css"],"version":3})"_ba);

        // A link there may lead to a source.
        QVERIFY(QFile::remove(path(u"out/a.css.map"_s)));
        QVERIFY(makeLink(u"../a.css"_s, path(u"out/a.css.map"_s)));
        QVERIFY(setMode(path(u"a.css"_s), 0640));
        QCOMPARE(run(u"out/a.css"_s).outcome, Outcome::Done);
        QCOMPARE(readFile(path(u"a.css"_s)), "a { b: c }\n"_ba);
        QCOMPARE(modeOf(path(u"out/a.css.map"_s)), 0640u);
        QVERIFY(QFileInfo(path(u"out/a.css.map"_s)).lastModified().secsTo(QDateTime::currentDateTime()) < 60);

        QVERIFY(QDir(m_folder->path()).mkdir(u"out/b.css.map"_s));
        QCOMPARE(run(u"out/b.css"_s).reason(), u"the output could not be written: Is a directory"_s);
        QVERIFY(!QFileInfo::exists(path(u"out/b.css"_s)));
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    [[nodiscard]] EntryResult run(const QString &output, const QString &source = u"a.css"_s)
    {
        EntryResult result = resultWithoutRun(path(source), path(output), Outcome::NotSafe, {});
        m_written =
            runModernEntry(*kindOf(source), m_options, tools, filters, isWrittenInto(path(output)), result);
        return result;
    }

    [[nodiscard]] EntryResult makeAllCopies(EntryResult result) const
    {
        makeCompressedCopies(true, true, {}, stop, result);
        return result;
    }

    const bool m_hasBrotli = QFileInfo(Tools::brotli()).isExecutable();
    std::unique_ptr<QTemporaryDir> m_folder;
    ModernOptions m_options;
    std::optional<QByteArray> m_written; ///< by the last run
};

BREVANT_TEST(tst_ModernEntry, QCoreApplication)
#include "tst_ModernEntry.moc"
