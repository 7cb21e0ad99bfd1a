// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/ExpandedPathToIconTransformer.h"
#include "tests/TestClass.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using brevant::ExpandedPathToIconTransformer;

namespace {

QImage imageOf(const QIcon &icon, qreal scale = 1)
{
    return icon.pixmap(QSize(16, 16), scale).toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage transformed(const QString &path)
{
    return imageOf(ExpandedPathToIconTransformer::transformedValue(path));
}

bool isEmpty(const QImage &image)
{
    QImage clear(image.size(), QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    clear.setDevicePixelRatio(image.devicePixelRatio());
    return image == clear;
}

} // namespace

class tst_ExpandedPathToIconTransformer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_home.isValid());
        qputenv("HOME", m_home.path().toLocal8Bit());
        QVERIFY(QDir(m_home.path()).mkpath(u"site.css"_s));
        QVERIFY(QDir(m_home.path()).mkpath(u"out"_s));
        QFile file(m_home.filePath(u"README"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text\n");
    }

    void goesOneWayOnly()
    {
        QVERIFY(!ExpandedPathToIconTransformer::allowsReverseTransformation());
        QCOMPARE(ExpandedPathToIconTransformer::transformedValueClass(), QMetaType::fromType<QIcon>());
    }

    void noPathNoIcon() { QVERIFY(ExpandedPathToIconTransformer::transformedValue(std::nullopt).isNull()); }

    void iconsAreSixteenBySixteen_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("home") << u"~"_s;
        QTest::newRow("folder under home") << u"~/out"_s;
        QTest::newRow("nothing there, no extension") << u"/no/such/folder"_s;
        QTest::newRow("nothing there, an extension") << u"/no/such/file.css"_s;
        QTest::newRow("a file without extension") << u"~/README"_s;
        QTest::newRow("empty") << QString();
    }

    void iconsAreSixteenBySixteen()
    {
        QFETCH(const QString, path);
        const QIcon icon = ExpandedPathToIconTransformer::transformedValue(path);
        QCOMPARE(icon.actualSize(QSize(64, 64)), QSize(16, 16));
        QCOMPARE(imageOf(icon).size(), QSize(16, 16));
        QCOMPARE(imageOf(icon, 2).size(), QSize(32, 32));
        QVERIFY(!isEmpty(imageOf(icon)));
        QVERIFY(!isEmpty(imageOf(icon, 2)));
    }

    void folderAndFileDiffer()
    {
        const QImage folder = imageOf(QApplication::style()->standardIcon(QStyle::SP_DirIcon));
        const QImage file = imageOf(QApplication::style()->standardIcon(QStyle::SP_FileIcon));
        QVERIFY(folder != file);
        QCOMPARE(transformed(u"/no/such/folder"_s), folder);
        QCOMPARE(transformed(m_home.filePath(u"out"_s)), folder);
        // What exists counts more than what the name says, and alone if there is no extension.
        QCOMPARE(transformed(m_home.filePath(u"site.css"_s)), folder);
        QCOMPARE(transformed(m_home.filePath(u"README"_s)), file);
        QCOMPARE(transformed(u"/no/such/file.css"_s), file);
    }

    void tildeIsExpanded()
    {
        QCOMPARE(transformed(u"~/README"_s), transformed(m_home.filePath(u"README"_s)));
        QVERIFY(transformed(u"~/README"_s) != transformed(u"/no/README"_s));
    }

    void themeIsAsked()
    {
        QTemporaryDir themes;
        const QDir theme(themes.filePath(u"probe"_s));
        QVERIFY(theme.mkpath(u"16"_s));
        QFile index(theme.filePath(u"index.theme"_s));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=probe\nDirectories=16\n[16]\nSize=16\nType=Fixed\n");
        index.close();
        const auto addIcon = [&theme](const QString &name, QColor colour) {
            QImage image(16, 16, QImage::Format_ARGB32);
            image.fill(colour);
            return image.save(theme.filePath(u"16/"_s + name + u".png"_s));
        };
        QVERIFY(addIcon(u"folder"_s, Qt::blue));
        QVERIFY(addIcon(u"user-home"_s, Qt::red));
        QVERIFY(addIcon(u"text-css"_s, Qt::green));
        const QString themeBefore = QIcon::themeName();
        const QStringList pathsBefore = QIcon::themeSearchPaths();
        QIcon::setThemeSearchPaths({themes.path()});
        QIcon::setThemeName(u"probe"_s);
        const QColor folder = transformed(u"/no/such/folder"_s).pixelColor(8, 8);
        const QColor home = transformed(u"~"_s).pixelColor(8, 8);
        const QColor css = transformed(u"/no/such/file.css"_s).pixelColor(8, 8);
        QIcon::setThemeSearchPaths(pathsBefore);
        QIcon::setThemeName(themeBefore);
        QCOMPARE(folder, QColor(Qt::blue));
        QCOMPARE(home, QColor(Qt::red));
        QCOMPARE(css, QColor(Qt::green));
    }

private:
    QTemporaryDir m_home;
};

BREVANT_TEST(tst_ExpandedPathToIconTransformer, QApplication)
#include "tst_ExpandedPathToIconTransformer.moc"
