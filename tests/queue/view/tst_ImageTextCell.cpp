// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/ImageTextCell.h"

#include "queue/view/BVTableView.h"
#include "tests/TestClass.h"
#include "widgets/Contrast.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTest>

using namespace Qt::StringLiterals;

using brevant::contrast;
using brevant::ImageTextCell;

namespace {

constexpr QRectF cellFrame(10, 20, 300, 40);

QImage drawn(const QString &path, QRectF frame = cellFrame, int width = 400, QColor ground = Qt::white)
{
    QImage image(width, 100, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    ImageTextCell().drawWithFrame(frame, painter, path, QApplication::palette());
    return image;
}

QFont fixed(int pixels)
{
    QFont font(u"Menlo"_s);
    font.setFamilies({u"Menlo"_s, u"DejaVu Sans Mono"_s, u"monospace"_s});
    font.setStyleHint(QFont::Monospace);
    font.setBold(false); // said, not left to the painter's own font
    font.setItalic(false);
    font.setPixelSize(pixels);
    return font;
}

/// What the cell should look like, drawn by other means: each line in a box that begins at its point.
QImage expected(const QString &name, const QFont &nameFont, QColor nameColour, const QString &folder,
                QColor grey)
{
    QImage image(400, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const auto line = [&painter](qreal y, const QFont &font, QColor colour, const QString &text) {
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(QRectF(18, y, 4000, 60), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text);
    };
    line(20, nameFont, nameColour, name);
    line(36, fixed(11), grey, folder);
    return image;
}

/// Whether anything but the white ground is in `rect`.
bool hasInk(const QImage &image, QRect rect)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                return true;
        }
    }
    return false;
}

/// The lines of an entry, so large that letters are more than their soft edges, at 0 and at 64.
QImage enlarged(const QString &path, const QColor &ground)
{
    constexpr int times = 4;
    QImage image(400, 160, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    painter.scale(times, times);
    QStyleOptionViewItem option;
    brevant::BVTableView().initViewItemOption(&option);
    ImageTextCell().drawWithFrame({0, 0, 100, 40}, painter, path, option.palette);
    return image;
}

/// The contrast of the pixel in `rect` that has the most: of the text itself.
double mostContrast(const QImage &image, QRect rect, const QColor &ground)
{
    double most = 1;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            most = std::max(most, contrast(image.pixelColor(x, y), ground));
    }
    return most;
}

/// A colour of the palette that nothing else has.
const QColor grey(110, 100, 105);

} // namespace

