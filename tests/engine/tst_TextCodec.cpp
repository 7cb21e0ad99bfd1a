// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/Decoded.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>

#include <iconv.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// The second opinion: the C library's converter.
class Iconv final {
public:
    explicit Iconv(const char *name) : m_handle(::iconv_open("UTF-16LE", name)) {}
    ~Iconv()
    {
        if (isOpen())
            ::iconv_close(m_handle);
    }
    Iconv(const Iconv &) = delete;
    Iconv &operator=(const Iconv &) = delete;

    [[nodiscard]] bool isOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    /// The text, or an empty one if the bytes are not valid.
    [[nodiscard]] QString decode(QByteArray bytes)
    {
        constexpr auto failed = static_cast<std::size_t>(-1);
        std::array<char16_t, 64> units;
        char *source = bytes.data();
        char *target = reinterpret_cast<char *>(units.data());
        auto sourceLeft = static_cast<std::size_t>(bytes.size());
        std::size_t targetLeft = sizeof units;
        ::iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        if (::iconv(m_handle, &source, &sourceLeft, &target, &targetLeft) == failed ||
            ::iconv(m_handle, nullptr, nullptr, &target, &targetLeft) == failed)
            return {};
        return QStringView(units.data(), reinterpret_cast<char16_t *>(target)).toString();
    }

private:
    iconv_t m_handle;
};

} // namespace

