// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/OutputExample.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::optional<QString>)

class tst_OutputExample final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { qputenv("HOME", "/home/of/me"); }

    void texts_data()
    {
        using Output = std::optional<QString>;
        QTest::addColumn<Output>("output");
        QTest::addColumn<QString>("expected"); // with [] for the isolates
        QTest::newRow("beside") << Output(u"app.min.js"_s) << u"[app.js] > [app.min.js]"_s;
        QTest::newRow("folder") << Output(u"/w/app.js"_s) << u"[app.js] > [/w/app.js]"_s;
        QTest::newRow("folder at home")
            << Output(u"/home/of/me/dist/app.min.js"_s) << u"[app.js] > [~/dist/app.min.js]"_s;
        QTest::newRow("home of another")
            << Output(u"/home/of/mere/app.js"_s) << u"[app.js] > [/home/of/mere/app.js]"_s;
        QTest::newRow("replaced") << Output(u"app.js"_s) << u"[app.js] > [app.js], replaces the source"_s;
        QTest::newRow("none") << Output() << u"[app.js] > no output"_s;
        QTest::newRow("place markers") << Output(u"app%1%2%3.js"_s) << u"[app.js] > [app%1%2%3.js]"_s;
    }

    void texts()
    {
        QFETCH(const std::optional<QString>, output);
        QFETCH(const QString, expected);
        const auto shown = [&output](Qt::LayoutDirection direction, QChar arrow) {
            QString text = exampleText(u"app.js"_s, output, direction);
            return text.replace(QChar(0x2066), u'[').replace(QChar(0x2069), u']').replace(arrow, u'>');
        };
        QCOMPARE(shown(Qt::LeftToRight, QChar(0x2192)), expected);
        QCOMPARE(shown(Qt::RightToLeft, QChar(0x2190)), expected);
    }
};

BREVANT_TEST(tst_OutputExample, QCoreApplication)
#include "tst_OutputExample.moc"
