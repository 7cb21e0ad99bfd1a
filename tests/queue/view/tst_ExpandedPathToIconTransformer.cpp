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
    void initTestCase();
    void goesOneWayOnly();
    void noPathNoIcon();
    void iconsAreSixteenBySixteen_data();
    void iconsAreSixteenBySixteen();
    void folderAndFileDiffer();
    void tildeIsExpanded();
    void themeIsAsked();

private:
    QTemporaryDir m_home;
};

void tst_ExpandedPathToIconTransformer::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("HOME", m_home.path().toLocal8Bit());
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral("site.css")));
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral("out")));
    QFile file(m_home.filePath(QStringLiteral("README")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("text\n");
}

void tst_ExpandedPathToIconTransformer::goesOneWayOnly()
{
    QVERIFY(!ExpandedPathToIconTransformer::allowsReverseTransformation());
    QCOMPARE(ExpandedPathToIconTransformer::transformedValueClass(), QMetaType::fromType<QIcon>());
}

void tst_ExpandedPathToIconTransformer::noPathNoIcon()
{
    QVERIFY(ExpandedPathToIconTransformer::transformedValue(std::nullopt).isNull());
}

void tst_ExpandedPathToIconTransformer::iconsAreSixteenBySixteen_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("home") << QStringLiteral("~");
    QTest::newRow("folder under home") << QStringLiteral("~/out");
    QTest::newRow("nothing there, no extension") << QStringLiteral("/no/such/folder");
    QTest::newRow("nothing there, an extension") << QStringLiteral("/no/such/file.css");
    QTest::newRow("a file without extension") << QStringLiteral("~/README");
    QTest::newRow("empty") << QString();
}

void tst_ExpandedPathToIconTransformer::iconsAreSixteenBySixteen()
{
    QFETCH(const QString, path);
    const QIcon icon = ExpandedPathToIconTransformer::transformedValue(path);
    QCOMPARE(icon.actualSize(QSize(64, 64)), QSize(16, 16));
    QCOMPARE(imageOf(icon).size(), QSize(16, 16));
    QCOMPARE(imageOf(icon, 2).size(), QSize(32, 32));
    QVERIFY(!isEmpty(imageOf(icon)));
    QVERIFY(!isEmpty(imageOf(icon, 2)));
}

void tst_ExpandedPathToIconTransformer::folderAndFileDiffer()
{
    const QImage folder = imageOf(QApplication::style()->standardIcon(QStyle::SP_DirIcon));
    const QImage file = imageOf(QApplication::style()->standardIcon(QStyle::SP_FileIcon));
    QVERIFY(folder != file);
    QCOMPARE(transformed(QStringLiteral("/no/such/folder")), folder);
    QCOMPARE(transformed(m_home.filePath(QStringLiteral("out"))), folder);
    // What exists counts more than what the name says, and alone if there is no extension.
    QCOMPARE(transformed(m_home.filePath(QStringLiteral("site.css"))), folder);
    QCOMPARE(transformed(m_home.filePath(QStringLiteral("README"))), file);
    QCOMPARE(transformed(QStringLiteral("/no/such/file.css")), file);
}

void tst_ExpandedPathToIconTransformer::tildeIsExpanded()
{
    QCOMPARE(transformed(QStringLiteral("~/README")), transformed(m_home.filePath(QStringLiteral("README"))));
    QVERIFY(transformed(QStringLiteral("~/README")) != transformed(QStringLiteral("/no/README")));
}

void tst_ExpandedPathToIconTransformer::themeIsAsked()
{
    QTemporaryDir themes;
    const QDir theme(themes.filePath(QStringLiteral("probe")));
    QVERIFY(theme.mkpath(QStringLiteral("16")));
    QFile index(theme.filePath(QStringLiteral("index.theme")));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=probe\nDirectories=16\n[16]\nSize=16\nType=Fixed\n");
    index.close();
    const auto addIcon = [&theme](const QString &name, QColor colour) {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(colour);
        return image.save(theme.filePath(QStringLiteral("16/") + name + QStringLiteral(".png")));
    };
    QVERIFY(addIcon(QStringLiteral("folder"), Qt::blue));
    QVERIFY(addIcon(QStringLiteral("user-home"), Qt::red));
    QVERIFY(addIcon(QStringLiteral("text-css"), Qt::green));
    const QString themeBefore = QIcon::themeName();
    const QStringList pathsBefore = QIcon::themeSearchPaths();
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(QStringLiteral("probe"));
    const QColor folder = transformed(QStringLiteral("/no/such/folder")).pixelColor(8, 8);
    const QColor home = transformed(QStringLiteral("~")).pixelColor(8, 8);
    const QColor css = transformed(QStringLiteral("/no/such/file.css")).pixelColor(8, 8);
    QIcon::setThemeSearchPaths(pathsBefore);
    QIcon::setThemeName(themeBefore);
    QCOMPARE(folder, QColor(Qt::blue));
    QCOMPARE(home, QColor(Qt::red));
    QCOMPARE(css, QColor(Qt::green));
}

BREVANT_TEST(tst_ExpandedPathToIconTransformer, QApplication)
#include "tst_ExpandedPathToIconTransformer.moc"