class tst_ImageTextCell : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QPalette palette;
        palette.setColor(QPalette::Disabled, QPalette::Text, grey);
        QApplication::setPalette(palette);
    }
    void cleanupTestCase() { QApplication::setPalette(QPalette()); }

    void paintsNoHighlight() { QVERIFY(!ImageTextCell().highlightColorWithFrame(cellFrame).has_value()); }

    void kindColours_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QColor>("colour");
        const QColor purple(159, 0, 195);
        const QColor green(0, 140, 0);
        const QColor orange(255, 103, 38);
        QTest::newRow("js") << u"/w/app.js"_s << purple;
        QTest::newRow("Menu.JS") << u"/w/Menu.JS"_s << purple;
        QTest::newRow("css") << u"/w/theme.css"_s << green;
        QTest::newRow("CsS") << u"/w/theme.CsS"_s << green;
        QTest::newRow("html") << u"/w/index.html"_s << orange;
        QTest::newRow("INDEX.Html") << u"/w/INDEX.Html"_s << orange;
        QTest::newRow("phtml") << u"/w/index.phtml"_s << orange;
        QTest::newRow("php") << u"/w/index.php"_s << orange;
        QTest::newRow("last extension counts") << u"/w/a.css.js"_s << purple;
        QTest::newRow("no kind") << u"/w/notes.txt"_s << QColor(Qt::black);
        QTest::newRow("htm is no kind") << u"/w/notes.htm"_s << QColor(Qt::black);
        QTest::newRow("no extension") << u"/w.css/Makefile"_s << QColor(Qt::black);
        QTest::newRow("dot file") << u"/w/.css"_s << QColor(Qt::black);
    }

    void kindColours()
    {
        QFETCH(const QString, path);
        QFETCH(const QColor, colour);
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Active, QPalette::Text, Qt::black);
        QApplication::setPalette(palette);
        const QFont font = colour == QColor(Qt::black) ? QApplication::font() : fixed(13);
        const qsizetype slash = path.lastIndexOf(u'/');
        QCOMPARE(drawn(path), expected(path.sliced(slash + 1), font, colour, path.first(slash + 1), grey));
    }

    void linesStandAtTheirPoints_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("folder");
        QTest::newRow("usual") << u"/home/me/app.css"_s << u"app.css"_s << u"/home/me/"_s;
        QTest::newRow("at the root") << u"/style.css"_s << u"style.css"_s << u"//"_s;
        QTest::newRow("umlaut and blanks")
            << u"/w/kontakt über  uns.css"_s << u"kontakt über  uns.css"_s << u"/w/"_s;
        QTest::newRow("markup is text") << u"/w/<b>a&amp;.css"_s << u"<b>a&amp;.css"_s << u"/w/"_s;
    }

    void linesStandAtTheirPoints()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, name);
        QFETCH(const QString, folder);
        QCOMPARE(drawn(path), expected(name, fixed(13), QColor(0, 140, 0), folder, grey));
    }

    void folderStandsAtFourTenthsOfAnyHeight()
    {
        // Ten more in height are four more in distance; the name stays where it is.
        const QImage usual = drawn(u"/w/a.css"_s);
        const QImage higher = drawn(u"/w/a.css"_s, cellFrame.adjusted(0, 0, 0, 10));
        QCOMPARE(higher.copy(0, 0, 400, 36), usual.copy(0, 0, 400, 36));
        QCOMPARE(higher.copy(0, 41, 400, 40), usual.copy(0, 37, 400, 40));
        // And the whole moves with the frame.
        const QImage moved = drawn(u"/w/a.css"_s, cellFrame.translated(5, 7));
        QCOMPARE(moved.copy(5, 7, 300, 60), usual.copy(0, 0, 300, 60));
    }

    void unknownKindIsDrawnInTheDefaultFont()
    {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Active, QPalette::Text, Qt::black);
        QApplication::setPalette(palette);
        const QImage knownBefore = drawn(u"/w/a.css"_s);
        const QFont before = QApplication::font();
        QFont other = before;
        other.setPixelSize(13);
        other.setBold(true);
        other.setItalic(true);
        QApplication::setFont(other);
        const QImage unknown = drawn(u"/w/notes.txt"_s);
        const QImage known = drawn(u"/w/a.css"_s);
        const QImage unknownExpected = expected(u"notes.txt"_s, other, Qt::black, u"/w/"_s, grey);
        QApplication::setFont(before);
        QCOMPARE(unknown, unknownExpected);
        // The font of the kinds has nothing of the default font.
        QCOMPARE(known, knownBefore);
    }

    void longNamesRunOut()
    {
        const QString name = QString(120, u'm') + u".css"_s;
        const QImage image = drawn(u'/' + QString(120, u'm') + u'/' + name, cellFrame, 1000);
        QVERIFY(hasInk(image, {320, 20, 680, 15}));
        QVERIFY(hasInk(image, {320, 36, 680, 14}));
        QVERIFY(!hasInk(image, {0, 55, 1000, 45}));
        QVERIFY(!hasInk(image, {0, 0, 1000, 20}));
    }

    void everyTextIsReadable_data()
    {
        QTest::addColumn<QColor>("window");
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("disabled");
        QTest::addColumn<double>("ofNames"); // of a kind: their colours are fixed but in high contrast
        QTest::addColumn<double>("ofOthers");
        QTest::newRow("light") << QColor(239, 240, 241) << QColor(35, 38, 41) << QColor(160, 162, 163) << 0.
                               << 4.5;
        QTest::newRow("dark") << QColor(42, 46, 50) << QColor(252, 252, 252) << QColor(110, 113, 115) << 0.
                              << 4.5;
        QTest::newRow("high contrast, dark")
            << QColor(Qt::black) << QColor(Qt::white) << QColor(0, 255, 0) << 7. << 7.;
        QTest::newRow("high contrast, light")
            << QColor(Qt::white) << QColor(Qt::black) << QColor(110, 110, 110) << 7. << 7.;
    }

    void everyTextIsReadable()
    {
        QFETCH(const QColor, window);
        QFETCH(const QColor, text);
        QFETCH(const QColor, disabled);
        QFETCH(const double, ofNames);
        QFETCH(const double, ofOthers);
        QPalette palette(text, window);
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base})
            palette.setColor(role, window);
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
            palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, QPalette::Text, disabled);
        QApplication::setPalette(palette);
        // Of every name, the ground is that of a row or of a selected one.
        for (const QColor &ground : {QColor(Qt::white), QColor(204, 238, 255)}) {
            for (const char *path : {"/w/MM.js", "/w/MM.css", "/w/MM.html", "/w/MM.php", "/w/MM.txt"}) {
                const QImage image = enlarged(QString::fromLatin1(path), ground);
                const double ofName = mostContrast(image, {0, 0, 400, 60}, ground);
                const double ofFolder = mostContrast(image, {0, 64, 400, 60}, ground);
                const bool isOfAKind = !QByteArrayView(path).endsWith("txt");
                QVERIFY2(ofName >= (isOfAKind ? ofNames : ofOthers), qPrintable(QString::number(ofName)));
                QVERIFY2(ofFolder >= ofOthers, qPrintable(QString::number(ofFolder)));
            }
        }
    }

    void fontIsFixedAndInPixels()
    {
        // As wide as seven fixed letters of 13 pixels, whatever the letters.
        const auto rightmost = [](const QImage &image) {
            for (int x = image.width() - 1; x >= 0; --x) {
                if (hasInk(image, {x, 20, 1, 15}))
                    return x;
            }
            return -1;
        };
        const int narrow = rightmost(drawn(u"/iii.css"_s));
        const int wide = rightmost(drawn(u"/WWW.css"_s));
        QCOMPARE(narrow, wide);
        QVERIFY(std::abs(narrow - 18 - qRound(QFontMetricsF(fixed(13)).horizontalAdvance(u"WWW.css"_s))) <=
                2);
    }
};

BREVANT_TEST(tst_ImageTextCell, QApplication)
#include "tst_ImageTextCell.moc"
