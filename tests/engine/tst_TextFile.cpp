// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TextFile.h"
#include "tests/TestClass.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <array>

#include <iconv.h>

using namespace brevant;

namespace {

/// What a whole text is.
struct Decoded {
    QString text;
    std::optional<TextFault> fault;
};

Decoded decoded(TextDecoder &decoder, QByteArrayView bytes)
{
    Decoded result;
    result.fault = decoder.decode(bytes, [&](QStringView piece) { result.text.append(piece); });
    return result;
}

QString decodedWhole(TextDecoder &decoder, QByteArrayView bytes)
{
    const Decoded result = decoded(decoder, bytes);
    return result.fault ? QString() : result.text;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(none)");
}

void writeFile(const QString &path, QByteArrayView bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes.data(), bytes.size()), bytes.size());
}

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

class tst_TextFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodingOfName_data();
    void encodingOfName();
    void golden_data();
    void golden();
    void damageInLongTexts_data();
    void damageInLongTexts();
    void tablesAgreeWithIconv_data();
    void tablesAgreeWithIconv();
    void everyTextCanBeWrittenAgain_data();
    void everyTextCanBeWrittenAgain();
    void utf8CheckEqualsDecoder();
    void byteOrderMark_data();
    void byteOrderMark();
    void encoderRefuses_data();
    void encoderRefuses();
    void shiftsAndHeader();
    void shiftsWithoutText();
    void longFiles_data();
    void longFiles();
    void appendedTextIsEncoded();
    void unwritableTextLeavesTheFile();
    void errorIsOneLine();

private:
    QTemporaryDir m_folder;
};

void tst_TextFile::encodingOfName_data()
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

void tst_TextFile::encodingOfName()
{
    QFETCH(std::optional<QString>, name);
    QTEST(textEncodingNamed(name), "expected");
}

void tst_TextFile::golden_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    QFile file(QFINDTESTDATA("data/combine/golden.txt"));
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

void tst_TextFile::golden()
{
    QFETCH(QString, what);
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    const QString source = m_folder.filePath(QStringLiteral("source"));
    const QString target = m_folder.filePath(QStringLiteral("target"));
    writeFile(source, bytes);
    QFile::remove(target);
    TextDecoder decoder(encoding);
    TextFile file(target, encoding);
    const Decoded whole = decoded(decoder, bytes);
    const auto error = file.appendFile(source);

    if (what == QLatin1StringView("valid")) {
        QVERIFY(!whole.fault);
        QCOMPARE(whole.text, QString::fromUtf8(QByteArray::fromHex(expected)));
        QByteArray encoded;
        TextEncoder encoder(encoding);
        QVERIFY(encoder.encode(whole.text, true, encoded));
        QCOMPARE(encoded, bytes);
        QVERIFY(!error);
        QCOMPARE(file.commit(), QString());
        QCOMPARE(readFile(target), bytes);
        return;
    }
    const bool truncated = what == QLatin1StringView("truncated");
    QVERIFY(whole.fault);
    QCOMPARE(whole.fault->position, expected.toLongLong());
    QCOMPARE(whole.fault->kind, truncated ? TextFault::Kind::Truncated : TextFault::Kind::Invalid);
    QVERIFY(error);
    QCOMPARE(error->position, expected.toLongLong());
    QCOMPARE(error->path, source);
    QCOMPARE(error->reason.startsWith(QLatin1StringView("The text ends in the middle of")), truncated);
}

void tst_TextFile::damageInLongTexts_data()
{
    golden_data();
}

void tst_TextFile::damageInLongTexts()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, bytes);

    // Bytes changed at random places are good or bad alike wherever they stand in a long text.
    QRandomGenerator random(2026);
    TextDecoder decoder(encoding);
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

