// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/BVImageView.h"
#include "tests/TestClass.h"
#include "widgets/BackgroundDrag.h"

#include <QApplication>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

using brevant::BackgroundDrag;
using brevant::BVImageView;

namespace {

QImage grabbed(QWidget &view, qreal scale = 1)
{
    QImage image(view.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(view.palette().color(QPalette::Window));
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QPalette dark()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(40, 40, 40));
    palette.setColor(QPalette::WindowText, QColor(240, 240, 240));
    return palette;
}

} // namespace

class tst_BVImageView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bothSpellingsAreOnePicture()
    {
        BVImageView view;
        view.resize(440, 400);
        view.setImageNamed(u"dropN"_s);
        QCOMPARE(view.imageName(), u"dropN"_s);
        const QImage plain = grabbed(view);
        view.setImageNamed(u"dropP"_s);
        view.setImageNamed(u"dropN.png"_s);
        QCOMPARE(view.imageName(), u"dropN"_s);
        QCOMPARE(grabbed(view), plain);
        view.setImageNamed(u"dropP.png"_s);
        QCOMPARE(view.imageName(), u"dropP"_s);
    }

    void statesLookDifferent()
    {
        BVImageView view;
        view.resize(440, 400);
        const QImage none = grabbed(view);
        view.setImageNamed(u"dropN"_s);
        const QImage normal = grabbed(view);
        view.setImageNamed(u"dropP"_s);
        const QImage lit = grabbed(view);
        QVERIFY(none != normal);
        QVERIFY(normal != lit);
    }

    void missingPictureShowsNothing()
    {
        BVImageView view;
        view.resize(440, 400);
        const QImage none = grabbed(view);
        view.setImageNamed(u"no such picture"_s);
        QVERIFY(view.imageRect().isEmpty());
        QCOMPARE(grabbed(view), none);
    }

    void pictureIsCentredAndKeepsItsAspect_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("full");
        QTest::newRow("room enough") << QSize(1200, 900) << true;
        QTest::newRow("as the window opens") << QSize(520, 450) << true;
        QTest::newRow("narrow") << QSize(300, 900) << false;
        QTest::newRow("low") << QSize(900, 200) << false;
    }

    void pictureIsCentredAndKeepsItsAspect()
    {
        QFETCH(const QSize, size);
        QFETCH(const bool, full);
        BVImageView view;
        view.setImageNamed(u"dropN"_s);
        view.resize(size);
        const QRectF rect = view.imageRect();
        QVERIFY(QRectF(view.rect()).contains(rect));
        QVERIFY((rect.center() - QRectF(view.rect()).center()).manhattanLength() <= 1);
        QCOMPARE(rect.width() / rect.height(), 400.0 / 330.0);
        QCOMPARE(rect.width() == 400.0, full);
        view.resize(20, 20);
        QVERIFY(view.imageRect().isEmpty());
    }

    void sizesAndScalesDoNotMix()
    {
        const auto fresh = [](QSize size, qreal scale) {
            BVImageView view;
            view.resize(size);
            view.setImageNamed(u"dropN"_s);
            return grabbed(view, scale);
        };
        BVImageView view;
        view.setImageNamed(u"dropN"_s);
        // The third needs as many pixels as the second.
        const std::vector<std::pair<QSize, qreal>> steps{
            {{440, 400}, 1}, {{232, 400}, 1}, {{132, 400}, 2}, {{600, 500}, 1}, {{600, 500}, 1.25}};
        for (const auto &[size, scale] : steps) {
            view.resize(size);
            QCOMPARE(grabbed(view, scale), fresh(size, scale));
        }
    }

    void isSharpAtTwiceTheScale()
    {
        BVImageView view;
        view.resize(440, 400);
        view.setImageNamed(u"dropN"_s);
        const QImage once = grabbed(view);
        const QImage twice = grabbed(view, 2);
        const QImage blownUp = once.scaled(twice.size());
        QVERIFY(twice != once);
        // A picture drawn at its size has fewer blended pixels than one that was enlarged.
        const auto inkless = [&view](const QImage &image) {
            const QRgb ground = view.palette().color(QPalette::Window).rgb();
            int count = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    count += image.pixel(x, y) == ground ? 1 : 0;
            }
            return count;
        };
        QVERIFY2(inkless(twice) > inkless(blownUp), "the larger picture is not drawn anew");
    }

    void darkWindowShowsTheDarkTwin()
    {
        BVImageView view;
        view.resize(440, 400);
        view.setPalette(dark());
        view.setImageNamed(u"dropN"_s);
        view.setWords(u"Drop CSS files"_s);
        const QImage atOnce = grabbed(view);
        BVImageView later;
        later.resize(440, 400);
        later.setImageNamed(u"dropN"_s);
        later.setWords(u"Drop CSS files"_s);
        const QRectF rect = later.imageRect();
        // The light picture on the dark ground, to compare with.
        QImage light = grabbed(later);
        later.setPalette(dark());
        QCOMPARE(grabbed(later), atOnce);
        QCOMPARE(later.imageRect(), rect);
        later.setPalette(QPalette());
        QCOMPARE(grabbed(later), light);
        QVERIFY(atOnce != light);
        int brightest = 0;
        for (int y = 0; y < atOnce.height(); ++y) {
            for (int x = 0; x < atOnce.width(); ++x)
                brightest = std::max(brightest, qGray(atOnce.pixel(x, y)));
        }
        QVERIFY2(brightest > 160, "the words would not be readable on a dark window");
    }

    void dragMovesTheWindow()
    {
        QWidget window;
        new BackgroundDrag(&window); // owned by the window, as the main window's
        BVImageView view(&window);
        view.resize(440, 400);
        window.show();
        QVERIFY(view.mouseDownCanMoveWindow());
        const QPoint place = window.pos();
        QTest::mousePress(&view, Qt::LeftButton, {}, {100, 100});
        QTest::mouseMove(&view, {101, 101});
        QCOMPARE(window.pos(), place);
        const QPoint step(QApplication::startDragDistance(), 1);
        QTest::mouseMove(&view, QPoint(100, 100) + step);
        QCOMPARE(window.pos(), place + step);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, {100, 100});
        QTest::mousePress(&view, Qt::RightButton, {}, {100, 100});
        QTest::mouseMove(&view, {200, 200});
        QCOMPARE(window.pos(), place + step);
    }

    void wordsAreWritten()
    {
        BVImageView view;
        view.resize(440, 400);
        view.setImageNamed(u"dropN"_s);
        const QImage without = grabbed(view);
        view.setWords(u"Drop CSS files"_s);
        QVERIFY(view.accessibleName().startsWith(u"Drop CSS files or folders here"_s));
        const QImage with = grabbed(view);
        QVERIFY(with != without);
        view.setWords(QString(u"Drop "_s).append(QString(400, u'W')));
        const QImage longer = grabbed(view);
        QVERIFY(longer != with);
        // However many they are, they stay within the frame.
        const QRect frame = view.imageRect().toRect();
        for (const int left : {frame.left(), frame.right() - 12}) {
            const QRect edge(left, frame.top(), 12, frame.height());
            QCOMPARE(longer.copy(edge), without.copy(edge));
        }
        QFont font = view.font();
        font.setItalic(!font.italic());
        view.setFont(font);
        QVERIFY(grabbed(view) != longer);
    }
};

BREVANT_TEST(tst_BVImageView, QApplication)
#include "tst_BVImageView.moc"
