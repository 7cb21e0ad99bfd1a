// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/FusionStyle.h"

#include "tests/TestClass.h"
#include "widgets/Contrast.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <functional>
#include <memory>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QPalette paletteOf(const QColor &ground, const QColor &text)
{
    QPalette palette(ground);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, ground);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    return palette;
}

/// How many pixels have the colour, or nearly, as those of a circle are blended.
int pixelsOf(const QColor &colour, QWidget &widget)
{
    constexpr int tolerance = 60;
    const auto near = [](int one, int other) { return std::abs(one - other) < tolerance; };
    const QImage image = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor seen = image.pixelColor(x, y);
            if (near(seen.red(), colour.red()) && near(seen.green(), colour.green()) &&
                near(seen.blue(), colour.blue()))
                ++count;
        }
    }
    return count;
}

/// Two pages without texts.
std::unique_ptr<QWidget> makePages()
{
    auto pages = std::make_unique<QTabWidget>();
    pages->setDocumentMode(true);
    for (int page = 0; page < 2; ++page)
        pages->addTab(new QWidget, QString()); // owned by the pages
    return pages;
}

template <typename Control>
std::unique_ptr<QWidget> make()
{
    return std::make_unique<Control>();
}

} // namespace

class tst_FusionStyle final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(u"fusion"_s);
        QApplication::setPalette(paletteOf(QColor(239, 240, 241), QColor(35, 38, 41)));
    }

    void looksAsEverInOrdinaryPalettes()
    {
        QCheckBox plain(u"Plain"_s);
        const QImage without = plain.grab().toImage();
        FusionStyle::install();
        QVERIFY(qobject_cast<FusionStyle *>(QApplication::style()));
        QCOMPARE(plain.grab().toImage(), without);
    }

    void leavesTheStyleOfADesktopAlone()
    {
        QApplication::setStyle(u"windows"_s);
        QApplication::setPalette(paletteOf(Qt::black, Qt::white));
        FusionStyle::install();
        QCOMPARE(QApplication::style()->name(), u"windows"_s);
    }

    void emptyControlsAreSeen_data()
    {
        QTest::addColumn<std::function<std::unique_ptr<QWidget>()>>("make");
        QTest::newRow("check box") << std::function(make<QCheckBox>);
        QTest::newRow("radio button") << std::function(make<QRadioButton>);
        QTest::newRow("field") << std::function(make<QLineEdit>);
        QTest::newRow("combo box") << std::function(make<QComboBox>);
        QTest::newRow("button") << std::function(make<QPushButton>);
        QTest::newRow("scroll bar") << std::function(make<QScrollBar>);
        QTest::newRow("pages") << std::function(makePages);
    }

    void emptyControlsAreSeen()
    {
        using Maker = std::function<std::unique_ptr<QWidget>()>;
        QFETCH(const Maker, make);
        FusionStyle::install();
        FusionStyle::install();
        QApplication::setPalette(paletteOf(Qt::black, Qt::white)); // while the program runs
        const std::unique_ptr<QWidget> widget = make();
        widget->resize(100, 100);
        QTRY_VERIFY(pixelsOf(Qt::white, *widget) >= 8);
        // And none of it when the palette has changed back.
        QApplication::setPalette(paletteOf(QColor(239, 240, 241), QColor(250, 0, 0)));
        QTRY_COMPARE(pixelsOf(QColor(250, 0, 0), *widget), 0);
    }

    void theChosenTabStandsOut()
    {
        FusionStyle::install();
        QPalette palette = paletteOf(Qt::black, Qt::white);
        palette.setColor(QPalette::Highlight, Qt::yellow);
        QApplication::setPalette(palette);
        const std::unique_ptr<QWidget> widget = makePages();
        widget->resize(100, 100);
        auto *pages = qobject_cast<QTabWidget *>(widget.get());
        for (const int chosen : {0, 1}) {
            pages->setCurrentIndex(chosen);
            const QImage image = widget->grab().toImage();
            for (const int tab : {0, 1}) {
                const QRect place = pages->tabBar()->tabRect(tab);
                const QPoint edge(place.center().x(), place.bottom() - place.height() / 2);
                QCOMPARE(image.pixelColor(place.left(), edge.y()) == QColor(Qt::yellow), tab == chosen);
            }
            int lines = 0; // below the tabs, to the edge
            for (int y = 0; y < image.height(); ++y)
                lines += image.pixelColor(image.width() - 1, y) == QColor(Qt::white) ? 1 : 0;
            QCOMPARE(lines, 1);
        }
    }

    void boxesAreSeenInDarkPalettes_data()
    {
        QTest::addColumn<bool>("round");
        QTest::addColumn<bool>("ticked");
        QTest::newRow("check box") << false << false;
        QTest::newRow("ticked check box") << false << true;
        QTest::newRow("radio button") << true << false;
        QTest::newRow("chosen radio button") << true << true;
    }

    void boxesAreSeenInDarkPalettes()
    {
        QFETCH(const bool, round);
        QFETCH(const bool, ticked);
        FusionStyle::install();
        const QColor ground(42, 46, 50);
        QPalette palette = paletteOf(ground, QColor(252, 252, 252));
        palette.setColor(QPalette::Base, QColor(27, 30, 32));
        QApplication::setPalette(palette);
        std::unique_ptr<QAbstractButton> button;
        if (round)
            button = std::make_unique<QRadioButton>();
        else
            button = std::make_unique<QCheckBox>();
        button->setCheckable(true);
        button->setChecked(ticked);
        button->resize(button->sizeHint());
        QStyleOptionButton option;
        option.initFrom(button.get());
        const QRect box = QApplication::style()->subElementRect(
            round ? QStyle::SE_RadioButtonIndicator : QStyle::SE_CheckBoxIndicator, &option, button.get());
        const QImage image = button->grab().toImage();
        for (const QPoint &point :
             {QPoint(box.left(), box.center().y()), QPoint(box.right(), box.center().y()),
              QPoint(box.center().x(), box.top()), QPoint(box.center().x(), box.bottom())})
            QVERIFY2(contrast(image.pixelColor(point), ground) >= 3,
                     qPrintable(image.pixelColor(point).name()));
    }

    void theFocusOnADefaultButtonIsSeen_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << paletteOf(QColor(239, 240, 241), QColor(35, 38, 41));
        QTest::newRow("dark") << paletteOf(QColor(42, 46, 50), QColor(252, 252, 252));
        QTest::newRow("high contrast") << paletteOf(Qt::black, Qt::white);
    }

    void theFocusOnADefaultButtonIsSeen()
    {
        QFETCH(const QPalette, palette);
        const auto drawn = [&palette](QStyle::State state) {
            QImage image(80, 24, QImage::Format_RGB32);
            image.fill(palette.color(QPalette::Window));
            QPainter painter(&image);
            QStyleOptionButton option;
            option.rect = image.rect();
            option.palette = palette;
            option.features = QStyleOptionButton::DefaultButton;
            option.state = QStyle::State_Enabled | state;
            FusionStyle().drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, nullptr);
            return image;
        };
        const QImage without = drawn(QStyle::State_KeyboardFocusChange);
        QCOMPARE(drawn(QStyle::State_HasFocus).copy(2, 2, 76, 20), without.copy(2, 2, 76, 20)); // by a click
        const QImage with = drawn(QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange);
        for (const QPoint &point : {QPoint(2, 12), QPoint(77, 12), QPoint(40, 2), QPoint(40, 21)})
            QVERIFY(contrast(with.pixelColor(point), without.pixelColor(point)) >= 3);
    }

    void theButtonOfANarrowMenuBarHasItsPicture()
    {
        const auto seen = [] {
            QMenuBar bar;
            for (const char *const title : {"File", "Edit", "View", "Help"})
                bar.addMenu(QString::fromLatin1(title));
            bar.resize(60, bar.sizeHint().height());
            return bar.grab().toImage();
        };
        const QImage without = seen();
        FusionStyle::install();
        QCOMPARE(seen(), without);
    }

    void whatIsDisabledCanBeRead_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("text");
        QTest::addColumn<bool>("helps");
        QTest::newRow("white on black") << QColor(Qt::black) << QColor(Qt::white) << true;
        QTest::newRow("black on white") << QColor(Qt::white) << QColor(Qt::black) << true;
        QTest::newRow("not of high contrast") << QColor(239, 240, 241) << QColor(35, 38, 41) << false;
    }

    void whatIsDisabledCanBeRead()
    {
        QFETCH(const QColor, ground);
        QFETCH(const QColor, text);
        QFETCH(const bool, helps);
        QPalette palette = paletteOf(ground, text);
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(QPalette::Disabled, role, ground);
        FusionStyle().polish(palette);
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            const QColor disabled = palette.color(QPalette::Disabled, role);
            QCOMPARE(contrast(disabled, ground) >= readableContrast, helps);
            QVERIFY(disabled != palette.color(QPalette::Active, role));
        }
    }
};

BREVANT_TEST(tst_FusionStyle, QApplication)
#include "tst_FusionStyle.moc"
