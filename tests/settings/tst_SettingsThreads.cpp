// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// One store and many threads. Worth most under the thread sanitizer.
namespace {

/// Reads until told to stop; counts values that nobody has ever set.
class Readers final {
public:
    explicit Readers(const SettingsStore &store)
    {
        for (int i = 0; i < 4; ++i)
            m_threads.emplace_back([this, &store] { read(store); });
    }
    ~Readers() { stop(); }
    Readers(const Readers &) = delete;
    Readers &operator=(const Readers &) = delete;

    /// How many values were wrong.
    int stop()
    {
        m_stop = true;
        for (std::thread &thread : m_threads)
            thread.join();
        m_threads.clear();
        return m_wrong;
    }

private:
    void read(const SettingsStore &store)
    {
        int last = 0;
        while (!m_stop) {
            const int value = store.stringForKey(suffixKeyString).value_or(QString()).toInt();
            if (value < last) // they are set in rising order, so none may come back
                ++m_wrong;
            last = value;
            if (store.isTrue(gzipCheckerKeyString) == store.isFalse(gzipCheckerKeyString))
                ++m_wrong;
            if (!store.boolForKey(soundCheckerKeyString))
                ++m_wrong;
        }
    }

    std::atomic<bool> m_stop = false;
    std::atomic<int> m_wrong = 0;
    std::vector<std::thread> m_threads;
};

} // namespace

class tst_SettingsThreads final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setUp()); }

    void readersDuringWrites()
    {
        const auto store = makeStore();
        store->setObject(1, suffixKeyString);
        Readers readers(*store);
        for (int i = 2; i <= 100; ++i) {
            store->setObject(i, suffixKeyString);
            if (i % 10 == 0)
                store->synchronize();
        }
        store->synchronize();
        QCOMPARE(readers.stop(), 0);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"100"_s));
    }

    void readersDuringForeignChanges()
    {
        QVERIFY(writeFile(m_path, "{\"suffixKeyString\": 1}"));
        const auto store = makeStore();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        Readers readers(*store);
        for (int i = 2; i <= 100; ++i) {
            QVERIFY(replaceFile(m_path, "{\"suffixKeyString\": " + QByteArray::number(i) + "}"));
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
        }
        QCOMPARE(readers.stop(), 0);
        QTRY_COMPARE(notices.count(), 99); // one for each change, whoever of the five saw it first
        QCoreApplication::sendPostedEvents();
        QCOMPARE(notices.count(), 99);
    }

    void setFromManyThreads()
    {
        const auto store = makeStore();
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&store, thread] {
                const QLatin1StringView key = allSettingKeys[static_cast<std::size_t>(thread)].key;
                for (int i = 0; i < 50; ++i)
                    store->setObject(i, key);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        store->synchronize();
        QJsonObject expected;
        for (std::size_t i = 0; i < 4; ++i)
            expected.insert(allSettingKeys[i].key, 49);
        QCOMPARE(fileContent(), expected);
    }

    void synchronizeWhileOthersSet()
    {
        const auto store = makeStore();
        std::atomic<bool> stop = false;
        std::thread other([&] {
            for (int i = 0; !stop; ++i) {
                store->setObject(i, lineBreakKeyString);
                std::this_thread::yield();
            }
        });
        for (int i = 0; i < 20; ++i) {
            store->setObject(i, suffixKeyString);
            store->synchronize(); // for what was set so far, however much follows
            QCOMPARE(fileContent().value(suffixKeyString).toInt(-1), i);
        }
        stop = true;
        other.join();
    }

    void storesOnOneFile()
    {
        // As two processes would: neither takes away what the other has set.
        constexpr int rounds = 25;
        std::vector<std::thread> threads;
        for (std::size_t which = 0; which < 3; ++which) {
            threads.emplace_back([this, which] {
                const auto store = makeStore();
                for (int i = 1; i <= rounds; ++i) {
                    store->setObject(i, allSettingKeys[which].key);
                    store->synchronize();
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QJsonObject expected;
        for (std::size_t which = 0; which < 3; ++which)
            expected.insert(allSettingKeys[which].key, rounds);
        QCOMPARE(fileContent(), expected);
    }

    void endsWithAWriteUnderWay()
    {
        for (int i = 0; i < 30; ++i) {
            const auto store = makeStore();
            QVERIFY(replaceFile(m_path, "{\"suffixKeyString\": " + QByteArray::number(i) + "}"));
            store->setObject(i, lineBreakKeyString); // its writer finds the change above, and sends a notice
        }
        const QJsonObject expected{{suffixKeyString, 29}, {lineBreakKeyString, 29}};
        QCOMPARE(fileContent(), expected);
    }
};

BREVANT_TEST(tst_SettingsThreads, QCoreApplication)
#include "tst_SettingsThreads.moc"