void tst_TextFile::tablesAgreeWithIconv_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<int>("acceptedByOneOnly"); ///< double bytes whose validity is judged differently
    QTest::addColumn<int>("readDifferently");   ///< double bytes that are another character there

    QTest::newRow("gb2312") << TextEncoding::Gb2312 << QByteArrayLiteral("EUC-CN") << 0 << 1;
    QTest::newRow("gbk") << TextEncoding::Gbk << QByteArrayLiteral("GBK") << 0 << 0;
    QTest::newRow("gb18030") << TextEncoding::Gb18030 << QByteArrayLiteral("GB18030") << 0 << 24;
    QTest::newRow("big5") << TextEncoding::Big5 << QByteArrayLiteral("BIG5") << 0 << 0;
    QTest::newRow("big5-hkscs") << TextEncoding::Big5Hkscs << QByteArrayLiteral("BIG5-HKSCS") << 10 << 47;
    QTest::newRow("shift-jis") << TextEncoding::ShiftJis << QByteArrayLiteral("CP932") << 0 << 0;
}

void tst_TextFile::tablesAgreeWithIconv()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, table);
    Iconv iconv(table);
    if (!iconv.isOpen())
        QSKIP("This C library has not the table");

    TextDecoder decoder(encoding);
    const auto ours = [&](const QByteArray &bytes) { return decodedWhole(decoder, bytes); };
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray bytes(1, static_cast<char>(byte));
        // The C library takes 80 for a character in Big5-HKSCS, which has none. The vendor's table of Shift
        // JIS moves three control characters.
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
                std::initializer_list<char>{static_cast<char>(lead), static_cast<char>(trail)}.begin(), 2};
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

void tst_TextFile::everyTextCanBeWrittenAgain_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QByteArray>("before"); ///< the two bytes
    for (const char *name : {"gb2312", "gbk", "gb18030", "big5", "big5-hkscs", "shift-jis"})
        QTest::newRow(name) << textEncodingNamed(QString::fromLatin1(name)) << QByteArray();
    QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << QByteArrayLiteral("\x1b$B");
    QTest::newRow("iso-2022-jp of 1978") << TextEncoding::Iso2022Jp << QByteArrayLiteral("\x1b$@");
    QTest::newRow("iso-2022-jp roman") << TextEncoding::Iso2022Jp << QByteArrayLiteral("\x1b(J");
    QTest::newRow("iso-2022-jp kana") << TextEncoding::Iso2022Jp << QByteArrayLiteral("\x1b(I");
    QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << QByteArrayLiteral("\x1b$)C\x0e");
}

void tst_TextFile::everyTextCanBeWrittenAgain()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, before);

    // A text that is read and cannot be written would lose the user the combined file.
    TextDecoder decoder(encoding);
    TextEncoder encoder(encoding);
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

void tst_TextFile::utf8CheckEqualsDecoder()
{
    TextDecoder decoder(TextEncoding::Utf8);
    const auto compare = [&](const QByteArray &bytes) {
        const std::optional<TextFault> fault = decoded(decoder, bytes).fault;
        const Utf8Prefix prefix = validUtf8Prefix(bytes);
        const bool truncated = fault && fault->kind == TextFault::Kind::Truncated;
        return prefix == Utf8Prefix{fault ? qsizetype(fault->position) : bytes.size(), truncated};
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
    const QByteArray sample =
        QStringLiteral("aé漢😀\u0000\uFEFF plain ASCII text of some length").toUtf8().repeated(5);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes = sample.mid(random.bounded(40), random.bounded(1, 120));
        for (int changes = round % 3; changes > 0; --changes)
            bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
        QVERIFY2(compare(bytes), bytes.toHex().constData());
    }
}

