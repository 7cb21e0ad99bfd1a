// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewBench.h"

#include <QAbstractScrollArea>
#include <QFileInfo>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What the panel shows of the items of its owner.
class tst_PreviewPanel final : public PreviewBench {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setUpFiles(); }
    void init() { setUpPanel(); }
    void cleanup() { m_window.reset(); }

    void opensAndCloses()
    {
        QVERIFY(!m_panel->isOpen());
        QCOMPARE(m_panel->currentPreviewItemIndex(), -1);
        open({m_a});
        QVERIFY(m_panel->isOpen());
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QCOMPARE(m_panel->windowTitle(), u"a.css"_s);
        QCOMPARE(labelText("previewName"), u"a.css"_s);
        QCOMPARE(labelText("previewFolder") + u"/a.css"_s, m_a);
        QVERIFY(labelText("previewFooter").startsWith(u"12 bytes  ·  1 line  ·  utf-8  ·  Modified "_s));
        QVERIFY(labelText("previewNotice").isEmpty());
        QTRY_VERIFY(m_panel->isActiveWindow());
        m_panel->makeKeyAndOrderFront();
        QVERIFY(m_panel->isOpen());
        m_panel->orderOut();
        QVERIFY(!m_panel->isOpen());
        QVERIFY(!m_panel->isVisible());
    }

    void giveAndTakeControl()
    {
        m_panel->setDataSource(nullptr);
        m_panel->setDelegate(nullptr);
        m_owner.paths = QStringList{m_a};
        QStringList order;
        connect(m_panel, &PreviewPanel::willOpen, this, [&] {
            order += u"open"_s;
            QVERIFY(m_panel->isOpen());
            m_panel->setDelegate(&m_owner);
            m_panel->setDataSource(&m_owner);
        });
        connect(m_panel, &PreviewPanel::didClose, this, [&] {
            order += u"close"_s;
            QVERIFY(!m_panel->isOpen());
            m_panel->setDelegate(nullptr);
            m_panel->setDataSource(nullptr);
        });
        m_panel->makeKeyAndOrderFront();
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        m_panel->makeKeyAndOrderFront();
        m_panel->orderOut();
        m_panel->orderOut();
        m_panel->reloadData(); // no one asks while it is closed
        QCOMPARE(order, (QStringList{u"open"_s, u"close"_s}));
        QCOMPARE(m_owner.framesAskedFor, (QList<QUrl>{QUrl::fromLocalFile(m_a), QUrl::fromLocalFile(m_a)}));
    }

    void itemsInOrder()
    {
        open({m_a, m_b});
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QTRY_COMPARE(labelText("previewName"), u"a.css"_s);
        QCOMPARE(labelText("previewCounter"), u"1 of 2"_s);
        QVERIFY(button("previewNext")->isVisible());
        m_panel->setCurrentPreviewItemIndex(1);
        QTRY_COMPARE(shownText(), u"var b"_s);
        QCOMPARE(labelText("previewCounter"), u"2 of 2"_s);
        m_panel->setCurrentPreviewItemIndex(2);
        m_panel->setCurrentPreviewItemIndex(-1);
        QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
    }

    void deselectingOne()
    {
        open({m_a, m_b});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        m_owner.paths = QStringList{m_b};
        m_panel->reloadData();
        QTRY_COMPARE(shownText(), u"var b"_s);
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QVERIFY(labelText("previewCounter").isEmpty());
        QVERIFY(!button("previewNext")->isVisible());
        QVERIFY(!button("previewPrevious")->isVisible());
    }

    void keepsTheItem()
    {
        open({m_a, m_b});
        m_panel->setCurrentPreviewItemIndex(1);
        m_owner.paths = QStringList{m_b, m_c};
        m_panel->reloadData();
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QTRY_COMPARE(shownText(), u"var b"_s);
        QCOMPARE(labelText("previewCounter"), u"1 of 2"_s);
        // Gone: the one that has taken its place, or the last.
        m_owner.paths = QStringList{m_a, m_b, m_c};
        m_panel->reloadData();
        QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
        m_owner.paths = QStringList{m_a, m_c};
        m_panel->reloadData();
        QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
        QTRY_COMPARE(shownText(), u"<p>c</p>"_s);
        m_owner.paths = QStringList{m_a};
        m_panel->reloadData();
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
    }

    void nothingSelected()
    {
        open({});
        QCOMPARE(labelText("previewSentence"), u"No file is selected."_s);
        QCOMPARE(m_panel->currentPreviewItemIndex(), -1);
        QCOMPARE(m_panel->windowTitle(), u"Preview"_s);
        m_owner.paths = QStringList{m_a};
        m_panel->reloadData();
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        // Even while a file is read.
        m_owner.paths = QStringList{m_b};
        m_panel->reloadData();
        m_owner.paths.clear();
        m_panel->reloadData();
        QTest::qWait(50);
        QCOMPARE(labelText("previewSentence"), u"No file is selected."_s);
        QVERIFY(shownText().isEmpty());
        QVERIFY(labelText("previewFooter").isEmpty());
        QVERIFY(labelText("previewName").isEmpty());
    }

    void sentences_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("empty") << m_files.add(u"empty.css"_s, "") << u"This file is empty."_s;
        QTest::newRow("missing") << m_files.path(u"none.css"_s) << u"This file does not exist."_s;
        QTest::newRow("unreadable") << u"/proc/self/mem"_s
                                    << u"This file cannot be read: Input/output error."_s;
        QTest::newRow("folder") << QFileInfo(m_a).path() << u"This is a folder."_s;
        QTest::newRow("device") << u"/dev/zero"_s << u"This is not an ordinary file, so it is not opened."_s;
        QTest::newRow("binary") << m_files.add(u"binary.css"_s, QByteArray("a\0b", 3))
                                << u"This file is not text."_s;
    }

    void sentences()
    {
        QFETCH(QString, path);
        QFETCH(QString, sentence);
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        m_owner.paths = QStringList{path};
        m_panel->reloadData();
        QTRY_COMPARE(labelText("previewSentence"), sentence);
        auto *const label = m_panel->findChild<QLabel *>(u"previewSentence"_s);
        QVERIFY(label->isVisible());
        QVERIFY(shownText().isEmpty());
        QCOMPARE(labelText("previewName"), QFileInfo(path).fileName());
        // Keys still reach the delegate.
        QTRY_COMPARE(m_panel->focusWidget(), m_panel);
        QTest::keyClick(m_panel, Qt::Key_Down);
        QCOMPARE(m_owner.keys, std::vector<int>{Qt::Key_Down});
    }

    void readsInTheChosenEncoding()
    {
        const QString path = m_files.add(u"jp.css"_s, QByteArray::fromHex("8abf8e9a"));
        m_encoding = u"shift-jis"_s;
        open({path});
        QTRY_COMPARE(shownText(), u"漢字"_s);
        QVERIFY(labelText("previewFooter").contains(u"shift-jis"_s));
        m_encoding = u"utf-8"_s;
        m_panel->reloadData();
        QTRY_VERIFY(shownText().contains(QChar::ReplacementCharacter));
        QCOMPARE(labelText("previewNotice"), u"Bytes that are not valid in utf-8 are shown as \uFFFD."_s);
        QVERIFY(m_panel->findChild<QLabel *>(u"previewNotice"_s)->isVisible());
    }

    void noSourceAndNoDelegate()
    {
        m_panel->setDataSource(nullptr);
        m_panel->setDelegate(nullptr);
        open({m_a});
        QCOMPARE(labelText("previewSentence"), u"No file is selected."_s);
        QTest::keyClick(m_panel, Qt::Key_Down);
        m_panel->setCurrentPreviewItemIndex(0);
        m_panel->reloadData();
        m_panel->orderOut();
        QVERIFY(!m_panel->isOpen());
    }

    void bigFile()
    {
        const QString path = m_files.add(u"big.css"_s, oneLineOfCss(10'000'000));
        m_owner.paths = QStringList{path};
        m_panel->makeKeyAndOrderFront();
        QTRY_COMPARE_WITH_TIMEOUT(labelText("previewNotice"),
                                  u"Showing the first 1 MB of 10 MB. Long lines are folded."_s, 60'000);
        QVERIFY(shownText().startsWith(u".a0>b:hover{"_s));
        QVERIFY(labelText("previewFooter").startsWith(u"10 MB  ·  1 line  ·  "_s));
        QScrollBar *const bar = qobject_cast<QAbstractScrollArea *>(editor())->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        bar->setValue(bar->maximum());
        QCOMPARE(bar->value(), bar->maximum());
    }

    void fastSwitching()
    {
        open({m_a});
        for (int index = 0; index < 50; ++index) {
            const QString name = u"s%1.css"_s.arg(index);
            m_owner.paths =
                QStringList{m_files.add(name, "x" + QByteArray::number(index) + '{' + oneLineOfCss(100'000))};
            m_panel->reloadData();
            QTest::qWait(index % 4);
        }
        QTRY_COMPARE(labelText("previewName"), u"s49.css"_s);
        QTRY_VERIFY(shownText().startsWith(u"x49{"_s));
        QTest::qWait(50);
        QCOMPARE(labelText("previewName"), u"s49.css"_s);
    }

    void loadingIsSaid()
    {
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        auto *const patience = m_panel->findChild<QTimer *>(u"previewPatience"_s);
        m_owner.paths = QStringList{m_b};
        m_panel->reloadData();
        QVERIFY(patience->isActive());
        QCOMPARE(shownText(), u"a{color:red}"_s); // until there is something else to show
        QCOMPARE(labelText("previewName"), u"a.css"_s);
        QTRY_COMPARE(shownText(), u"var b"_s);
        QVERIFY(!patience->isActive());
        // A file that takes longer, which no file here does by itself.
        patience->setInterval(0);
        QStringList shown;
        const auto watch = connect(patience, &QTimer::timeout, this, [&] {
            shown = QStringList{labelText("previewSentence"), labelText("previewName"), shownText()};
        });
        m_owner.paths = QStringList{m_files.add(u"slow.css"_s, oneLineOfCss(15 * 1024 * 1024))};
        m_panel->reloadData();
        QTRY_COMPARE(shown, QStringList({u"Loading…"_s, u"slow.css"_s, QString()}));
        disconnect(watch);
        QTRY_VERIFY(shownText().startsWith(u".a0"_s));
        // The same file again is read without a word.
        m_panel->reloadData();
        QVERIFY(!patience->isActive());
    }

    void closedWhileLoading()
    {
        const QString path = m_files.add(u"big.css"_s, oneLineOfCss(10'000'000));
        for (int round = 0; round < 5; ++round) {
            m_owner.paths = QStringList{path};
            m_panel->makeKeyAndOrderFront();
            QTest::qWait(round);
            m_panel->orderOut();
            QVERIFY(!m_panel->isOpen());
        }
        m_panel->makeKeyAndOrderFront();
        QTRY_VERIFY(shownText().startsWith(u".a0"_s));
        m_panel->orderOut();
        m_owner.paths = QStringList{m_a};
        m_panel->makeKeyAndOrderFront();
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
    }

    void destroyedWhileLoading()
    {
        const QString path = m_files.add(u"big.css"_s, oneLineOfCss(10'000'000));
        for (int round = 0; round < 5; ++round) {
            m_owner.paths = QStringList{path};
            m_owner.frame = round % 2 ? QRect(30, 40, 150, 34) : QRect();
            m_panel->makeKeyAndOrderFront();
            QTest::qWait(round * 2);
            delete m_panel;
            QCoreApplication::processEvents();
            m_panel = new PreviewPanel([this] { return m_encoding; }, m_window.get());
            m_panel->setDataSource(&m_owner);
            m_panel->setDelegate(&m_owner);
        }
    }

    void changedOnDisk()
    {
        const QString path = m_files.add(u"changing.css"_s, "before{}");
        open({path});
        QTRY_COMPARE(shownText(), u"before{}"_s);
        (void)m_files.add(u"changing.css"_s, "after{}");
        m_panel->reloadData();
        QTRY_COMPARE(shownText(), u"after{}"_s);
        QVERIFY(QFile::remove(path));
        m_panel->reloadData();
        QTRY_COMPARE(labelText("previewSentence"), u"This file does not exist."_s);
    }
};

BREVANT_TEST(tst_PreviewPanel, QApplication)
#include "tst_PreviewPanel.moc"
