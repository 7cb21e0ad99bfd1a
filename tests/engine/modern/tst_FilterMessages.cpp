// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/FilterMessages.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QByteArray oneError(const char *place)
{
    return QByteArray("✘ [ERROR] Unexpected \";\"\n\n    <stdin>:") + place +
           ":\n      1 │ var a = ;\n        ╵         ^\n\n";
}

QStringList inWords(const CompressorMessages &messages)
{
    QStringList words;
    for (const CompressorMessage &message : messages.shown)
        words.append((message.kind == CompressorMessage::Kind::Error ? u"error "_s : u"warning "_s) +
                     message.inWords());
    return words;
}

} // namespace

class tst_FilterMessages final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void placesAreInCharactersFromOne_data()
    {
        QTest::addColumn<QByteArray>("place");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("words");

        QTest::newRow("first") << "1:0"_ba
                               << ";"_ba << u"line 1, column 1: Unexpected \";\""_s;
        QTest::newRow("ASCII") << "1:8"_ba
                               << "var a = ;"_ba << u"line 1, column 9: Unexpected \";\""_s;
        QTest::newRow("two bytes") << "1:9"_ba
                                   << "var ä = ;"_ba << u"line 1, column 9: Unexpected \";\""_s;
        QTest::newRow("three bytes") << "1:10"_ba
                                     << "var 語 = ;"_ba << u"line 1, column 9: Unexpected \";\""_s;
        QTest::newRow("four bytes") << "1:11"_ba
                                    << "var 𝒳 = ;"_ba << u"line 1, column 9: Unexpected \";\""_s;
        QTest::newRow("CR LF") << "2:2"_ba
                               << "ä\r\nä;"_ba << u"line 2, column 2: Unexpected \";\""_s;
        QTest::newRow("CR") << "2:2"_ba
                            << "ä\rä;"_ba << u"line 2, column 2: Unexpected \";\""_s;
        QTest::newRow("LF") << "3:2"_ba
                            << "\n\nä;"_ba << u"line 3, column 2: Unexpected \";\""_s;
        QTest::newRow("line separator") << "2:2"_ba
                                        << "a\u2028ä;"_ba << u"line 2, column 2: Unexpected \";\""_s;
        QTest::newRow("paragraph separator") << "2:2"_ba
                                             << "a\u2029ä;"_ba << u"line 2, column 2: Unexpected \";\""_s;
        QTest::newRow("behind the end") << "1:9"_ba
                                        << "a"_ba << u"line 1, column 2: Unexpected \";\""_s;
        QTest::newRow("no such line") << "7:0"_ba
                                      << "a"_ba << u"line 7, column 1: Unexpected \";\""_s;
    }

    void placesAreInCharactersFromOne()
    {
        QFETCH(const QByteArray, place);
        QFETCH(const QByteArray, source);
        const CompressorMessages messages = esbuildMessages(oneError(place.constData()), source);
        QCOMPARE(messages.shown.size(), std::size_t(1));
        QTEST(messages.inWords(), "words");
    }

    void readsErrorsAndWarnings()
    {
        const QByteArray text =
            "▲ [WARNING] \"colr\" is not a known CSS property [unsupported-css-property]\n\n"
            "    <stdin>:1:5:\n      1 │ a3 { colr: red; b\n        ╵      color\n\n"
            "  Did you mean \"color\" instead?\n\n"
            "✘ [ERROR] Unexpected end of file\n\n"
            "✘ [ERROR] Unexpected \"}\"\n\n"
            "    <stdin>:2:0:\n      2 │ }\n        ╵ ^\n\n"
            "  The other is here:\n\n    <stdin>:1:0:\n      1 │ a3\n        ╵ ~~\n\n";
        const CompressorMessages messages = esbuildMessages(text, "a3 { colr: red; b\n}");
        QCOMPARE(
            inWords(messages),
            QStringList({u"warning line 1, column 6: \"colr\" is not a known CSS property "
                         "[unsupported-css-property]"_s,
                         u"error Unexpected end of file"_s, u"error line 2, column 1: Unexpected \"}\""_s}));
        QCOMPARE(messages.inWords(), u"Unexpected end of file (and 2 more)"_s);
    }

    void countsWhatIsNotShown()
    {
        CompressorMessages messages = esbuildMessages(
            oneError("1:0") + "6 of 30 errors shown (disable the message limit with --log-limit=0)\n", ";");
        QCOMPARE(messages.more, 24);
        messages = esbuildMessages(oneError("1:0").repeated(25), ";");
        QCOMPARE(messages.shown.size(), std::size_t(20));
        QCOMPARE(messages.inWords(), u"line 1, column 1: Unexpected \";\" (and 24 more)"_s);
    }

    /// Part of a source in a message is no message.
    void passesOverSources()
    {
        const QByteArray text = "▲ [WARNING] x\n\n    <stdin>:1:0:\n      1 │ ✘ [ERROR] y\n        ╵ ^\n\n";
        QCOMPARE(inWords(esbuildMessages(text, "✘ [ERROR] y")),
                 QStringList({u"warning line 1, column 1: x"_s}));
    }

    void readsNothing()
    {
        QVERIFY(esbuildMessages("", "a").shown.empty());
        QVERIFY(esbuildMessages("panic: runtime error\n", "a").shown.empty());
        QVERIFY(markupMessages("").shown.empty());
        QCOMPARE(CompressorMessages().inWords(), QString());
    }

    void readsMarkupMessages()
    {
        QCOMPARE(markupMessages("4:17: unexpected } in expression\n").inWords(),
                 u"line 4, column 17: unexpected } in expression"_s);
        QCOMPARE(markupMessages("the text holds a NUL at byte 3\n").inWords(),
                 u"the text holds a NUL at byte 3"_s);
        QCOMPARE(markupMessages("4:17: unexpected }\n 4: a }\n    ^\n").inWords(),
                 u"line 4, column 17: unexpected }"_s);
    }
};

BREVANT_TEST(tst_FilterMessages, QCoreApplication)
#include "tst_FilterMessages.moc"
