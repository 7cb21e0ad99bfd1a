// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "widgets/Contrast.h"
#include "widgets/Lines.h"

#include <QTest>

using namespace brevant;

namespace {

/// The colours of a line of that height from top to bottom.
std::vector<QColor> column(int height, const QColor &ground, const QColor &text)
{
    Hairline line;
    line.setPalette([&] {
        QPalette palette(text, ground);
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::Base, ground);
        return palette;
    }());
    line.setFixedHeight(height);
    line.resize(10, height);
    const QImage image = line.grab().toImage();
    std::vector<QColor> colours;
    for (int y = 0; y < height; ++y)
        colours.push_back(image.pixelColor(5, y));
    return colours;
}

} // namespace

class tst_Hairline final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isOnePixelInTheMiddle()
    {
        const std::vector<QColor> colours = column(9, QColor(239, 240, 241), QColor(35, 38, 41));
        for (std::size_t y = 0; y < colours.size(); ++y)
            QCOMPARE(colours[y] != QColor(239, 240, 241), y == 4);
        QCOMPARE(column(1, QColor(239, 240, 241), QColor(35, 38, 41)).front(), colours[4]);
    }

    void isFaintOnLightAndDark()
    {
        for (const auto &[ground, text] : {std::pair(QColor(239, 240, 241), QColor(35, 38, 41)),
                                           {QColor(42, 46, 50), QColor(252, 252, 252)}}) {
            const double seen = contrast(column(1, ground, text).front(), ground);
            QVERIFY2(seen > 1.2 && seen < 2, qPrintable(QString::number(seen)));
        }
    }

    void isPlainInHighContrast()
    {
        QCOMPARE(column(1, Qt::black, Qt::white).front(), QColor(Qt::white));
        QCOMPARE(column(1, Qt::white, Qt::black).front(), QColor(Qt::black));
    }
};

BREVANT_TEST(tst_Hairline, QApplication)
#include "tst_Hairline.moc"
