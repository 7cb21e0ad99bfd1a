// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/EntrySettings.h"
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QTest>

#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

EntrySettings::Matches below(const QString &folder)
{
    return [folder](const QString &entry) { return entry.startsWith(folder + u'/'); };
}

} // namespace

/// Which store answers for which entry.
class tst_EntrySettings final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(setUp());
        m_store = makeStore();
        m_store->setOverride(u"-m"_s, suffixKeyString);
    }

    void withoutRulesThereIsOneStore()
    {
        const EntrySettings settings(*m_store);
        QCOMPARE(&settings.of(u"/w/a.css"_s), m_store.get());
        QCOMPARE(settings.known(), std::vector<const SettingsStore *>{m_store.get()});
    }

    void laterRulesWin()
    {
        EntrySettings settings(*m_store);
        settings.addRule(below(u"/w"_s), {{suffixKeyString, u"-w"_s}, {gzipCheckerKeyString, true}});
        settings.addRule(below(u"/w/x"_s), {{suffixKeyString, u"-x"_s}, {brotliCheckerKeyString, true}});
        const auto valuesOf = [&settings](const QString &entry) {
            const SettingsStore &store = settings.of(entry);
            return QVariantList{*store.stringForKey(suffixKeyString), store.isTrue(gzipCheckerKeyString),
                                store.isTrue(brotliCheckerKeyString),
                                *store.stringForKey(lineBreakKeyString)};
        };
        QCOMPARE(valuesOf(u"/a.css"_s), (QVariantList{u"-m"_s, false, false, u"500"_s}));
        QCOMPARE(valuesOf(u"/w/a.css"_s), (QVariantList{u"-w"_s, true, false, u"500"_s}));
        QCOMPARE(valuesOf(u"/w/x/a.css"_s), (QVariantList{u"-x"_s, true, true, u"500"_s}));
    }

    void sameSettingsAreOneStore()
    {
        EntrySettings settings(*m_store);
        settings.addRule(below(u"/w"_s), {{gzipCheckerKeyString, true}});
        settings.addRule(below(u"/x"_s), {});
        const EntrySettings copy = settings;
        const SettingsStore *const variant = &settings.of(u"/w/a.css"_s);
        QVERIFY(variant != m_store.get());
        QCOMPARE(&copy.of(u"/w/b.css"_s), variant);
        QCOMPARE(&settings.of(u"/x/a.css"_s), m_store.get());
        QCOMPARE(settings.of({u"/w/a.css"_s, u"/x/a.css"_s, u"/w/b.css"_s}),
                 (std::vector<const SettingsStore *>{variant, m_store.get()}));
        QCOMPARE(copy.known(), (std::vector<const SettingsStore *>{m_store.get(), variant}));
    }

    void whatTheUserSetsMeanwhileHolds()
    {
        EntrySettings settings(*m_store);
        settings.addRule(below(u"/w"_s), {{gzipCheckerKeyString, true}});
        const SettingsStore &variant = settings.of(u"/w/a.css"_s);
        m_store->setObject(u"80"_s, lineBreakKeyString);
        QCOMPARE(*variant.stringForKey(lineBreakKeyString), u"80"_s);
    }

    void severalThreadsAsk()
    {
        EntrySettings settings(*m_store);
        for (int i = 0; i < 20; ++i)
            settings.addRule(below(u"/%1"_s.arg(i)), {{suffixKeyString, u"-%1"_s.arg(i)}});
        std::atomic<int> wrong = 0;
        const auto ask = [&] {
            for (int i = 0; i < 2000; ++i) {
                const QString number = QString::number(i % 20);
                const SettingsStore &store = settings.of(u"/%1/a.css"_s.arg(number));
                wrong += store.stringForKey(suffixKeyString) == u"-"_s + number ? 0 : 1;
            }
        };
        std::thread other(ask);
        ask();
        other.join();
        QCOMPARE(wrong.load(), 0);
        QCOMPARE(settings.known().size(), 21U);
    }

    void aValueForEach()
    {
        struct Suffix {
            explicit Suffix(const SettingsStore &store) : text(*store.stringForKey(suffixKeyString)) {}
            QString text;
        };
        EntrySettings settings(*m_store);
        settings.addRule(below(u"/w"_s), {{gzipCheckerKeyString, true}});
        settings.addRule(below(u"/x"_s), {{suffixKeyString, u"-x"_s}});
        static_cast<void>(settings.of(u"/w/a.css"_s));
        BySettings<Suffix> suffixes(settings);
        m_store->setOverride(u"-n"_s, suffixKeyString);
        QCOMPARE(suffixes.of(u"/a.css"_s).text, u"-m"_s);
        QCOMPARE(suffixes.of(u"/w/a.css"_s).text, u"-m"_s);
        QCOMPARE(suffixes.of(u"/x/a.css"_s).text, u"-x"_s);
    }

private:
    std::unique_ptr<SettingsStore> m_store;
};

BREVANT_TEST(tst_EntrySettings, QCoreApplication)
#include "tst_EntrySettings.moc"
