// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PathString.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;

class tst_PathString final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parts_data();
    void parts();
    void join_data();
    void join();
    void withExtension();
    void expandTilde_data();
    void expandTilde();
};

void tst_PathString::parts_data()
{
    QTest::addColumn<QString>("lastComponent");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("stem");
    QTest::addColumn<QString>("folder");
    const auto row = [](const char *path, const char *lastComponent, const char *extension, const char *stem,
                        const char *folder) {
        QTest::newRow(path) << QString::fromUtf8(lastComponent) << QString::fromUtf8(extension)
                            << QString::fromUtf8(stem) << QString::fromUtf8(folder);
    };
    row("/w/site.min.css", "site.min.css", "css", "/w/site.min", "/w");
    row("/w/site.min.css/", "site.min.css", "css", "/w/site.min", "/w");
    row("/w/site.css///", "site.css", "css", "/w/site", "/w");
    row("a.css", "a.css", "css", "a", "");
    row("/a.css", "a.css", "css", "/a", "/");
    row("//a.css", "a.css", "css", "//a", "/");
    row("/w//a.css", "a.css", "css", "/w//a", "/w");
    row("a/b.js", "b.js", "js", "a/b", "a");
    row("/", "/", "", "/", "/");
    row("//", "/", "", "/", "/");
    row("", "", "", "", "");
    row("/w", "w", "", "/w", "/");
    row("/w/", "w", "", "/w", "/");
    row("/w/Makefile", "Makefile", "", "/w/Makefile", "/w");
    row("/w/.css", ".css", "", "/w/.css", "/w");
    row(".css", ".css", "", ".css", "");
    row(".css/", ".css", "", ".css", "");
    row("/w/.a.css", ".a.css", "css", "/w/.a", "/w");
    row("..css", "..css", "css", ".", "");
    row("/w/a.", "a.", "", "/w/a", "/w");
    row("/w/a..css", "a..css", "css", "/w/a.", "/w");
    row("/w/.hidden/x", "x", "", "/w/.hidden/x", "/w/.hidden");
    row("/w/a.b/c", "c", "", "/w/a.b/c", "/w/a.b");
    row("/w/a.b/c.js", "c.js", "js", "/w/a.b/c", "/w/a.b");
    row("/w/.b/.js", ".js", "", "/w/.b/.js", "/w/.b");
    row("/w/STYLE.CSS", "STYLE.CSS", "CSS", "/w/STYLE", "/w");
    row("/w/a b\nc.css", "a b\nc.css", "css", "/w/a b\nc", "/w");
    row("/w/\xc3\xbc.css", "\xc3\xbc.css", "css", "/w/\xc3\xbc", "/w");
    row("~/a.css", "a.css", "css", "~/a", "~");
    row("/w/../a.css", "a.css", "css", "/w/../a", "/w/..");
}

void tst_PathString::parts()
{
    const QString path = QString::fromUtf8(QTest::currentDataTag());
    QTEST(PathString::lastComponent(path).toString(), "lastComponent");
    QTEST(PathString::extension(path).toString(), "extension");
    QTEST(PathString::stem(path).toString(), "stem");
    QTEST(PathString::folder(path).toString(), "folder");
}

void tst_PathString::join_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const QString file = QStringLiteral("a/b.css");
    QTest::newRow("plain") << QStringLiteral("/w") << file << QStringLiteral("/w/a/b.css");
    QTest::newRow("separator at the end") << QStringLiteral("/w/") << file << QStringLiteral("/w/a/b.css");
    QTest::newRow("many at the end") << QStringLiteral("/w///") << file << QStringLiteral("/w/a/b.css");
    QTest::newRow("inside nothing is touched")
        << QStringLiteral("/w//x/../y") << file << QStringLiteral("/w//x/../y/a/b.css");
    QTest::newRow("top") << QStringLiteral("/") << file << QStringLiteral("/a/b.css");
    QTest::newRow("relative") << QStringLiteral("w") << file << QStringLiteral("w/a/b.css");
    QTest::newRow("here") << QStringLiteral(".") << file << QStringLiteral("./a/b.css");
}

void tst_PathString::join()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QTEST(PathString::join(folder, name), "expected");
}

void tst_PathString::withExtension()
{
    QCOMPARE(PathString::withExtension(u"/w/a.css", u"gz"), QStringLiteral("/w/a.css.gz"));
    QCOMPARE(PathString::withExtension(u"a", u"css"), QStringLiteral("a.css"));
}

void tst_PathString::expandTilde_data()
{
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *path, const char *expected) {
        QTest::newRow(path) << QString::fromUtf8(expected);
    };
    row("~", "/home/of/me");
    row("~/", "/home/of/me/");
    row("~/a.css", "/home/of/me/a.css");
    row("~root", "/root");
    row("~root/a.css", "/root/a.css");
    row("~nobody-has-this-name/a.css", "~nobody-has-this-name/a.css");
    row("~\xc3\xbc/a.css", "~\xc3\xbc/a.css");
    row("/w/~/a.css", "/w/~/a.css");
    row("a~", "a~");
    row("", "");
}

void tst_PathString::expandTilde()
{
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/home/of/me");
    const QString expanded = PathString::expandTilde(QString::fromUtf8(QTest::currentDataTag()));
    qputenv("HOME", home);
    QTEST(expanded, "expected");
}

BREVANT_TEST(tst_PathString, QCoreApplication)
#include "tst_PathString.moc"
