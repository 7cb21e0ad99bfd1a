// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/engine/Decoded.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

class tst_TextFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void golden_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("expected");

        QFile file(u"" TEST_DATA "/combine/golden.txt"_s);
        QVERIFY2(file.open(QIODevice::ReadOnly), "golden.txt");
        int number = 0;
        while (!file.atEnd()) {
            const QList<QByteArray> fields = file.readLine().trimmed().split(' ');
            ++number;
            if (fields.first() == "#" || fields.first() == "combined")
                continue;
            QTest::addRow("%d %s %s", number, fields[0].constData(), fields[1].constData())
                << QString::fromLatin1(fields[0]) << textEncodingNamed(QString::fromLatin1(fields[1]))
                << QByteArray::fromHex(fields[2]) << fields[3];
        }
        QVERIFY(number > 60);
    }

    void golden()
    {
        QFETCH(QString, what);
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, expected);

        const QString source = m_folder.filePath(u"source"_s);
        const QString target = m_folder.filePath(u"target"_s);
        QVERIFY(writeFile(source, bytes));
        QFile::remove(target);
        TextCodec decoder(encoding);
        TextFile file(target, encoding);
        const Decoded whole = decoded(decoder, bytes);
        const auto error = file.appendFile(source);

        if (what == "valid"_L1) {
            QVERIFY(!whole.fault);
            QCOMPARE(whole.text, QString::fromUtf8(QByteArray::fromHex(expected)));
            QByteArray encoded;
            TextCodec encoder(encoding);
            QVERIFY(encoder.encode(whole.text, true, encoded));
            QCOMPARE(encoded, bytes);
            QVERIFY(!error);
            QCOMPARE(file.commit(), QString());
            QCOMPARE(readFile(target), bytes);
            return;
        }
        const bool truncated = what == "truncated"_L1;
        QVERIFY(whole.fault);
        QCOMPARE(whole.fault->position, expected.toLongLong());
        QCOMPARE(whole.fault->kind, truncated ? TextFault::Kind::Truncated : TextFault::Kind::Invalid);
        QVERIFY(error);
        QCOMPARE(error->position, expected.toLongLong());
        QCOMPARE(error->path, source);
        QCOMPARE(error->reason.startsWith("The text ends in the middle of"_L1), truncated);
    }

    void damageInLongTexts_data() { golden_data(); }

    void damageInLongTexts()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, bytes);

        // Bytes changed at random places are good or bad alike wherever they stand in a long text.
        QRandomGenerator random(2026);
        TextCodec decoder(encoding);
        for (int round = 0; round < 20; ++round) {
            QByteArray changed = bytes;
            for (int changes = round % 3; changes > 0; --changes)
                changed[random.bounded(changed.size())] = static_cast<char>(random.bounded(256));
            const Decoded alone = decoded(decoder, changed);
            for (const int before : {8150, 8189, 8190, 8191, 8192, 16380}) {
                const Decoded behind = decoded(decoder, QByteArray(before, 'x') + changed);
                QCOMPARE(behind.fault.has_value(), alone.fault.has_value());
                if (alone.fault) {
                    QCOMPARE(behind.fault->position, alone.fault->position + before);
                    QCOMPARE(behind.fault->kind, alone.fault->kind);
                } else {
                    QCOMPARE(behind.text, QString(before, u'x') + alone.text);
                }
            }
        }
    }

    void byteOrderMark_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("expected");

        const QByteArray utf8 = "\xEF\xBB\xBF"_ba;
        const QByteArray gb18030 = "\x84\x31\x95\x33"_ba;
        QTest::newRow("utf-8") << TextEncoding::Utf8 << utf8 + "a"
                               << "a"_ba;
        QTest::newRow("utf-8 alone") << TextEncoding::Utf8 << utf8 << QByteArray();
        QTest::newRow("utf-8, only the first") << TextEncoding::Utf8 << utf8 + utf8 + "a" << utf8 + "a";
        QTest::newRow("utf-8, not at the start") << TextEncoding::Utf8 << "a" + utf8 << "a" + utf8;
        QTest::newRow("gb18030") << TextEncoding::Gb18030 << gb18030 + "a"
                                 << "a"_ba;
        QTest::newRow("gb18030, only the first") << TextEncoding::Gb18030 << gb18030 + gb18030 << gb18030;
        QTest::newRow("gb18030, not at the start") << TextEncoding::Gb18030 << "a" + gb18030 << "a" + gb18030;
        QTest::newRow("empty") << TextEncoding::Utf8 << QByteArray() << QByteArray();
        QTest::newRow("empty gbk") << TextEncoding::Gbk << QByteArray() << QByteArray();
    }

    void byteOrderMark()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, expected);

        const QString source = m_folder.filePath(u"marked"_s);
        const QString target = m_folder.filePath(u"unmarked"_s);
        QVERIFY(writeFile(source, bytes));
        TextFile file(target, encoding);
        QVERIFY(!file.appendFile(source));
        QVERIFY(!file.appendFile(source)); // each file has its own start
        QCOMPARE(file.commit(), QString());
        QCOMPARE(readFile(target), expected + expected);
    }

    void encoderRefuses_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QString>("text");
        QTest::newRow("gb2312") << TextEncoding::Gb2312 << u"a繁體"_s;
        QTest::newRow("gbk") << TextEncoding::Gbk << u"a한"_s;
        QTest::newRow("big5") << TextEncoding::Big5 << u"a简"_s;
        QTest::newRow("big5-hkscs") << TextEncoding::Big5Hkscs << u"a한"_s;
        QTest::newRow("shift-jis") << TextEncoding::ShiftJis << u"a한"_s;
        QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << u"a한"_s;
        QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << u"a😀"_s;
        QTest::newRow("invisible") << TextEncoding::Big5 << u"a\u200B"_s;
        QTest::newRow("half a pair") << TextEncoding::Utf8 << u"a"_s.append(QChar(0xD800)).append(u'b');
    }

    void encoderRefuses()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QString, text);

        QByteArray bytes;
        QVERIFY(!TextCodec(encoding).encode(text, true, bytes));

        const QString target = m_folder.filePath(u"refused"_s);
        QVERIFY(writeFile(target, "old"));
        TextFile file(target, encoding);
        file.append(text);
        file.append(u"good");
        QVERIFY(!file.commit().isEmpty());
        QCOMPARE(readFile(target), "old"_ba);
    }

    void shiftsAndHeader()
    {
        QByteArray bytes;
        TextCodec korean(TextEncoding::Iso2022Kr);
        QVERIFY(korean.encode(u"a", false, bytes));
        QVERIFY(korean.encode(u"가", false, bytes));
        QVERIFY(korean.encode(u"\n가", true, bytes));
        QCOMPARE(bytes, "\x1b$)Ca\x0e\x30\x21\x0f\n\x0e\x30\x21\x0f"_ba);

        bytes.clear();
        TextCodec japanese(TextEncoding::Iso2022Jp);
        QVERIFY(japanese.encode(u"あ", false, bytes));
        QVERIFY(!bytes.endsWith("\x1b(B"));
        QVERIFY(japanese.encode({}, true, bytes));
        QCOMPARE(bytes, "\x1b$B$\"\x1b(B"_ba);

        const QString target = m_folder.filePath(u"shifted"_s);
        TextFile file(target, TextEncoding::Iso2022Jp);
        file.append(u"あ");
        QCOMPARE(file.commit(), QString());
        QCOMPARE(readFile(target), bytes);
    }

    void longFiles_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QString>("unit");
        QTest::newRow("utf-8") << TextEncoding::Utf8 << u"漢😀é"_s;
        QTest::newRow("gbk") << TextEncoding::Gbk << u"a简体"_s;
        QTest::newRow("gb18030") << TextEncoding::Gb18030 << u"😀简é"_s;
        QTest::newRow("shift-jis") << TextEncoding::ShiftJis << u"ｶ表"_s;
        QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << u"日本a"_s;
        QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << u"한국a"_s;
    }

    void longFiles()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QString, unit);

        // A byte more each time, so that the ends of the buffers fall into every place of a character.
        const QString source = m_folder.filePath(u"long"_s);
        const QString target = m_folder.filePath(u"copy"_s);
        for (int shift = 0; shift < 12; ++shift) {
            QByteArray bytes;
            const QString text = QString(shift, u'x') + unit.repeated(250000);
            QVERIFY(TextCodec(encoding).encode(text, true, bytes));
            QVERIFY(bytes.size() > 2 * 256 * 1024);
            QVERIFY(writeFile(source, bytes));
            TextFile file(target, encoding);
            QVERIFY(!file.appendFile(source));
            QCOMPARE(file.commit(), QString());
            QVERIFY(readFile(target) == bytes);

            const qsizetype bad = bytes.size() - 7 - shift;
            bytes = bytes.first(bad).append('\xff').append("tail");
            QVERIFY(writeFile(source, bytes));
            TextCodec decoder(encoding);
            const std::optional<TextFault> fault = decoded(decoder, bytes).fault;
            const auto error = TextFile(target, encoding).appendFile(source);
            QVERIFY(fault && error);
            QCOMPARE(error->position, fault->position);
            QVERIFY(fault->position > bad - 4 && fault->position <= bad);
        }
    }

    void appendedTextIsEncoded()
    {
        const QString target = m_folder.filePath(u"appended"_s);
        TextFile file(target, TextEncoding::ShiftJis);
        file.append(u"表");
        file.append(u"");
        file.append(u"\n");
        QVERIFY(!QFile::exists(target));
        QCOMPARE(file.commit(), QString());
        QCOMPARE(readFile(target), "\x95\x5c\n"_ba);
    }

    void unwritableTextLeavesTheFile()
    {
        const QString source = m_folder.filePath(u"good"_s);
        QVERIFY(writeFile(source, "good"));
        TextFile file(m_folder.filePath(u"no/such/folder"_s), TextEncoding::Utf8);
        QVERIFY(!file.appendFile(source));
        QVERIFY(file.appendFile(m_folder.path())); // read and checked although nothing can be written
        QVERIFY(!file.commit().isEmpty());
    }

    void errorIsOneLine()
    {
        const TextFileError error{u"/w/a\nb\x1b.js"_s, 12, u"Not valid UTF-8"_s};
        QCOMPARE(error.message(), u"/w/a?b?.js: byte 12: Not valid UTF-8"_s);
    }

private:
    QTemporaryDir m_folder;
};

BREVANT_TEST(tst_TextFile, QCoreApplication)
#include "tst_TextFile.moc"