void tst_TextFile::byteOrderMark_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray utf8 = QByteArrayLiteral("\xEF\xBB\xBF");
    const QByteArray gb18030 = QByteArrayLiteral("\x84\x31\x95\x33");
    QTest::newRow("utf-8") << TextEncoding::Utf8 << utf8 + "a" << QByteArrayLiteral("a");
    QTest::newRow("utf-8 alone") << TextEncoding::Utf8 << utf8 << QByteArray();
    QTest::newRow("utf-8, only the first") << TextEncoding::Utf8 << utf8 + utf8 + "a" << utf8 + "a";
    QTest::newRow("utf-8, not at the start") << TextEncoding::Utf8 << "a" + utf8 << "a" + utf8;
    QTest::newRow("gb18030") << TextEncoding::Gb18030 << gb18030 + "a" << QByteArrayLiteral("a");
    QTest::newRow("gb18030, only the first") << TextEncoding::Gb18030 << gb18030 + gb18030 << gb18030;
    QTest::newRow("gb18030, not at the start") << TextEncoding::Gb18030 << "a" + gb18030 << "a" + gb18030;
    QTest::newRow("empty") << TextEncoding::Utf8 << QByteArray() << QByteArray();
    QTest::newRow("empty gbk") << TextEncoding::Gbk << QByteArray() << QByteArray();
}

void tst_TextFile::byteOrderMark()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    const QString source = m_folder.filePath(QStringLiteral("marked"));
    const QString target = m_folder.filePath(QStringLiteral("unmarked"));
    writeFile(source, bytes);
    TextFile file(target, encoding);
    QVERIFY(!file.appendFile(source));
    QVERIFY(!file.appendFile(source)); // each file has its own start
    QCOMPARE(file.commit(), QString());
    QCOMPARE(readFile(target), expected + expected);
}

void tst_TextFile::encoderRefuses_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QString>("text");
    QTest::newRow("gb2312") << TextEncoding::Gb2312 << QStringLiteral("a繁體");
    QTest::newRow("gbk") << TextEncoding::Gbk << QStringLiteral("a한");
    QTest::newRow("big5") << TextEncoding::Big5 << QStringLiteral("a简");
    QTest::newRow("big5-hkscs") << TextEncoding::Big5Hkscs << QStringLiteral("a한");
    QTest::newRow("shift-jis") << TextEncoding::ShiftJis << QStringLiteral("a한");
    QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << QStringLiteral("a한");
    QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << QStringLiteral("a😀");
    QTest::newRow("invisible") << TextEncoding::Big5 << QStringLiteral("a\u200B");
    QTest::newRow("half a pair") << TextEncoding::Utf8
                                 << QStringLiteral("a").append(QChar(0xD800)).append(u'b');
}

void tst_TextFile::encoderRefuses()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QString, text);

    QByteArray bytes;
    QVERIFY(!TextEncoder(encoding).encode(text, true, bytes));

    const QString target = m_folder.filePath(QStringLiteral("refused"));
    writeFile(target, "old");
    TextFile file(target, encoding);
    file.append(text);
    file.append(u"good");
    QVERIFY(!file.commit().isEmpty());
    QCOMPARE(readFile(target), QByteArrayLiteral("old"));
}

void tst_TextFile::shiftsAndHeader()
{
    QByteArray bytes;
    TextEncoder korean(TextEncoding::Iso2022Kr);
    QVERIFY(korean.encode(u"a", false, bytes));
    QVERIFY(korean.encode(u"가", false, bytes));
    QVERIFY(korean.encode(u"\n가", true, bytes));
    QCOMPARE(bytes, QByteArrayLiteral("\x1b$)Ca\x0e\x30\x21\x0f\n\x0e\x30\x21\x0f"));

    bytes.clear();
    TextEncoder japanese(TextEncoding::Iso2022Jp);
    QVERIFY(japanese.encode(u"あ", false, bytes));
    QVERIFY(!bytes.endsWith("\x1b(B"));
    QVERIFY(japanese.encode({}, true, bytes));
    QCOMPARE(bytes, QByteArrayLiteral("\x1b$B$\"\x1b(B"));

    const QString target = m_folder.filePath(QStringLiteral("shifted"));
    TextFile file(target, TextEncoding::Iso2022Jp);
    file.append(u"あ");
    QCOMPARE(file.commit(), QString());
    QCOMPARE(readFile(target), bytes);
}

