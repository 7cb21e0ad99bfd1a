// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"
#include "engine/originals/RestoreSource.h"
#include "tests/TestClass.h"
#include "tests/engine/KeptTest.h"

using namespace brevant;
using namespace brevant::test;
using Restored = RestoredSource::Outcome;

/// Kept originals that are put back, or must not be.
class tst_RestoreSource final : public KeptTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUpKept(); }

    void theSourceIsAsBefore()
    {
        const QString source = addMarked(u"a.css"_s);
        const QString kept = minify(source).original;
        QVERIFY(setMode(source, 0640));
        const ino_t output = statusOf(source).st_ino;
        const RestoredSource restored = restoreSource(source, kept);
        QCOMPARE(restored.error, QString());
        QCOMPARE(restored.outcome, Restored::Restored);
        QCOMPARE(restored.lacks, QString());
        QCOMPARE(readFile(source), "copy"_ba);
        verifyMarks(source);
        QVERIFY(statusOf(source).st_ino != output); // in one step
        QCOMPARE(leftInFolder(), QStringList());
        QCOMPARE(namesInSite(), QStringList{u"a.css"_s});
        QCOMPARE(restoreSource(source, kept).error, u"it is not kept any more"_s);
    }

    void longAndEmptySources_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("long") << "copy" + QByteArray(3'000'000, 'x');
        QTest::newRow("all zeros") << "copy" + QByteArray(1 << 20, '\0');
    }

    void longAndEmptySources()
    {
        QFETCH(QByteArray, text);
        const QString source = add(u"a.css"_s, text);
        const QString kept = minify(source).original;
        QVERIFY(readFile(source) != text);
        QCOMPARE(restoreSource(source, kept).outcome, Restored::Restored);
        QVERIFY(readFile(source) == text);
    }

    void newerWorkStays_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *const what : {"edited", "edited in secret", "replaced", "emptied", "removed",
                                       "made a link", "made a folder", "folder made a link"})
            QTest::newRow(what) << QString::fromLatin1(what);
    }

    void newerWorkStays()
    {
        QFETCH(QString, what);
        const QString source = add(u"sub/a.css"_s, "copy");
        const QString kept = minify(source).original;
        const QString elsewhere = add(u"elsewhere/a.css"_s, readFile(source));
        const QByteArray found = change(what, source);
        const RestoredSource refused = restoreSource(source, kept);
        QCOMPARE(refused.outcome, Restored::Changed);
        QCOMPARE(readFile(source), found);
        QVERIFY(readFile(elsewhere).startsWith("minified"));
        QVERIFY(KeptOriginals::isThere(kept));
        if (what == u"made a folder")
            return;
        const RestoredSource beside = restoreBeside(source, kept);
        QCOMPARE(beside.error, QString());
        QCOMPARE(beside.outcome, Restored::Beside);
        QCOMPARE(beside.path, secondName(source));
        QCOMPARE(readFile(beside.path), "copy"_ba);
        QCOMPARE(readFile(source), found);
    }

    void secondNames_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("name");
        QTest::newRow("first") << u"/w/app.js"_s << 1 << u"/w/app.original.js"_s;
        QTest::newRow("second") << u"/w/app.js"_s << 2 << u"/w/app.original-2.js"_s;
        QTest::newRow("minified") << u"/w.d/a.min.css"_s << 1 << u"/w.d/a.min.original.css"_s;
        QTest::newRow("as long as can be") << u"/w/"_s + QString(243, u'a') + u".js"_s << 1
                                           << u"/w/"_s + QString(243, u'a') + u".original.js"_s;
        QTest::newRow("too long") << u"/w/"_s + QString(244, u'a') + u".js"_s << 2
                                  << u"/w/"_s + QString(241, u'a') + u".original-2.js"_s;
        QTest::newRow("two bytes a letter") << u"/w/"_s + QString(126, u'ü') + u".js"_s << 1
                                            << u"/w/"_s + QString(121, u'ü') + u".original.js"_s;
        QTest::newRow("four bytes a letter") << u"/w/"_s + u"😀"_s.repeated(63) + u".js"_s << 1
                                             << u"/w/"_s + u"😀"_s.repeated(60) + u".original.js"_s;
        QTest::newRow("no extension") << u"/w.d/app"_s << 1 << u"/w.d/app.original"_s;
    }

    void secondNames()
    {
        QFETCH(QString, source);
        QFETCH(int, number);
        QTEST(secondName(source, number), "name");
    }

    void aTakenSecondName()
    {
        const QString source = addMarked(u"a.css"_s);
        const QString kept = minify(source).original;
        const QString taken = add(u"a.original.css"_s, "taken");
        QVERIFY(makeLink(u"/nowhere"_s, path(u"site/a.original-2.css"_s)));
        const RestoredSource beside = restoreBeside(source, kept);
        QCOMPARE(beside.path, path(u"site/a.original-3.css"_s));
        QCOMPARE(readFile(beside.path), "copy"_ba);
        verifyMarks(beside.path);
        QCOMPARE(readFile(taken), "taken"_ba);
        QCOMPARE(namesInSite().size(), 4);
    }

    void aLongName()
    {
        const QString source = addMarked(QString(251, u'a') + u".css"_s);
        const RestoredSource beside = restoreBeside(source, minify(source).original);
        QCOMPARE(beside.path, path(u"site/"_s + QString(242, u'a') + u".original.css"_s));
        QCOMPARE(readFile(beside.path), "copy"_ba);
    }

    void otherNamesOfTheSource_data()
    {
        QTest::addColumn<bool>("isSymbolic");
        QTest::newRow("symbolic link") << true;
        QTest::newRow("hard link") << false;
    }

    void otherNamesOfTheSource()
    {
        QFETCH(bool, isSymbolic);
        const QString file = addMarked(u"a.css"_s);
        const QString link = path(u"site/link.css"_s);
        QVERIFY(isSymbolic ? makeLink(u"a.css"_s, link) : makeHardLink(file, link));
        const QString kept = minify(link).original;
        QVERIFY(KeptOriginals::isThere(kept));
        const RestoredSource restored = restoreSource(link, kept);
        QCOMPARE(restored.error, QString());
        QCOMPARE(restored.outcome, Restored::Restored);
        QCOMPARE(readFile(file), "copy"_ba);
        QCOMPARE(readFile(link), "copy"_ba);
        verifyMarks(file);
        QCOMPARE(QFileInfo(link).isSymLink(), isSymbolic);
        QCOMPARE(statusOf(file).st_nlink, isSymbolic ? 1U : 2U);
        QCOMPARE(leftInFolder(), QStringList());
    }

    void aLinkThatLeadsElsewhere()
    {
        const QString file = add(u"a.css"_s, "copy");
        const QString link = path(u"site/link.css"_s);
        QVERIFY(makeLink(u"a.css"_s, link));
        const QString kept = minify(link).original;
        const QByteArray output = readFile(file);
        const QString other = add(u"other.css"_s, output);
        QVERIFY(QFile::remove(link) && makeLink(u"other.css"_s, link));
        QCOMPARE(restoreSource(link, kept).outcome, Restored::Changed);
        QCOMPARE(readFile(other), output);
        QCOMPARE(readFile(file), output);
    }

    void tamperedCopies_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("error"); // its beginning
        const QString damaged = u"the copy of it is damaged"_s;
        const QString gone = u"it is not kept any more"_s;
        QTest::newRow("content") << u"content"_s << damaged;
        QTest::newRow("longer") << u"longer"_s << damaged;
        QTest::newRow("record") << u"record"_s << damaged;
        QTest::newRow("of another source") << u"another"_s << damaged;
        QTest::newRow("content removed") << u"removed"_s << gone;
        QTest::newRow("record removed") << u"no record"_s << gone;
        QTest::newRow("folder removed") << u"folder"_s << gone;
        QTest::newRow("a link") << u"link"_s << u"the copy of it cannot be used: "_s;
        QTest::newRow("a second name") << u"name"_s << u"the copy of it cannot be used: "_s;
        QTest::newRow("open to others") << u"mode"_s << u"the copy of it cannot be used: "_s;
    }

    void tamperedCopies()
    {
        QFETCH(QString, what);
        QFETCH(QString, error);
        const QString source = add(u"a.css"_s, "copy");
        const QString kept = minify(source).original;
        const QByteArray output = readFile(source);
        const QString another = minify(add(u"b.css"_s, "copy")).original;
        tamper(what, kept, another);
        for (const RestoredSource &failed : {restoreSource(source, kept), restoreBeside(source, kept)}) {
            QCOMPARE(failed.outcome, Restored::Failed);
            QVERIFY2(failed.error.startsWith(error), qPrintable(failed.error));
        }
        QCOMPARE(readFile(source), output);
        QCOMPARE(namesInSite(), (QStringList{u"a.css"_s, u"b.css"_s}));
    }

    void anotherRunIsAtWork()
    {
        const QString source = add(u"a.css"_s, "copy");
        const QString kept = minify(source).original;
        SafetyCopy run(m_tools.originals, m_stop);
        QCOMPARE(run.make(source, Danger::Exchanged), QString());
        const RestoredSource failed = restoreSource(source, kept);
        QCOMPARE(failed.outcome, Restored::Failed);
        QCOMPARE(failed.error, u"a run is at work on the source"_s);
        EntryResult result;
        run.finish(result, false);
        QCOMPARE(restoreSource(source, kept).outcome, Restored::Restored);
    }

    void anOutputThatCannotBeRead()
    {
        const QString source = add(u"a.css"_s, "copy");
        const QString elsewhere = add(u"elsewhere.css"_s, "output");
        KeptOriginals::Use use(*m_kept);
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(QFile::remove(source) && makeLink(elsewhere, source));
        EntryResult result;
        result.outcome = EntryResult::Outcome::Done;
        copy.finish(result, false, &use);
        QVERIFY(KeptOriginals::isThere(result.original));
        QCOMPARE(restoreSource(source, result.original).outcome, Restored::Changed);
        QCOMPARE(readFile(restoreBeside(source, result.original).path), "copy"_ba);
        QCOMPARE(readFile(elsewhere), "output"_ba);
    }

    void aFolderThatCannotBeWritten()
    {
        const OrdinaryUser user;
        const std::unique_ptr<QTemporaryDir> folder = user.makeFolder();
        if (!folder)
            QSKIP("no ordinary user here");
        m_tools.originals = {folder->filePath(u"originals"_s)};
        const QString source = folder->filePath(u"site/a.css"_s);
        QVERIFY(QDir(folder->path()).mkdir(u"site"_s) && writeFile(source, "copy"));
        KeptOriginals::Use use(*m_kept);
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(writeFile(source, "output"));
        EntryResult result;
        result.outcome = EntryResult::Outcome::Done;
        copy.finish(result, false, &use);
        QVERIFY(setMode(folder->filePath(u"site"_s), 0500));
        const RestoredSource beside = restoreBeside(source, result.original);
        QCOMPARE(beside.outcome, Restored::Failed);
        QVERIFY(!beside.error.isEmpty());
        QCOMPARE(restoreSource(source, result.original).error, QString()); // it is written into
        QCOMPARE(readFile(source), "copy"_ba);
        QVERIFY(setMode(folder->filePath(u"site"_s), 0700));
    }

    void aSourceThatCannotBeWritten()
    {
        const QString source = add(u"a.css"_s, "copy");
        const QString kept = minify(source).original;
        QVERIFY(setMode(source, 0));
        const RestoredSource restored = restoreSource(source, kept);
        if (::geteuid() == 0)
            QCOMPARE(restored.outcome, Restored::Restored);
        else
            QVERIFY(restored.outcome == Restored::Failed && !restored.error.isEmpty());
    }

