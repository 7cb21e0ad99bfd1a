// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewReader.h"
#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"
#include "app/preview/SourceText.h"
#include "tests/TestClass.h"
#include "widgets/Contrast.h"

#include <QFile>
#include <QFontMetrics>
#include <QTemporaryDir>
#include <QTest>

#include <bit>
#include <cstdlib>
#include <optional>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QPalette paletteOf(QRgb base, QRgb text)
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(base));
    palette.setColor(QPalette::Text, QColor(text));
    palette.setColor(QPalette::Window, QColor(base));
    palette.setColor(QPalette::WindowText, QColor(text));
    return palette;
}

PreviewContent contentOf(const QString &path, const QByteArray &text)
{
    PreviewContent content;
    content.path = path;
    content.state = PreviewContent::State::Text;
    content.text = text;
    return content;
}

} // namespace

/// The text as it is coloured.
class tst_SourceText final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void contrasts_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<double>("least");
        QTest::newRow("light") << paletteOf(0xFCFCFC, 0x232629) << 7.0;
        QTest::newRow("dark") << paletteOf(0x1E1E1E, 0xEEEEEE) << 7.0;
        QTest::newRow("high contrast") << paletteOf(0x000000, 0xFFFFFF) << 7.0;
        QTest::newRow("high contrast, light") << paletteOf(0xFFFFFF, 0x000000) << 7.0;
        QTest::newRow("sepia") << paletteOf(0xF4ECD8, 0x1A1208) << 7.0;
        QTest::newRow("grey") << paletteOf(0x808080, 0x000000) << 5.0;
        QTest::newRow("blue") << paletteOf(0x002B55, 0xF0F0F0) << 7.0;
    }

    void contrasts()
    {
        QFETCH(QPalette, palette);
        QFETCH(double, least);
        const PreviewTheme theme(palette);
        for (int role = 0; role <= int(TextRole::Special); ++role)
            QVERIFY2(contrast(theme.color(TextRole(role)), theme.paper()) >= least,
                     qPrintable(QString::number(role)));
        QVERIFY(contrast(theme.quiet(), theme.paper()) >= (isHighContrast(palette) ? 7 : 4.5));

        // And as they reach every style of every lexer.
        SourceText text(nullptr);
        text.setPalette(palette);
        for (const char *path : {"a.css", "a.js", "a.html"}) {
            text.setContent(contentOf(QString::fromLatin1(path), "a"));
            QsciLexer *const lexer = qobject_cast<QsciScintilla *>(text.focusProxy())->lexer();
            for (int style = 0; style < 128; ++style) {
                if (lexer->description(style).isEmpty())
                    continue;
                QCOMPARE(lexer->paper(style), theme.paper());
                QVERIFY2(contrast(lexer->color(style), theme.paper()) >= least,
                         qPrintable(lexer->description(style)));
            }
        }
    }

    void lexers_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("style");
        QTest::newRow("CSS") << "a.css" << QByteArray("CSS") << QByteArray("/* x */") << 3
                             << int(QsciLexerCSS::Comment);
        QTest::newRow("capitals") << "A.CSS" << QByteArray("CSS") << QByteArray("@media x{}") << 3
                                  << int(QsciLexerCSS::MediaRule);
        QTest::newRow("JavaScript") << "a.js" << QByteArray("JavaScript") << QByteArray("var a") << 1
                                    << int(QsciLexerCPP::Keyword);
        QTest::newRow("HTML") << "a.html" << QByteArray("HTML") << QByteArray("<p>") << 1
                              << int(QsciLexerHTML::Tag);
        QTest::newRow("PHTML") << "a.phtml" << QByteArray("HTML") << QByteArray("<?php $a ?>") << 7
                               << int(QsciLexerHTML::PHPVariable);
        QTest::newRow("PHP") << "a.php" << QByteArray("HTML") << QByteArray("<?php $a ?>") << 7
                             << int(QsciLexerHTML::PHPVariable);
        QTest::newRow("anything else")
            << "a.txt" << QByteArray("HTML") << QByteArray("x") << 0 << int(QsciLexerHTML::Default);
    }

    void lexers()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, language);
        QFETCH(QByteArray, text);
        QFETCH(int, position);
        QFETCH(int, style);
        SourceText widget(nullptr);
        widget.setContent(contentOf(u"before.js"_s, "before"));
        widget.setContent(contentOf(path, text));
        auto *const editor = qobject_cast<QsciScintilla *>(widget.focusProxy());
        QCOMPARE(QByteArray(editor->lexer()->language()), language);
        QCOMPARE(widget.shownText(), QString::fromUtf8(text));
        editor->SendScintilla(QsciScintilla::SCI_COLOURISE, 0UL, -1L);
        QCOMPARE(int(editor->SendScintilla(QsciScintilla::SCI_GETSTYLEAT, position)), style);
    }

    void styleSheetsWithinAPage()
    {
        SourceText widget(nullptr);
        auto *const editor = qobject_cast<QsciScintilla *>(widget.focusProxy());
        const QByteArray text(
            "<p>a{b:c}</p><!-- <style>a{} --><stylesheet>a{}</stylesheet><Style media=\"x\">/*k*/"
            "a{color:red}<?php $x ?></STYLE><p>d{}</p><style>@media x{}");
        // The colour that an indicator gives to a piece of the text; none without an indicator.
        const auto colourOf = [&](const QByteArray &piece) -> std::optional<QRgb> {
            const auto on = static_cast<unsigned long>(editor->SendScintilla(
                QsciScintilla::SCI_INDICATORALLONFOR, static_cast<unsigned long>(text.lastIndexOf(piece))));
            if (on == 0)
                return std::nullopt;
            const auto bgr = static_cast<QRgb>(editor->SendScintilla(
                QsciScintilla::SCI_INDICGETFORE, static_cast<unsigned long>(std::countr_zero(on))));
            return qRgb(int(bgr & 0xFF), int(bgr >> 8 & 0xFF), int(bgr >> 16 & 0xFF));
        };
        for (const QRgb base : {0xFFFFFFFF, 0xFF1E1E1E}) {
            widget.setPalette(paletteOf(base, base ^ 0xFFFFFF));
            widget.setContent(contentOf(u"a.html"_s, text));
            const PreviewTheme theme(widget.palette());
            QCOMPARE(colourOf("k*/"), theme.color(TextRole::Comment).rgb());
            QCOMPARE(colourOf("color"), theme.color(TextRole::Name).rgb());
            QCOMPARE(colourOf("red"), theme.color(TextRole::String).rgb());
            QCOMPARE(colourOf("media x{"), theme.color(TextRole::Special).rgb());
            for (const char *piece : {"a{b", "a{} ", "a{}<", "$x", "</STYLE", "d{}"})
                QVERIFY2(!colourOf(piece), piece);
        }
        widget.setContent(contentOf(u"a.css"_s, text));
        QVERIFY(!colourOf("color"));
    }

    void followsThePalette()
    {
        SourceText text(nullptr);
        text.setContent(contentOf(u"a.css"_s, "a{}"));
        auto *const editor = qobject_cast<QsciScintilla *>(text.focusProxy());
        for (const QRgb base : {0xFF1E1E1E, 0xFFFFFFFF}) {
            text.setPalette(paletteOf(base, base ^ 0xFFFFFF));
            QCOMPARE(editor->lexer()->paper(QsciLexerCSS::Value), QColor(base));
            const auto shown =
                editor->SendScintilla(QsciScintilla::SCI_STYLEGETBACK, int(QsciLexerCSS::Value));
            QCOMPARE(QRgb(shown), base & 0xFFFFFF);
        }
    }

    void isReadOnly()
    {
        SourceText text(nullptr);
        text.setContent(contentOf(u"a.css"_s, "a{}"));
        QTest::keyClicks(text.focusProxy(), u"xyz"_s);
        QTest::keyClick(text.focusProxy(), Qt::Key_Delete);
        QCOMPARE(text.shownText(), u"a{}"_s);
    }

    void numbersOnlyRealLines()
    {
        SourceText text(nullptr);
        auto *const editor = qobject_cast<QsciScintilla *>(text.focusProxy());
        text.setContent(contentOf(u"a.css"_s, "a\nb"));
        QVERIFY(editor->marginWidth(0) > 0);
        PreviewContent folded = contentOf(u"b.css"_s, "a\nb");
        folded.folds = {1};
        text.setContent(folded);
        QCOMPARE(editor->marginWidth(0), 0);
    }

    void noLineAfterTheLastOne_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("lines");
        QTest::newRow("ended") << QByteArray("a\nb\n") << 2;
        QTest::newRow("not ended") << QByteArray("a\nb") << 2;
        QTest::newRow("as Windows ends them") << QByteArray("a\r\nb\r\n") << 2;
        QTest::newRow("as the Macintosh did") << QByteArray("a\rb\r") << 2;
        QTest::newRow("an empty last line") << QByteArray("a\n\n") << 2;
        QTest::newRow("nothing but an end") << QByteArray("\n") << 1;
    }

    void noLineAfterTheLastOne()
    {
        QFETCH(const QByteArray, text);
        SourceText widget(nullptr);
        widget.setContent(contentOf(u"a.css"_s, text));
        QTEST(qobject_cast<QsciScintilla *>(widget.focusProxy())->lines(), "lines");
    }

    void selectionWithoutFolds()
    {
        SourceText text(nullptr);
        PreviewContent content = contentOf(u"a.css"_s, "abc\ndéf\ng\nh");
        content.folds = {3, 8};
        text.setContent(content);
        auto *const editor = qobject_cast<QsciScintilla *>(text.focusProxy());
        QCOMPARE(text.selectedText(), QString());
        editor->selectAll();
        QCOMPARE(text.selectedText(), u"abcdéfg\nh"_s);
        editor->SendScintilla(QsciScintilla::SCI_SETSEL, 1UL, 5L);
        QCOMPARE(text.selectedText(), u"bcd"_s);
        editor->SendScintilla(QsciScintilla::SCI_SETSEL, 4UL, 8L);
        QCOMPARE(text.selectedText(), u"déf"_s);
    }

    void rightToLeftTakesItsRoom_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("after");
        const QString hebrew = u"שלום, עולם"_s;
        QTest::newRow("text of a page") << "a.html"
                                        << "<p>" << hebrew << "</p>";
        QTest::newRow("within other text") << "a.html"
                                           << "<p>one " << hebrew << " two</p>";
        QTest::newRow("attribute") << "a.html"
                                   << "<p title=\"" << hebrew << "\">x</p>";
        QTest::newRow("Arabic") << "a.html"
                                << "<p>" << u"مرحبا بالعالم"_s << "<b>x</b></p>";
        QTest::newRow("string") << "a.js"
                                << "var a = '" << hebrew << "' + b;";
        QTest::newRow("comment") << "a.css"
                                 << "/* " << hebrew << " */ a{}";
    }

    void rightToLeftTakesItsRoom()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, before);
        QFETCH(const QString, words);
        QFETCH(const QString, after);
        const QTemporaryDir folder;
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QString whole = before + words + after;
        file.write(whole.toUtf8());
        file.close();
        const auto content = readPreview(file.fileName(), u"utf-8"_s, [] { return false; });
        QVERIFY(content);
        SourceText text(nullptr);
        text.resize(900, 200);
        text.setContent(*content);
        text.grab(); // lays it out
        auto *const editor = qobject_cast<QsciScintilla *>(text.focusProxy());
        const auto xOf = [&](qsizetype position) {
            return int(editor->SendScintilla(QsciScintilla::SCI_POINTXFROMPOSITION, 0UL, long(position)));
        };
        const qsizetype begin = content->text.indexOf(words.toUtf8());
        const qsizetype end = content->text.indexOf(after.toUtf8());
        QVERIFY(begin > 0 && end > begin);
        const int style =
            int(editor->SendScintilla(QsciScintilla::SCI_GETSTYLEAT, static_cast<unsigned long>(begin)));
        const int width = QFontMetrics(editor->lexer()->font(style)).horizontalAdvance(words);
        QVERIFY2(std::abs(xOf(end) - xOf(before.size()) - width) <= 2,
                 qPrintable(u"%1 to %2, not %3"_s.arg(xOf(before.size())).arg(xOf(end)).arg(width)));
        QVERIFY(xOf(content->text.size() - 1) > xOf(end));
        editor->selectAll();
        QCOMPARE(text.selectedText(), whole);
    }

    void sameTextStaysWhereItIs()
    {
        SourceText text(nullptr);
        text.resize(300, 100);
        const PreviewContent content = contentOf(u"a.css"_s, QByteArray("a{}\n").repeated(200));
        text.setContent(content);
        auto *const editor = qobject_cast<QsciScintilla *>(text.focusProxy());
        editor->setFirstVisibleLine(90);
        text.setContent(content);
        QCOMPARE(editor->firstVisibleLine(), 90);
        PreviewContent other = content;
        other.path = u"b.css"_s;
        text.setContent(other);
        QCOMPARE(editor->firstVisibleLine(), 0);
    }
};

BREVANT_TEST(tst_SourceText, QApplication)
#include "tst_SourceText.moc"
