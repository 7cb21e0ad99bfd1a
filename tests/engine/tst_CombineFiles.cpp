// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using Outcome = CombineResult::Outcome;

class tst_CombineFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void refusal_data()
    {
        QTest::addColumn<std::vector<QString>>("entries");
        QTest::addColumn<std::optional<CombineAlert>>("expected");

        const auto row = [](const char *name, const QStringList &entries,
                            const std::optional<CombineAlert> &expected) {
            QTest::newRow(name) << std::vector<QString>(entries.begin(), entries.end()) << expected;
        };
        const auto list = [](const char *entries) { return QString::fromUtf8(entries).split(u' '); };
        const CombineAlert notice{u"Notice"_s, u"Please select 2 or more files to combine."_s};
        const CombineAlert mixed{u"Combine different kinds of files?"_s,
                                 u"No, please select only one kind of files at a time."_s};
        const CombineAlert html{
            u"Combine HTML files?"_s,
            u"Sorry, you can only combine CSS or JS files. Combine HTML files makes no scene."_s};
        const CombineAlert phtml{
            u"Combine PHTML files?"_s,
            u"Sorry, you can only combine CSS or JS files. Combine PHTML files makes no scene."_s};
        const CombineAlert php{
            u"Combine PHP files?"_s,
            u"Sorry, you can only combine CSS or JS files. Combine PHP files makes no scene."_s};

        row("none", {}, notice);
        row("one", list("/w/a.css"), notice);
        row("one html", list("/w/a.html"), notice);
        row("css", list("/w/a.css /w/b.css"), std::nullopt);
        row("js", list("/w/a.js /w/b.js /w/c.js"), std::nullopt);
        row("css in two cases", list("/w/a.css /w/b.CSS"), std::nullopt);
        row("a letter beyond ASCII", list("/w/a.css /w/b.c\xc5\xbfs"), mixed);
        row("css and js", list("/w/a.css /w/b.js"), mixed);
        row("mixed in the middle", list("/w/a.css /w/b.js /w/c.css"), mixed);
        row("mixed at the end", list("/w/a.js /w/b.js /w/c.css"), mixed);
        row("html and css", list("/w/a.html /w/b.css"), mixed);
        row("html", list("/w/a.html /w/b.html"), html);
        row("html, then capitals", list("/w/a.html /w/b.HTML"), html);
        row("capitals, then html", list("/w/a.HTML /w/b.html"), std::nullopt);
        row("HTML in capitals", list("/w/a.HTML /w/b.HTML"), std::nullopt);
        row("Html", list("/w/a.Html /w/b.html"), std::nullopt);
        row("phtml", list("/w/a.phtml /w/b.phtml"), phtml);
        row("PHTML in capitals", list("/w/a.PHTML /w/b.PHTML"), std::nullopt);
        row("php", list("/w/a.php /w/b.php"), php);
        row("PHP in capitals", list("/w/a.PHP /w/b.PHP"), std::nullopt);
        row("html and phtml", list("/w/a.html /w/b.phtml"), mixed);
        row("the sentinel as an extension", list("/w/a.NO /w/b.NO"), mixed);
        row("no in small letters", list("/w/a.no /w/b.no"), std::nullopt);
        row("min.css and css", list("/w/a.min.css /w/b.css"), std::nullopt);
    }

    void refusal()
    {
        QFETCH(std::vector<QString>, entries);
        QTEST(combineRefusal(entries), "expected");
    }

    void kind_data()
    {
        QTest::addColumn<std::vector<QString>>("entries");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *entries, const char *expected) {
            const QStringList list = QString::fromLatin1(entries).split(u' ');
            QTest::newRow(entries) << std::vector<QString>(list.begin(), list.end())
                                   << QString::fromLatin1(expected);
        };
        row("/w/a.css /w/b.CSS", "css");
        row("/w/a.CSS /w/b.css", "CSS");
        row("/w/a.HTML /w/b.HTML", "HTML");
        row("/w/a.js /w/b.js", "js");
        row("/w/a.css /w/b.js", "NO");
        row("/w/a.css /w/b.js /w/c.css", "NO");
        row("/w.css/a /w.css/b", "");
    }

    void kind()
    {
        QFETCH(std::vector<QString>, entries);
        QTEST(combineKind(entries), "expected");
    }

    void textsInOrder()
    {
        const QString x = write("a.js", "x");
        const QString y = write("b.js", "y");
        const QString ended = write("c.js", "one\n");
        const QString empty = write("d.js", "");
        const QString target = path("combined.js");

        const CombineResult result = combine({y, x}, target, TextEncoding::Utf8);
        QCOMPARE(result.outcome, Outcome::Written);
        QCOMPARE(result.errorText, QString());
        QCOMPARE(readFile(target), "y\nx\n"_ba);

        QCOMPARE(combine({ended, empty, x, x}, target, TextEncoding::Utf8).outcome, Outcome::Written);
        QCOMPARE(readFile(target), "one\n\n\nx\nx\n"_ba);
        QCOMPARE(leftovers(), QStringList());
    }

    void golden_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QByteArray>("expected");

        QFile file(u"" TEST_DATA "/combine/golden.txt"_s);
        QVERIFY2(file.open(QIODevice::ReadOnly), "golden.txt");
        int count = 0;
        while (!file.atEnd()) {
            const QList<QByteArray> fields = file.readLine().trimmed().split(' ');
            if (fields.first() != "combined")
                continue;
            ++count;
            QTest::newRow(fields[1].constData())
                << textEncodingNamed(QString::fromLatin1(fields[1])) << QByteArray::fromHex(fields[2])
                << QByteArray::fromHex(fields[3]) << QByteArray::fromHex(fields[4]);
        }
        QCOMPARE(count, 9);
    }

    void golden()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        const QString target = path("combined.css");
        const CombineResult result =
            combine({write("1.css", first), write("2.css", second)}, target, encoding);
        QCOMPARE(result.outcome, Outcome::Written);
        QTEST(readFile(target), "expected");
    }

    void westernChoiceIsUtf8()
    {
        const TextEncoding encoding = textEncodingNamed(u"iso-8859-1"_s);
        const QString good = write("a.css", "\xC3\xA9");
        const QString latin = write("b.css", "caf\xE9");
        const QString target = write("combined.css", "old");

        const CombineResult result = combine({good, latin}, target, encoding);
        QCOMPARE(result.outcome, Outcome::Aborted);
        QCOMPARE(result.errorText, latin + ": byte 3: The text ends in the middle of a UTF-8 character"_L1);
        QCOMPARE(readFile(target), "old"_ba);

        QCOMPARE(combine({good, good}, target, encoding).outcome, Outcome::Written);
        QCOMPARE(readFile(target), "\xC3\xA9\n\xC3\xA9\n"_ba);
    }

    void invalidFileAborts()
    {
        const QString good = write("a.js", QByteArray(3 * 1024 * 1024, 'x'));
        const QString bad = write("b.js", "ab\xFF"
                                          "cd");
        const QString target = write("combined.js", "old");

        for (const auto &paths :
             {std::vector{good, bad, good}, std::vector{bad, good}, std::vector{good, bad}}) {
            const CombineResult result = combine(paths, target, TextEncoding::Utf8);
            QCOMPARE(result.outcome, Outcome::Aborted);
            QCOMPARE(result.errorText, bad + ": byte 2: Not valid UTF-8"_L1);
            QCOMPARE(readFile(target), "old"_ba);
            QCOMPARE(combine(paths, path("new.js"), TextEncoding::Utf8).outcome, Outcome::Aborted);
            QVERIFY(!QFile::exists(path("new.js")));
            QCOMPARE(leftovers(), QStringList());
        }
    }

    void unreadableFileAborts_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind :
             {"missing", "folder", "fifo", "device", "dangling", "link to fifo", "forbidden"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void unreadableFileAborts()
    {
        QFETCH(QString, kind);
        QString source = path("source.js");
        const QByteArray name = QFile::encodeName(source);
        if (kind == u"folder") {
            QVERIFY(QDir().mkdir(source));
        } else if (kind == u"fifo") {
            QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        } else if (kind == u"device") {
            source = u"/dev/zero"_s;
        } else if (kind == u"dangling") {
            QVERIFY(QFile::link(path("nowhere"), source));
        } else if (kind == u"link to fifo") {
            QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
            QVERIFY(QFile::link(path("pipe"), source));
        } else if (kind == u"forbidden") {
            write("source.js", "text");
            QCOMPARE(::chmod(name.constData(), 0), 0);
            if (::access(name.constData(), R_OK) == 0)
                QSKIP("This user may read everything");
        }
        const QString good = write("good.js", "good");
        const QString target = write("combined.js", "old");
        const CombineResult result = combine({good, source}, target, TextEncoding::Utf8);
        QCOMPARE(result.outcome, Outcome::Aborted);
        QVERIFY2(result.errorText.startsWith(source + ": byte 0: "_L1), qPrintable(result.errorText));
        QCOMPARE(readFile(target), "old"_ba);
        QCOMPARE(leftovers(), QStringList());
    }

    void abortComesBeforeFailedWrite()
    {
        const QString good = write("a.js", QByteArray(1024 * 1024, 'x'));
        const QString bad = write("b.js", "\xFF");
        QCOMPARE(combine({good, bad}, path("no/such/folder.js"), TextEncoding::Utf8).outcome,
                 Outcome::Aborted);
    }

    void failedWrite_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("no folder") << u"no/such.js"_s;
        QTest::newRow("a folder") << u"folder.js"_s;
        QTest::newRow("a file as folder") << u"a.js/b.js"_s;
        QTest::newRow("a pipe") << u"pipe.js"_s;
    }

    void failedWrite()
    {
        QFETCH(QString, target);
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder.js"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.js")).constData(), 0600), 0);
        const QString source = write("a.js", QByteArray(1024 * 1024, 'x'));
        const QString whole = m_folder->filePath(target);
        const CombineResult result = combine({source, source}, whole, TextEncoding::Utf8);
        QCOMPARE(result.outcome, Outcome::WriteFailed);
        QVERIFY(result.errorText.startsWith(whole + ": "_L1));
        QCOMPARE(leftovers(), QStringList());
    }

    void ontoOneOfTheSources()
    {
        const QString first = write("a.js", "first");
        const QString second = write("b.js", "second");
        QCOMPARE(combine({first, second}, first, TextEncoding::Utf8).outcome, Outcome::Written);
        QCOMPARE(readFile(first), "first\nsecond\n"_ba);
        QCOMPARE(combine({first, second}, second, TextEncoding::ShiftJis).outcome, Outcome::Written);
        QCOMPARE(readFile(second), "first\nsecond\n\nsecond\n"_ba);
        QCOMPARE(readFile(first), "first\nsecond\n"_ba);
    }

    void linkAndModeStay()
    {
        const QString source = write("a.js", "x");
        const QString real = write("real.js", "old");
        const QString link = path("link.js");
        QCOMPARE(::chmod(QFile::encodeName(real).constData(), 0640), 0);
        QVERIFY(QFile::link(u"real.js"_s, link));
        QCOMPARE(combine({source, source}, link, TextEncoding::Utf8).outcome, Outcome::Written);
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readFile(real), "x\nx\n"_ba);
        QCOMPARE(modeOf(real), mode_t(0640));
    }

    void tildeIsHome()
    {
        write("a.js", "home");
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_folder->path()));
        const CombineResult result =
            combine({u"~/a.js"_s, path("a.js")}, path("combined.js"), TextEncoding::Utf8);
        qputenv("HOME", home);
        QCOMPARE(result.outcome, Outcome::Written);
        QCOMPARE(readFile(path("combined.js")), "home\nhome\n"_ba);
    }

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }

    QString write(const char *name, QByteArrayView bytes) const
    {
        if (!writeFile(path(name), bytes))
            qFatal("cannot write %s", name);
        return path(name);
    }

    QStringList leftovers() const
    {
        return QDir(m_folder->path()).entryList({u".brevant-*"_s}, QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

BREVANT_TEST(tst_CombineFiles, QCoreApplication)
#include "tst_CombineFiles.moc"