private:
    void verifyMarks(const QString &path) const
    {
        const struct stat now = statusOf(path);
        QCOMPARE(now.st_mode & 07777U, 0604U);
        QCOMPARE(now.st_mtim.tv_sec, times[1].tv_sec);
        QCOMPARE(now.st_mtim.tv_nsec, times[1].tv_nsec);
    }

    [[nodiscard]] QStringList namesInSite() const
    {
        return QDir(path(u"site"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    /// What the user, or somebody else, does to the output. Returns what is in it then.
    [[nodiscard]] QByteArray change(const QString &what, const QString &source) const
    {
        const QByteArray bytes = QFile::encodeName(source);
        const struct stat before = statusOf(source);
        const QString folder = QFileInfo(source).path();
        QByteArray text = readFile(source);
        bool isDone = true;
        if (what == u"edited" || what == u"edited in secret") {
            text[0] = 'M';
            isDone = writeFile(source, text);
        } else if (what == u"replaced") {
            isDone = replaceFile(source, "newer");
        } else if (what == u"emptied") {
            isDone = writeFile(source, "");
        } else if (what == u"folder made a link") {
            isDone =
                QDir().rename(folder, folder + u".moved"_s) && makeLink(path(u"site/elsewhere"_s), folder);
        } else {
            isDone = QFile::remove(source);
        }
        if (what == u"edited in secret") {
            const std::array<timespec, 2> same{before.st_atim, before.st_mtim};
            ::utimensat(AT_FDCWD, bytes.constData(), same.data(), 0);
        } else if (what == u"made a link") {
            isDone = makeLink(path(u"site/elsewhere/a.css"_s), source);
        } else if (what == u"made a folder") {
            isDone = QDir().mkdir(source);
        }
        return isDone ? readFile(source) : "(not done)"_ba;
    }

    void tamper(const QString &what, const QString &kept, const QString &another) const
    {
        const QString record = recordOf(kept);
        QByteArray bytes = readFile(record);
        if (what == u"content" || what == u"longer") {
            QVERIFY(writeFile(kept, what == u"longer" ? "copycopy" : "Copy"));
        } else if (what == u"record") {
            bytes[100] = static_cast<char>(bytes[100] ^ 1);
            QVERIFY(writeFile(record, bytes));
        } else if (what == u"another") {
            QVERIFY(writeFile(record, readFile(recordOf(another))));
        } else if (what == u"removed" || what == u"link") {
            QVERIFY(QFile::remove(kept));
        } else if (what == u"no record") {
            QVERIFY(QFile::remove(record));
        } else if (what == u"folder") {
            QVERIFY(QDir(m_originals).removeRecursively());
        } else if (what == u"name") {
            QVERIFY(makeHardLink(kept, path(u"out/name"_s)));
        } else if (what == u"mode") {
            QVERIFY(setMode(kept, 0644));
        }
        if (what == u"link")
            QVERIFY(makeLink(add(u"../out/copy"_s, "copy"), kept));
    }
};

BREVANT_TEST(tst_RestoreSource, QCoreApplication)
#include "tst_RestoreSource.moc"
