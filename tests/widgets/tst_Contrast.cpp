// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "widgets/Contrast.h"

#include <QPalette>
#include <QTest>

using namespace brevant;

class tst_Contrast final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownColours()
    {
        QCOMPARE(contrast(Qt::white, Qt::black), 21.0);
        QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
        QCOMPARE(contrast(Qt::red, Qt::red), 1.0);
        QVERIFY(std::abs(contrast(QColor(0x767676), Qt::white) - 4.54) < 0.01);
        QVERIFY(std::abs(contrast(QColor(0x0000FF), Qt::white) - 8.59) < 0.01);
    }

    void readableIsAsNearAsItMayBe()
    {
        const QColor white(Qt::white);
        const QColor black(Qt::black);
        const QColor orange(255, 103, 38);
        QCOMPARE(readableOn(white, black, black, 7), black);
        QCOMPARE(readableOn(black, white, orange, 4.5), orange); // readable as it is
        const QColor darker = readableOn(white, black, orange, 7);
        QVERIFY(contrast(darker, white) >= 7);
        QVERIFY(contrast(darker, white) < 11);
        QCOMPARE(readableOn(Qt::gray, black, orange, 21), black); // cannot be reached
    }

    void highContrastPalettes_data()
    {
        QTest::addColumn<QRgb>("window");
        QTest::addColumn<QRgb>("windowText");
        QTest::addColumn<QRgb>("base");
        QTest::addColumn<QRgb>("text");
        QTest::addColumn<bool>("high");
        QTest::newRow("white on black") << 0xFF000000 << 0xFFFFFFFF << 0xFF000000 << 0xFFFFFFFF << true;
        QTest::newRow("black on white") << 0xFFFFFFFF << 0xFF000000 << 0xFFFFFFFF << 0xFF000000 << true;
        QTest::newRow("yellow on black") << 0xFF000000 << 0xFFFFFF00 << 0xFF000000 << 0xFFFFFF00 << true;
        QTest::newRow("Fusion") << 0xFFEFEFEF << 0xFF000000 << 0xFFFFFFFF << 0xFF000000 << false;
        QTest::newRow("Breeze") << 0xFFEFF0F1 << 0xFF232629 << 0xFFFFFFFF << 0xFF232629 << false;
        QTest::newRow("Breeze Dark") << 0xFF2A2E32 << 0xFFFCFCFC << 0xFF1B1E20 << 0xFFFCFCFC << false;
        QTest::newRow("a list only") << 0xFF808080 << 0xFF000000 << 0xFFFFFFFF << 0xFF000000 << false;
    }

    void highContrastPalettes()
    {
        QFETCH(const QRgb, window);
        QFETCH(const QRgb, windowText);
        QFETCH(const QRgb, base);
        QFETCH(const QRgb, text);
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(window));
        palette.setColor(QPalette::WindowText, QColor(windowText));
        palette.setColor(QPalette::Base, QColor(base));
        palette.setColor(QPalette::Text, QColor(text));
        QTEST(isHighContrast(palette), "high");
    }
};

BREVANT_TEST(tst_Contrast, QCoreApplication)
#include "tst_Contrast.moc"