class tst_TextCodec final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodingOfName_data()
    {
        QTest::addColumn<std::optional<QString>>("name");
        QTest::addColumn<TextEncoding>("expected");

        const auto row = [](const char *name, TextEncoding expected) {
            QTest::newRow(name) << std::optional(QString::fromLatin1(name)) << expected;
        };
        row("utf-8", TextEncoding::Utf8);
        row("gb2312", TextEncoding::Gb2312);
        row("gbk", TextEncoding::Gbk);
        row("gb18030", TextEncoding::Gb18030);
        row("big5", TextEncoding::Big5);
        row("big5-hkscs", TextEncoding::Big5Hkscs);
        row("shift-jis", TextEncoding::ShiftJis);
        row("iso-2022-jp", TextEncoding::Iso2022Jp);
        row("iso-2022-kr", TextEncoding::Iso2022Kr);
        for (const char *other :
             {"iso-8859-1", "iso-8859-15", "GBK", "Big5", "Shift-JIS", "shift_jis", "gb2312 ", ""})
            row(other, TextEncoding::Utf8);
        QTest::newRow("no value") << std::optional<QString>() << TextEncoding::Utf8;
    }

    void encodingOfName()
    {
        QFETCH(std::optional<QString>, name);
        QTEST(textEncodingNamed(name), "expected");
    }

    void tablesAgreeWithIconv_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<int>("acceptedByOneOnly"); ///< double bytes whose validity is judged differently
        QTest::addColumn<int>("readDifferently");   ///< double bytes that are another character there

        QTest::newRow("gb2312") << TextEncoding::Gb2312 << "EUC-CN"_ba << 0 << 1;
        QTest::newRow("gbk") << TextEncoding::Gbk << "GBK"_ba << 0 << 0;
        QTest::newRow("gb18030") << TextEncoding::Gb18030 << "GB18030"_ba << 0 << 24;
        QTest::newRow("big5") << TextEncoding::Big5 << "BIG5"_ba << 0 << 0;
        QTest::newRow("big5-hkscs") << TextEncoding::Big5Hkscs << "BIG5-HKSCS"_ba << 10 << 47;
        QTest::newRow("shift-jis") << TextEncoding::ShiftJis << "CP932"_ba << 0 << 0;
    }

    void tablesAgreeWithIconv()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, table);
        Iconv iconv(table);
        if (!iconv.isOpen())
            QSKIP("This C library has not the table");

        TextCodec decoder(encoding);
        const auto ours = [&](const QByteArray &bytes) { return decodedWhole(decoder, bytes); };
        for (int byte = 1; byte < 256; ++byte) {
            const QByteArray bytes(1, static_cast<char>(byte));
            // The C library takes 80 for a character in Big5-HKSCS, which has none. The vendor's table of
            // Shift JIS moves three control characters.
            if ((encoding == TextEncoding::Big5Hkscs && byte == 0x80) ||
                (encoding == TextEncoding::ShiftJis && (byte == 0x1A || byte == 0x1C || byte == 0x7F)))
                continue;
            QCOMPARE(ours(bytes), iconv.decode(bytes));
        }
        int oneOnly = 0;
        int different = 0;
        for (int lead = 0x81; lead < 0x100; ++lead) {
            for (int trail = 0x21; trail < 0x100; ++trail) {
                const QByteArray bytes{
                    std::initializer_list<char>{static_cast<char>(lead), static_cast<char>(trail)}.begin(),
                    2};
                if (encoding == TextEncoding::Big5Hkscs && trail == 0x80)
                    continue;
                const QString here = ours(bytes);
                const QString there = iconv.decode(bytes);
                if (here.isEmpty() != there.isEmpty())
                    ++oneOnly;
                else if (here != there && trail != 0x7F)
                    ++different;
            }
        }
        QTEST(oneOnly, "acceptedByOneOnly");
        QTEST(different, "readDifferently");
    }

    void everyTextCanBeWrittenAgain_data()
    {
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("before"); ///< the two bytes
        for (const char *name : {"gb2312", "gbk", "gb18030", "big5", "big5-hkscs", "shift-jis"})
            QTest::newRow(name) << textEncodingNamed(QString::fromLatin1(name)) << QByteArray();
        QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << "\x1b$B"_ba;
        QTest::newRow("iso-2022-jp of 1978") << TextEncoding::Iso2022Jp << "\x1b$@"_ba;
        QTest::newRow("iso-2022-jp roman") << TextEncoding::Iso2022Jp << "\x1b(J"_ba;
        QTest::newRow("iso-2022-jp kana") << TextEncoding::Iso2022Jp << "\x1b(I"_ba;
        QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << "\x1b$)C\x0e"_ba;
    }

    void everyTextCanBeWrittenAgain()
    {
        QFETCH(TextEncoding, encoding);
        QFETCH(QByteArray, before);

        // A text that is read and cannot be written would lose the user the combined file.
        TextCodec decoder(encoding);
        TextCodec encoder(encoding);
        int valid = 0;
        for (int pair = 0; pair < 0x10000; ++pair) {
            QByteArray bytes = before;
            bytes.append(static_cast<char>(pair >> 8)).append(static_cast<char>(pair & 0xFF));
            const QString text = decodedWhole(decoder, bytes);
            if (text.isEmpty())
                continue;
            ++valid;
            QByteArray written;
            QVERIFY2(encoder.encode(text, true, written), bytes.toHex().constData());
            QVERIFY2(decodedWhole(decoder, written) == text, bytes.toHex().constData());
        }
        QVERIFY(valid > 10 || before.endsWith("(I"));
    }

    void utf8CheckEqualsDecoder()
    {
        TextCodec decoder(TextEncoding::Utf8);
        const auto compare = [&](const QByteArray &bytes) {
            const std::optional<TextFault> fault = decoded(decoder, bytes).fault;
            if (!fault)
                return bytes.isValidUtf8();
            // Valid up to there, and nowhere beyond.
            for (qsizetype size = fault->position + 1; size <= bytes.size(); ++size) {
                if (QByteArrayView(bytes).first(size).isValidUtf8())
                    return false;
            }
            const QByteArray rest = bytes.sliced(fault->position);
            const bool isBeginning =
                std::ranges::any_of(QByteArrayList{"\x80", "\x90", "\xA0", "\x80\x80", "\x90\x80", "\xA0\x80",
                                                   "\x90\x80\x80", "\x80\x80\x80"},
                                    [&](const QByteArray &end) { return (rest + end).isValidUtf8(); });
            return QByteArrayView(bytes).first(fault->position).isValidUtf8() &&
                   isBeginning == (fault->kind == TextFault::Kind::Truncated);
        };
        for (int pair = 0; pair < 0x10000; ++pair) {
            QByteArray bytes(2, static_cast<char>(pair >> 8));
            bytes[1] = static_cast<char>(pair & 0xFF);
            QVERIFY2(compare(bytes), bytes.toHex().constData());
            // Third and fourth bytes around the borders of the ranges.
            for (const char third : {'\x7f', '\x80', '\x8f', '\x90', '\x9f', '\xa0', '\xbf', '\xc0'}) {
                QVERIFY2(compare(bytes + third), bytes.toHex().constData());
                QVERIFY2(compare(bytes + third + '\x80'), bytes.toHex().constData());
            }
        }
        QRandomGenerator random(7);
        const QByteArray sample = u"aé漢😀\u0000\uFEFF plain ASCII text of some length"_s.toUtf8().repeated(5);
        for (int round = 0; round < 20000; ++round) {
            QByteArray bytes = sample.mid(random.bounded(40), random.bounded(1, 120));
            for (int changes = round % 3; changes > 0; --changes)
                bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
            QVERIFY2(compare(bytes), bytes.toHex().constData());
        }
    }

    void shiftsWithoutText()
    {
        TextCodec korean(TextEncoding::Iso2022Kr);
        QCOMPARE(decodedWhole(korean, "\x1b$)Ca\x0e\x0f"
                                      "b"),
                 u"ab"_s);
        TextCodec japanese(TextEncoding::Iso2022Jp);
        QCOMPARE(decodedWhole(japanese, "a\x1b$B\x1b(Bb"), u"ab"_s);
    }
};

BREVANT_TEST(tst_TextCodec, QCoreApplication)
#include "tst_TextCodec.moc"
