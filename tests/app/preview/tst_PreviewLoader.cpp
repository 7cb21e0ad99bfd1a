// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewLoader.h"
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewFiles.h"

#include <QTest>

#include <vector>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Reading on other threads. Worth most under the thread sanitizer.
class tst_PreviewLoader final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (int index = 0; index < 50; ++index)
            (void)m_files.add(u"%1.css"_s.arg(index), QByteArray::number(index) + oneLineOfCss(200'000));
    }

    void init()
    {
        m_loaded.clear();
        m_loader = std::make_unique<PreviewLoader>(nullptr);
        connect(m_loader.get(), &PreviewLoader::loaded, this, [this](const PreviewContent &content) {
            QCOMPARE(QThread::currentThread(), thread());
            m_loaded.push_back(content);
        });
    }

    void delivers()
    {
        m_loader->start(name(7), m_encoding);
        QVERIFY(m_loaded.empty());
        QTRY_COMPARE(m_loaded.size(), 1U);
        QCOMPARE(m_loaded[0].path, name(7));
        QVERIFY(m_loaded[0].text.startsWith("7.a0"));
        m_loader->start(m_files.path(u"none.css"_s), m_encoding);
        QTRY_COMPARE(m_loaded.size(), 2U);
        QCOMPARE(m_loaded[1].state, PreviewContent::State::Missing);
    }

    void onlyTheLatest()
    {
        for (int index = 0; index < 50; ++index)
            m_loader->start(name(index), m_encoding);
        QTRY_COMPARE(m_loaded.size(), 1U);
        QCOMPARE(m_loaded[0].path, name(49));

        // With deliveries in between: what comes is always what was asked for last.
        for (int index = 0; index < 50; ++index) {
            m_loaded.clear();
            m_loader->start(name(index), m_encoding);
            QTest::qWait(index % 3);
            for (const PreviewContent &content : m_loaded)
                QCOMPARE(content.path, name(index));
        }
        QTRY_COMPARE(m_loaded.size(), 1U);
    }

    void cancelledIsNotDelivered()
    {
        for (int round = 0; round < 20; ++round) {
            m_loader->start(name(round), m_encoding);
            QThread::msleep(
                static_cast<unsigned long>(round % 4)); // it may be read by now, and waits to be delivered
            m_loader->cancel();
            QVERIFY(!m_loader->isLoading(name(round), m_encoding));
            QCoreApplication::processEvents();
            QVERIFY(m_loaded.empty());
        }
        m_loader->start(name(1), m_encoding);
        QTRY_COMPARE(m_loaded.size(), 1U);
    }

    void knowsWhatIsLoading()
    {
        QVERIFY(!m_loader->isLoading({}, {}));
        m_loader->start(name(1), m_encoding);
        QVERIFY(m_loader->isLoading(name(1), m_encoding));
        QVERIFY(!m_loader->isLoading(name(2), m_encoding));
        QVERIFY(!m_loader->isLoading(name(1), u"gbk"_s));
        QTRY_COMPARE(m_loaded.size(), 1U);
        QVERIFY(!m_loader->isLoading(name(1), m_encoding));
    }

    void destroyedWhileLoading()
    {
        for (int round = 0; round < 30; ++round) {
            init();
            for (int index = 0; index <= round % 6; ++index)
                m_loader->start(name(index), m_encoding);
            QThread::msleep(static_cast<unsigned long>(round % 4));
            m_loader.reset();
            QCoreApplication::processEvents();
            QVERIFY(m_loaded.empty());
        }
    }

private:
    [[nodiscard]] QString name(int index) const { return m_files.path(u"%1.css"_s.arg(index)); }

    PreviewFiles m_files;
    QString m_encoding = u"utf-8"_s;
    std::unique_ptr<PreviewLoader> m_loader;
    std::vector<PreviewContent> m_loaded;
};

BREVANT_TEST(tst_PreviewLoader, QCoreApplication)
#include "tst_PreviewLoader.moc"
