// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PathString.h"
#include "tests/TestClass.h"

#include <QFile>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_PathString final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parts_data()
    {
        QTest::addColumn<QString>("lastComponent");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("stem");
        QTest::addColumn<QString>("folder");
        const auto row = [](const char *path, const char *lastComponent, const char *extension,
                            const char *stem, const char *folder) {
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

    void parts()
    {
        const QString path = QString::fromUtf8(QTest::currentDataTag());
        QTEST(PathString::lastComponent(path).toString(), "lastComponent");
        QTEST(PathString::extension(path).toString(), "extension");
        QTEST(PathString::stem(path).toString(), "stem");
        QTEST(PathString::folder(path).toString(), "folder");
    }

    void join_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        const QString file = u"a/b.css"_s;
        QTest::newRow("plain") << u"/w"_s << file << u"/w/a/b.css"_s;
        QTest::newRow("separator at the end") << u"/w/"_s << file << u"/w/a/b.css"_s;
        QTest::newRow("many at the end") << u"/w///"_s << file << u"/w/a/b.css"_s;
        QTest::newRow("inside nothing is touched") << u"/w//x/../y"_s << file << u"/w//x/../y/a/b.css"_s;
        QTest::newRow("top") << u"/"_s << file << u"/a/b.css"_s;
        QTest::newRow("relative") << u"w"_s << file << u"w/a/b.css"_s;
        QTest::newRow("here") << u"."_s << file << u"./a/b.css"_s;
    }

    void join()
    {
        QFETCH(QString, folder);
        QFETCH(QString, name);
        QTEST(PathString::join(folder, name), "expected");
    }

    void withExtension()
    {
        QCOMPARE(PathString::withExtension(u"/w/a.css", u"gz"), u"/w/a.css.gz"_s);
        QCOMPARE(PathString::withExtension(u"a", u"css"), u"a.css"_s);
    }

    void expandTilde_data()
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

    void expandTilde()
    {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/home/of/me");
        const QString expanded = PathString::expandTilde(QString::fromUtf8(QTest::currentDataTag()));
        qputenv("HOME", home);
        QTEST(expanded, "expected");
    }

    void withoutHome()
    {
        const QByteArray home = qgetenv("HOME");
        qunsetenv("HOME");
        const QString expanded = PathString::expandTilde(u"~/a.css"_s);
        qputenv("HOME", home);
        QCOMPARE(expanded, QFile::decodeName(::getpwuid(::getuid())->pw_dir) + u"/a.css"_s);
    }

    void withTilde_data()
    {
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *path, const char *expected) {
            QTest::newRow(path) << QString::fromUtf8(expected);
        };
        row("/home/of/me", "~");
        row("/home/of/me/dist/a.css", "~/dist/a.css");
        row("/home/of/mere/a.css", "/home/of/mere/a.css");
        row("/w/home/of/me/a.css", "/w/home/of/me/a.css");
        row("a.css", "a.css");
        row("", "");
    }

    void withTilde()
    {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/home/of/me");
        const QString shortened = PathString::withTilde(QString::fromUtf8(QTest::currentDataTag()));
        qputenv("HOME", home);
        QTEST(shortened, "expected");
    }
};

BREVANT_TEST(tst_PathString, QCoreApplication)
#include "tst_PathString.moc"
