// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewReader.h"
#include "settings/Encodings.h"
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewFiles.h"

#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using State = PreviewContent::State;

namespace {

bool never()
{
    return false;
}

PreviewContent contentOf(const QString &path, const QString &encoding = u"utf-8"_s)
{
    return readPreview(path, encoding, never).value();
}

/// The text without the line feeds that were put in.
QByteArray unfolded(const PreviewContent &content)
{
    QByteArray text = content.text;
    for (auto fold = content.folds.rbegin(); fold != content.folds.rend(); ++fold) {
        if (text[*fold] != '\n')
            return "no line feed at a fold";
        text[*fold] = '\v';
    }
    for (auto mark = content.marks.rbegin(); mark != content.marks.rend(); ++mark) {
        if (QByteArrayView(text).sliced(*mark, leftToRightMark.size()) != leftToRightMark)
            return "no mark where one is said to be";
        text.remove(*mark, leftToRightMark.size());
    }
    text.replace("\v", "");
    return text;
}

} // namespace

/// What is read of a file, and what is said of it.
class tst_PreviewReader final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decodes_data()
    {
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("hasInvalidBytes");
        const auto row = [](const char *name, const char *encoding, const char *hex, const QString &text,
                            bool invalid = false) {
            QTest::newRow(name) << QString::fromLatin1(encoding) << QByteArray::fromHex(hex) << text
                                << invalid;
        };
        // The bytes are what iconv writes.
        row("utf-8", "utf-8", "c3a9e6bca2f09f9880", u"é漢😀"_s);
        row("gb2312", "gb2312", "babad7d6", u"汉字"_s);
        row("gbk", "gbk", "9d6880d7d6", u"漢€字"_s);
        row("gb18030", "gb18030", "baba9439fc36", u"汉😀"_s);
        row("big5", "big5", "ba7ea672", u"漢字"_s);
        row("big5-hkscs", "big5-hkscs", "ba7ea672", u"漢字"_s);
        row("shift-jis", "shift-jis", "8abf8e9a836583588367", u"漢字テスト"_s);
        row("iso-2022-jp", "iso-2022-jp", "611b244234413b7a1b284262", u"a漢字b"_s);
        row("iso-2022-kr", "iso-2022-kr", "1b242943610e4751315b0f62", u"a한글b"_s);
        row("iso-8859-1", "iso-8859-1", "e9a4ff", u"é¤ÿ"_s);
        row("iso-8859-15", "iso-8859-15", "e9a4ff", u"é€ÿ"_s);
        row("byte-order mark", "utf-8", "efbbbf61", u"a"_s);
        row("mark in the middle", "utf-8", "61efbbbf", u"a\uFEFF"_s);
        row("an unknown name", "utf-16", "c3a9", u"é"_s);
        row("Latin-1 as utf-8", "utf-8", "636166e92e", u"caf\uFFFD."_s, true);
        row("cut off utf-8", "utf-8", "61e6bc", u"a\uFFFD"_s, true);
        row("cut off shift-jis", "shift-jis", "618a", u"a\uFFFD"_s, true);
        row("one bad byte in gb18030", "gb18030", "61ff62", u"a\uFFFDb"_s, true);
        row("a lone shift-jis lead", "shift-jis", "618500", u"-"_s, true);
    }

    void decodes()
    {
        QFETCH(QString, encoding);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QFETCH(bool, hasInvalidBytes);
        if (bytes.contains('\0')) // a file with such a byte is no text
            bytes.replace('\0', '\x1F');
        const PreviewContent content = contentOf(m_files.add(u"a.css"_s, bytes), encoding);
        QCOMPARE(content.state, State::Text);
        QCOMPARE(content.hasInvalidBytes, hasInvalidBytes);
        if (text != "-"_L1)
            QCOMPARE(content.text, text.toUtf8()); // a text would lose the byte-order mark
        else
            QVERIFY(QString::fromUtf8(content.text).startsWith(u"a\uFFFD"_s));
    }

    void everyEncodingIsKnown()
    {
        // A name that fell back to UTF-8 would show this byte as invalid or as another character.
        const QString path = m_files.add(u"a.css"_s, QByteArray::fromHex("c3a9"));
        for (const Encoding &encoding : allEncodings) {
            const bool isUtf8 = encoding.name == "utf-8"_L1;
            QVERIFY2((contentOf(path, encoding.name).text == QByteArray::fromHex("c3a9")) == isUtf8,
                     encoding.name.data());
        }
    }

    void sentences_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<State>("state");
        QTest::addColumn<QString>("sentence");
        const QString loop = m_files.path(u"loop.css"_s);
        QCOMPARE(::symlink(qPrintable(loop), qPrintable(loop)), 0);
        const QString file = m_files.add(u"text.css"_s, "a");
        QTest::newRow("text") << file << State::Text << QString();
        QTest::newRow("empty") << m_files.add(u"empty.css"_s, "") << State::Empty << u"This file is empty."_s;
        QTest::newRow("missing") << m_files.path(u"none.css"_s) << State::Missing
                                 << u"This file does not exist."_s;
        QTest::newRow("below a file")
            << file + u"/a.css"_s << State::Missing << u"This file does not exist."_s;
        QTest::newRow("loop of links")
            << loop << State::Unreadable << u"This file cannot be read: Too many levels of symbolic links."_s;
        QTest::newRow("read error") << u"/proc/self/mem"_s << State::Unreadable
                                    << u"This file cannot be read: Input/output error."_s;
        QTest::newRow("folder") << m_files.path({}) << State::Folder << u"This is a folder."_s;
        QTest::newRow("device") << u"/dev/zero"_s << State::Special
                                << u"This is not an ordinary file, so it is not opened."_s;
        QTest::newRow("binary") << m_files.add(u"binary.css"_s, QByteArray("a\0b", 3)) << State::Binary
                                << u"This file is not text."_s;
    }

    void sentences()
    {
        QFETCH(QString, path);
        QFETCH(State, state);
        QFETCH(QString, sentence);
        const PreviewContent content = contentOf(path);
        QCOMPARE(content.state, state);
        QCOMPARE(previewSentence(content), sentence);
        QCOMPARE(content.path, path);
        QVERIFY(state == State::Text || content.text.isEmpty());
    }

    void pipeIsNotOpened()
    {
        const QString path = m_files.path(u"pipe.css"_s);
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
        QCOMPARE(contentOf(path).state, State::Special);
    }

    void countsLines_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("lines");
        QTest::newRow("no end") << QByteArray("a") << qint64(1);
        QTest::newRow("one end") << QByteArray("a\n") << qint64(1);
        QTest::newRow("last without end") << QByteArray("a\nb") << qint64(2);
        QTest::newRow("empty lines") << QByteArray("\n\n\n") << qint64(3);
        QTest::newRow("Windows") << QByteArray("a\r\nb\r\n") << qint64(2);
        QTest::newRow("old Macintosh") << QByteArray("a\rb\r") << qint64(2);
        // The pair of ends is read in two blocks.
        QTest::newRow("pair cut in two") << QByteArray(64 * 1024 - 1, 'a') + "\r\nb" << qint64(2);
        QTest::newRow("beyond what is shown") << QByteArray("ab\n").repeated(500'000) << qint64(500'000);
    }

    void countsLines()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, lines);
        QCOMPARE(contentOf(m_files.add(u"a.css"_s, bytes)).lines, std::optional(lines));
    }

    void limit()
    {
        const QByteArray line("0123456789abcde\n");
        const QByteArray exact = line.repeated(previewLimit / line.size());
        PreviewContent content = contentOf(m_files.add(u"a.css"_s, exact));
        QCOMPARE(content.text, exact);
        QCOMPARE(content.shown, previewLimit);
        QCOMPARE(previewNotice(content), QString());

        content = contentOf(m_files.add(u"a.css"_s, exact + line));
        QCOMPARE(content.text, exact);
        QCOMPARE(content.shown, previewLimit);
        QCOMPARE(content.size, previewLimit + line.size());
        QVERIFY(content.lines);

        // A file as large as this is not read to its end.
        QFile file(m_files.add(u"a.css"_s, exact));
        QVERIFY(file.resize(5 * 1000 * previewLimit));
        content = contentOf(file.fileName());
        QCOMPARE(content.text, exact);
        QVERIFY(!content.lines);
        QCOMPARE(previewNotice(content), u"Showing the first 1 MB of 5 GB."_s);
    }

    void limitInsideACharacter()
    {
        // The last byte within the limit is the first one of a character.
        const QByteArray text = "aaa" + QByteArray("é\n").repeated(previewLimit / 2);
        QCOMPARE(text[previewLimit - 1], '\xC3');
        const PreviewContent content = contentOf(m_files.add(u"a.css"_s, text));
        QVERIFY(!content.hasInvalidBytes);
        QVERIFY(text.startsWith(content.text));
        QVERIFY(content.text.size() >= previewLimit - 1);
    }

    void folds_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isFolded");
        const auto length = [](int more) { return previewLongestLine + more; };
        QTest::newRow("longest line") << QByteArray(length(0), 'a') << false;
        QTest::newRow("too long") << QByteArray(length(1), 'a') << true;
        QTest::newRow("rules") << oneLineOfCss(10'000) << true;
        QTest::newRow("second line") << "short\n" + QByteArray(length(1), 'a') + "\nshort\n" << true;
        QTest::newRow("Windows") << "short\r\n" + QByteArray(length(1), ' ') + "\r\n" << true;
        QTest::newRow("pairs of units") << QByteArray("😀").repeated(length(0)) << true;
        QTest::newRow("wide") << QByteArray("漢").repeated(length(1)) << true;
        QTest::newRow("from right to left") << QByteArray("אב ").repeated(previewLongestMixedLine) << true;
        QTest::newRow("odd wide") << "a" + QByteArray("漢").repeated(length(1)) << true;
    }

    void folds()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isFolded);
        const PreviewContent content = contentOf(m_files.add(u"a.css"_s, text));
        QCOMPARE(!content.folds.empty(), isFolded);
        QCOMPARE(unfolded(content), text);
        QVERIFY(!content.hasInvalidBytes);
        for (const QByteArray &line : content.text.split('\n')) {
            const QString characters = QString::fromUtf8(line);
            QVERIFY(!characters.contains(QChar::ReplacementCharacter));
            QVERIFY(characters.size() <= (isFolded ? previewFoldedLine : previewLongestLine));
        }
        QCOMPARE(previewNotice(content).contains(u"folded"_s), isFolded);
        QCOMPARE(content.lines, std::optional<qint64>(text.count('\n') + (text.endsWith('\n') ? 0 : 1)));
    }

    void footer()
    {
        PreviewContent content;
        content.state = State::Text;
        content.encoding = u"gbk"_s;
        content.size = 12345;
        content.lines = 12;
        const QString dot = u"  ·  "_s;
        QCOMPARE(previewFooter(content), u"12.3 kB"_s + dot + u"12 lines"_s + dot + u"gbk"_s);
        content.lines = 1;
        content.size = 1;
        content.modified = QDateTime::fromSecsSinceEpoch(1'000'000'000);
        const QStringList parts = previewFooter(content).split(dot);
        QCOMPARE(parts.size(), 4);
        QCOMPARE(parts[0], u"1 byte"_s);
        QCOMPARE(parts[1], u"1 line"_s);
        QVERIFY(parts[3].startsWith(u"Modified "_s));
        QVERIFY(parts[3].contains(u"2001"_s));
        content.state = State::Empty;
        content.size = 0;
        QVERIFY(previewFooter(content).startsWith(u"0 bytes"_s + dot + u"Modified "_s));
        content.state = State::Folder;
        QVERIFY(previewFooter(content).startsWith(u"Modified "_s));
        QCOMPARE(previewFooter(contentOf(m_files.path(u"none.css"_s))), QString());
    }

    void notice()
    {
        PreviewContent content;
        content.state = State::Text;
        content.encoding = u"utf-8"_s;
        content.size = 10 * previewLimit;
        content.shown = previewLimit;
        QCOMPARE(previewNotice(content), u"Showing the first 1 MB of 10 MB."_s);
        content.shown = content.size;
        content.hasInvalidBytes = true;
        QCOMPARE(previewNotice(content), u"Bytes that are not valid in utf-8 are shown as \uFFFD."_s);
        content.hasInvalidBytes = false;
        content.folds = {80};
        QCOMPARE(previewNotice(content), u"Long lines are folded."_s);
    }

    void cancelled()
    {
        const QString path = m_files.add(u"a.css"_s, oneLineOfCss(previewLimit));
        int asked = 0;
        const auto third = [&asked] { return ++asked == 3; };
        QVERIFY(!readPreview(path, u"utf-8"_s, third));
        QCOMPARE(asked, 3);
    }

private:
    PreviewFiles m_files;
};

BREVANT_TEST(tst_PreviewReader, QCoreApplication)
#include "tst_PreviewReader.moc"
