// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/preview/PreviewPanel.h"
#include "tests/TestClass.h"
#include "widgets/Contrast.h"
#include "widgets/Lines.h"

#include <QApplication>
#include <QLabel>
#include <QStackedWidget>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QPalette paletteOf(QRgb window, QRgb base, QRgb text, QRgb disabled)
{
    QPalette palette{QColor(window)};
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Button})
        palette.setColor(role, QColor(window));
    palette.setColor(QPalette::Base, QColor(base));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor(text));
        palette.setColor(QPalette::Disabled, role, QColor(disabled));
    }
    return palette;
}

/// The colour in the lower right corner of a widget, where nothing stands.
QColor cornerOf(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() - 3, image.height() - 3);
}

QList<QWidget *> openWindows()
{
    QList<QWidget *> windows;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() != Qt::ToolTip)
            windows.append(window);
    }
    return windows;
}

} // namespace

/// The colours of all windows in the schemes of a desktop, and while one takes the place of another.
class tst_Looks final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void allWindowsFollow_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<double>("least");
        QTest::newRow("light") << paletteOf(0xFFEFF0F1, 0xFFFFFFFF, 0xFF232629, 0xFFA0A2A3) << 4.5;
        QTest::newRow("dark") << paletteOf(0xFF2A2E32, 0xFF1B1E20, 0xFFFCFCFC, 0xFF6E7173) << 4.5;
        QTest::newRow("high contrast, dark")
            << paletteOf(0xFF000000, 0xFF000000, 0xFFFFFFFF, 0xFF00FF00) << 7.;
        QTest::newRow("high contrast, light")
            << paletteOf(0xFFFFFFFF, 0xFFFFFFFF, 0xFF000000, 0xFF600000) << 7.;
    }

    void allWindowsFollow()
    {
        QFETCH(const QPalette, palette);
        QFETCH(const double, least);
        // From the one to the other, with everything open.
        QApplication::setPalette(paletteOf(0xFF802020, 0xFF603030, 0xFFF0E0E0, 0xFFD0C0C0));
        AppFixture app;
        app.drop({app.file(u"a.css"_s, "a{}\n"), app.file(u"b.js"_s, "var b")});
        app.window.show();
        app.window.ui().preferencesMenu->trigger();
        app.table->selectRowIndexes({0, 1}, false);
        app.delegate.togglePreviewPanel();
        PreviewPanel *const panel = app.delegate.sharedPreviewPanel();
        QTRY_VERIFY(panel->isVisible());
        QTRY_COMPARE(panel->shownText(), u"a{}"_s);

        QApplication::setPalette(palette);
        const QColor ground = palette.color(QPalette::Window);
        QCOMPARE(openWindows().size(), 3);
        for (QWidget *window : openWindows())
            QTRY_VERIFY2(cornerOf(window) == ground, window->metaObject()->className());
        QTRY_COMPARE(cornerOf(panel->findChild<QWidget *>(u"previewText"_s)), palette.color(QPalette::Base));
        QCOMPARE(cornerOf(app.table->viewport()), QColor(Qt::white)); // the list's own, in any scheme
        textsAreReadable(least);
        linesAreSeen(ground);

        app.controller.clear();
        QCOMPARE(cornerOf(app.window.ui().contents), ground);
        QCOMPARE(cornerOf(app.table), ground); // and the picture shows
        for (QWidget *window : openWindows())
            window->close();
    }

private:
    /// Whether it is seen, with its page of the preferences to the front.
    static bool isOnAPage(const QWidget &widget)
    {
        for (QWidget *page = widget.parentWidget(); page != nullptr; page = page->parentWidget()) {
            auto *const pages = qobject_cast<QStackedWidget *>(page->parentWidget());
            if (pages != nullptr)
                pages->setCurrentWidget(page);
        }
        return widget.isVisible();
    }

    static void textsAreReadable(double least)
    {
        int texts = 0;
        for (QWidget *window : openWindows()) {
            for (QWidget *widget : window->findChildren<QWidget *>()) {
                if (!isOnAPage(*widget) || !widget->isEnabled() ||
                    (!qobject_cast<QLabel *>(widget) && !qobject_cast<QAbstractButton *>(widget)))
                    continue;
                const QPalette &own = widget->palette();
                const double seen = contrast(own.color(QPalette::Active, widget->foregroundRole()),
                                             own.color(QPalette::Active, widget->backgroundRole()));
                QVERIFY2(seen >= least, qPrintable(widget->objectName()));
                ++texts;
            }
        }
        QVERIFY(texts > 30);
    }

    static void linesAreSeen(const QColor &ground)
    {
        int lines = 0;
        for (QWidget *window : openWindows()) {
            for (Hairline *line : window->findChildren<Hairline *>()) {
                if (line->window() != window)
                    continue; // that of a window that is a child
                const QImage image = line->grab().toImage();
                QVERIFY(image.pixelColor(image.width() / 2, image.height() / 2) != ground);
                ++lines;
            }
        }
        QCOMPARE(lines, 1 + 5 + 2);
    }
};

BREVANT_TEST(tst_Looks, QApplication)
#include "tst_Looks.moc"
