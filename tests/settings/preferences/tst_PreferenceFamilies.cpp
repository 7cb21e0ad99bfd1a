// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QLabel>
#include <QLineEdit>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QString semicolons = u"Modern compressors drop every semicolon that is not needed."_s;
const QString modernOnly = u"Needs the modern compressors."_s;
const QString noBrotli = u"Needs the program brotli, which is not installed."_s;

/// The reason for which a check box is greyed; empty if it is not.
QString reasonFor(PreferenceBench &bench, const char *name)
{
    const auto *checker = bench.control<QCheckBox>(name);
    if (checker->isEnabled())
        return checker->toolTip() == semicolons || checker->toolTip() == modernOnly ? u"not greyed"_s
                                                                                    : QString();
    return checker->toolTip();
}

/// Of those for semicolons, source maps and comments.
QStringList reasons(PreferenceBench &bench)
{
    return {reasonFor(bench, "preserveSemiChecker"), reasonFor(bench, "sourceMapChecker"),
            reasonFor(bench, "keepCommentsChecker")};
}

const QStringList inClassic{QString(), modernOnly, modernOnly};
const QStringList inModern{semicolons, QString(), QString()};

} // namespace

/// The pop-up of the compressors, what depends on it, and the example of an output.
class tst_PreferenceFamilies final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stored_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("modern");
        QTest::newRow("nothing") << QJsonValue() << false;
        QTest::newRow("classic") << QJsonValue(u"classic"_s) << false;
        QTest::newRow("modern") << QJsonValue(u"modern"_s) << true;
        QTest::newRow("Modern") << QJsonValue(u"Modern"_s) << false;
        QTest::newRow("empty") << QJsonValue(QString()) << false;
        QTest::newRow("true") << QJsonValue(true) << false;
        QTest::newRow("1") << QJsonValue(1) << false;
    }

    void stored()
    {
        QFETCH(const QJsonValue, stored);
        QFETCH(const bool, modern);
        PreferenceBench bench;
        if (!stored.isNull())
            bench.store.setObject(stored, compressorsKeyString);
        bench.writes.clear();
        bench.load();
        const auto *popup = bench.control<QComboBox>("compressorsPopupButton");
        QCOMPARE(popup->count(), 2);
        QCOMPARE(popup->itemText(0), u"Classic (YUI Compressor, htmlcompressor)"_s);
        QCOMPARE(popup->itemText(1), u"Modern (esbuild, minify)"_s);
        QCOMPARE(popup->currentIndex(), modern ? 1 : 0);
        QCOMPARE(popup->toolTip().simplified(),
                 u"Classic knows JavaScript up to ECMAScript 3 and simple CSS, Modern knows today's."_s);
        QCOMPARE(reasons(bench), modern ? inModern : inClassic);
        QCOMPARE(bench.writes.count(), 0);
    }

    void picked()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("compressorsPopupButton");
        QVERIFY(pick(popup, 1));
        QCOMPARE(bench.store.objectForKey(compressorsKeyString), QJsonValue(u"modern"_s));
        QCOMPARE(reasons(bench), inModern);
        QVERIFY(pick(popup, 0));
        QCOMPARE(bench.store.objectForKey(compressorsKeyString), QJsonValue(u"classic"_s));
        QCOMPARE(reasons(bench), inClassic);
        QCOMPARE(bench.writes.count(), 2);
    }

    void changedFromOutside()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        bench.store.watchFile();
        {
            SettingsStore other(bench.filePath());
            other.setObject(u"modern"_s, compressorsKeyString);
        }
        QTRY_COMPARE(bench.control<QComboBox>("compressorsPopupButton")->currentIndex(), 1);
        QCOMPARE(reasons(bench), inModern);
        bench.store.setObject(u"none"_s, compressorsKeyString);
        QCOMPARE(bench.control<QComboBox>("compressorsPopupButton")->currentIndex(), 0);
        QCOMPARE(reasons(bench), inClassic);
    }

    void greyedSwitchesKeepTheirSettings()
    {
        PreferenceBench bench;
        bench.store.setBool(true, preserveSemiSwitcherKeyString);
        QVERIFY(bench.show());
        QVERIFY(pick(bench.control<QComboBox>("compressorsPopupButton"), 1));
        auto *checker = bench.control<QCheckBox>("preserveSemiChecker");
        QTest::mouseClick(checker, Qt::LeftButton, {}, QPoint(8, checker->height() / 2));
        QVERIFY(checker->isChecked());
        QVERIFY(bench.store.isTrue(preserveSemiSwitcherKeyString));
    }

    void brotli_data()
    {
        QTest::addColumn<QString>("family");
        QTest::newRow("classic") << u"classic"_s;
        QTest::newRow("modern") << u"modern"_s;
    }

    void brotli()
    {
        QFETCH(const QString, family);
        PreferenceBench bench;
        bench.store.setObject(family, compressorsKeyString);
        bench.load();
        QCOMPARE(reasonFor(bench, "brotliChecker"), QString());
        bench.hasBrotli = false;
        bench.load();
        QCOMPARE(reasonFor(bench, "brotliChecker"), noBrotli);
    }

    void brotliThatIsGoneCanBeSwitchedOff()
    {
        PreferenceBench bench;
        bench.hasBrotli = false;
        bench.store.setBool(true, brotliCheckerKeyString);
        QVERIFY(bench.show());
        auto *checker = bench.control<QCheckBox>("brotliChecker");
        QVERIFY(checker->isEnabled());
        QCOMPARE(checker->toolTip(), noBrotli);
        checker->click();
        QVERIFY(bench.store.isFalse(brotliCheckerKeyString));
        QVERIFY(!checker->isEnabled());
    }

    void exampleFollowsTheSettings()
    {
        PreferenceBench bench;
        bench.output = u"app.min.js"_s;
        QVERIFY(bench.show());
        const auto *example = bench.control<QLabel>("exampleText");
        const auto shown = [example] { return example->text().remove(QChar(0x2066)).remove(QChar(0x2069)); };
        QCOMPARE(bench.sources.constFirst(), u"app.js"_s);
        QCOMPARE(shown(), u"app.js \u2192 app.min.js"_s);
        bench.output = QDir::homePath() + u"/dist/app-x.js"_s;
        QTest::keyClick(bench.control<QLineEdit>("suffixField"), 'x');
        QCOMPARE(shown(), u"app.js \u2192 ~/dist/app-x.js"_s);
        QCOMPARE(example->toolTip(), *bench.output);
        bench.output = u"app.js"_s;
        bench.store.setObject(QString(), suffixKeyString);
        QCOMPARE(shown(), u"app.js \u2192 app.js, replaces the source"_s);
        bench.output.reset();
        bench.store.setObject(1, suffixSwitcherKeyString);
        QCOMPARE(shown(), u"app.js \u2192 no output"_s);
    }

    void aLongExampleLeavesTheWindowAlone()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        const QSize before = bench.controller->window()->size();
        bench.output = u"/out/"_s + QString(250, u'w') + u"/app.min.js"_s;
        bench.store.setObject(u"1"_s, suffixKeyString);
        QCoreApplication::processEvents();
        QCOMPARE(bench.controller->window()->size(), before);
        QCOMPARE(bench.controller->window()->sizeHint(), before);
        QCOMPARE(bench.control<QLabel>("exampleText")->toolTip(), *bench.output);
    }

    void theExampleIsMirrored()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        PreferenceBench bench;
        bench.output = u"app.min.js"_s;
        bench.load();
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QVERIFY(bench.control<QLabel>("exampleText")->text().contains(u'\u2190'));
    }
};

BREVANT_TEST(tst_PreferenceFamilies, QApplication)
#include "tst_PreferenceFamilies.moc"
