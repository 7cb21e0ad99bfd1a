// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/SourceMap.h"
#include "queue/FileKind.h"
#include "tests/TestClass.h"

#include <QTest>

#include <sys/mman.h>
#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_SourceMap final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isCutOff_data()
    {
        QTest::addColumn<QByteArray>("tail");
        QTest::addColumn<QByteArray>("rest");
        QTest::addColumn<bool>("isFound");

        const QByteArray data =
            "# sourceMappingURL=data:application/json;base64," + QByteArray("{\"version\":3}").toBase64();
        QTest::newRow("script") << "a();\n//" + data << "a();"_ba << true;
        QTest::newRow("style sheet") << "a{b:c}\n/*" + data + " */"
                                     << "a{b:c}"_ba << true;
        QTest::newRow("two") << "a();//" + data + "\n//" + data << "a();//" + data << true;
        QTest::newRow("none") << "a();"_ba
                              << "a();"_ba << false;
        QTest::newRow("nothing") << ""_ba
                                 << ""_ba << false;
        QTest::newRow("of a file") << "a();//# sourceMappingURL=a.map"_ba
                                   << "a();//# sourceMappingURL=a.map"_ba << false;
    }

    void isCutOff()
    {
        QFETCH(QByteArray, tail);
        QFETCH(const bool, isFound);
        const QByteArray map = takeSourceMap(tail, u"/s/a.js"_s, u"/s/a.min.js"_s);
        QCOMPARE(map, isFound ? R"({"file":"a.min.js","sources":["a.js"],"version":3})"_ba : ""_ba);
        QTEST(tail, "rest");
    }

    void nothingIsReadAroundAShortText()
    {
        const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        void *const pages = ::mmap(nullptr, 3 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        QVERIFY(pages != MAP_FAILED);
        char *const begin = static_cast<char *>(pages) + page;
        QCOMPARE(::mprotect(begin, page, PROT_READ | PROT_WRITE), 0);
        for (const qsizetype size : {0, 1, 5}) {
            for (char *const text : {begin, begin + page - size}) {
                QByteArray output = QByteArray::fromRawData(text, size);
                QCOMPARE(takeSourceMap(output, u"/s/a.js"_s, u"/s/a.min.js"_s), QByteArray());
                QCOMPARE(output.size(), size);
            }
        }
        ::munmap(pages, 3 * page);
    }

    void namesTheSourceAsSeenFromTheOutput_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QByteArray>("named");

        QTest::newRow("beside it") << u"/s/a.js"_s << u"/s/a.min.js"_s << "a.js"_ba;
        QTest::newRow("in another folder") << u"/s/js/a.js"_s << u"/s/out/a.js"_s << "../js/a.js"_ba;
        QTest::newRow("at the root") << u"/a.js"_s << u"/out/a.js"_s << "../a.js"_ba;
        QTest::newRow("space and umlaut") << u"/s/ä b.js"_s << u"/s/x.js"_s << "%C3%A4%20b.js"_ba;
        QTest::newRow("like a scheme") << u"/s/a:b.js"_s << u"/s/x.js"_s << "a%3Ab.js"_ba;
        QTest::newRow("quotes and signs") << u"/s/a\"?#%.js"_s << u"/s/x.js"_s << "a%22%3F%23%25.js"_ba;
    }

    void namesTheSourceAsSeenFromTheOutput()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, output);
        QFETCH(const QByteArray, named);
        QByteArray text = "a//# sourceMappingURL=data:application/json;base64,e30=";
        const QByteArray map = takeSourceMap(text, source, output);
        QVERIFY2(map.contains("\"sources\":[\"" + named + "\"]"), map.constData());
    }

    void isLinkedFromTheOutput()
    {
        QCOMPARE(sourceMapLink(*kindOf(u"a.js"), u"/s/a b.min.js"_s),
                 "\n//# sourceMappingURL=a%20b.min.js.map"_ba);
        QCOMPARE(sourceMapLink(*kindOf(u"a.css"), u"/s/a.css"_s), "\n/*# sourceMappingURL=a.css.map */"_ba);
        QCOMPARE(sourceMapPath(u"/s/a.css"_s), u"/s/a.css.map"_s);
    }
};

BREVANT_TEST(tst_SourceMap, QCoreApplication)
#include "tst_SourceMap.moc"