void tst_TextFile::shiftsWithoutText()
{
    TextDecoder korean(TextEncoding::Iso2022Kr);
    QCOMPARE(decodedWhole(korean, "\x1b$)Ca\x0e\x0f"
                                  "b"),
             QStringLiteral("ab"));
    TextDecoder japanese(TextEncoding::Iso2022Jp);
    QCOMPARE(decodedWhole(japanese, "a\x1b$B\x1b(Bb"), QStringLiteral("ab"));
}

void tst_TextFile::longFiles_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QString>("unit");
    QTest::newRow("utf-8") << TextEncoding::Utf8 << QStringLiteral("漢😀é");
    QTest::newRow("gbk") << TextEncoding::Gbk << QStringLiteral("a简体");
    QTest::newRow("gb18030") << TextEncoding::Gb18030 << QStringLiteral("😀简é");
    QTest::newRow("shift-jis") << TextEncoding::ShiftJis << QStringLiteral("ｶ表");
    QTest::newRow("iso-2022-jp") << TextEncoding::Iso2022Jp << QStringLiteral("日本a");
    QTest::newRow("iso-2022-kr") << TextEncoding::Iso2022Kr << QStringLiteral("한국a");
}

void tst_TextFile::longFiles()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QString, unit);

    // A byte more each time, so that the ends of the buffers fall into every place of a character.
    const QString source = m_folder.filePath(QStringLiteral("long"));
    const QString target = m_folder.filePath(QStringLiteral("copy"));
    for (int shift = 0; shift < 12; ++shift) {
        QByteArray bytes;
        const QString text = QString(shift, u'x') + unit.repeated(250000);
        QVERIFY(TextEncoder(encoding).encode(text, true, bytes));
        QVERIFY(bytes.size() > 2 * 256 * 1024);
        writeFile(source, bytes);
        TextFile file(target, encoding);
        QVERIFY(!file.appendFile(source));
        QCOMPARE(file.commit(), QString());
        QVERIFY(readFile(target) == bytes);

        const qsizetype bad = bytes.size() - 7 - shift;
        bytes = bytes.first(bad).append('\xff').append("tail");
        writeFile(source, bytes);
        TextDecoder decoder(encoding);
        const std::optional<TextFault> fault = decoded(decoder, bytes).fault;
        const auto error = TextFile(target, encoding).appendFile(source);
        QVERIFY(fault && error);
        QCOMPARE(error->position, fault->position);
        QVERIFY(fault->position > bad - 4 && fault->position <= bad);
    }
}

void tst_TextFile::appendedTextIsEncoded()
{
    const QString target = m_folder.filePath(QStringLiteral("appended"));
    TextFile file(target, TextEncoding::ShiftJis);
    file.append(u"表");
    file.append(u"");
    file.append(u"\n");
    QVERIFY(!QFile::exists(target));
    QCOMPARE(file.commit(), QString());
    QCOMPARE(readFile(target), QByteArrayLiteral("\x95\x5c\n"));
}

void tst_TextFile::unwritableTextLeavesTheFile()
{
    const QString source = m_folder.filePath(QStringLiteral("good"));
    writeFile(source, "good");
    TextFile file(m_folder.filePath(QStringLiteral("no/such/folder")), TextEncoding::Utf8);
    QVERIFY(!file.appendFile(source));
    QVERIFY(file.appendFile(m_folder.path())); // read and checked although nothing can be written
    QVERIFY(!file.commit().isEmpty());
}

void tst_TextFile::errorIsOneLine()
{
    const TextFileError error{QStringLiteral("/w/a\nb\x1b.js"), 12, QStringLiteral("Not valid UTF-8")};
    QCOMPARE(error.message(), QStringLiteral("/w/a?b?.js: byte 12: Not valid UTF-8"));
}

BREVANT_TEST(tst_TextFile, QCoreApplication)
#include "tst_TextFile.moc"
