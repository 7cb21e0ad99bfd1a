// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPanel.h"
#include "app/preview/ZoomWindow.h"
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewFiles.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <memory>

using namespace brevant;
using namespace brevant::test;

namespace {

/// What the application would say and do.
struct FakeOwner final : PreviewPanelDataSource, PreviewPanelDelegate {
    QStringList paths;
    QRect frame;
    bool takesKeys = true;
    std::vector<int> keys;
    mutable QList<QUrl> framesAskedFor;

    int numberOfPreviewItemsInPreviewPanel() const override { return int(paths.size()); }
    QUrl previewPanelPreviewItemAtIndex(int index) const override
    {
        return QUrl::fromLocalFile(paths.at(index));
    }
    bool previewPanelHandleEvent(QEvent *event) override
    {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Alt && key != Qt::Key_Control)
            keys.push_back(key);
        return takesKeys;
    }
    QRect previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const override
    {
        framesAskedFor += item;
        return frame;
    }
};

/// A desktop with or without moving windows.
class MotionStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? duration
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }
    int duration = 200;
};

} // namespace

/// The panel as its owner and its user see it.
class tst_PreviewPanel final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void opensAndCloses();
    void giveAndTakeControl();
    void itemsInOrder();
    void deselectingOne();
    void keepsTheItem();
    void nothingSelected();
    void sentences_data();
    void sentences();
    void readsInTheChosenEncoding();
    void keysGoToTheDelegate_data();
    void keysGoToTheDelegate();
    void keysLeftToThePanel();
    void heldKeys();
    void theTextHasAMenu();
    void turnButtons();
    void closedByTheWindowManager();
    void zooms();
    void closedWhileItOpens();
    void reopenedWhileItCloses();
    void noZoom_data();
    void noZoom();
    void noSourceAndNoDelegate();
    void bigFile();
    void fastSwitching();
    void loadingIsSaid();
    void closedWhileLoading();
    void destroyedWhileLoading();
    void changedOnDisk();
    void keepsSizeAndStaysOnScreen();
    void accessibleNames();

private:
    [[nodiscard]] QString labelText(const char *name) const
    {
        return m_panel->findChild<QLabel *>(QLatin1StringView(name))->text();
    }
    [[nodiscard]] QToolButton *button(const char *name) const
    {
        return m_panel->findChild<QToolButton *>(QLatin1StringView(name));
    }
    [[nodiscard]] QWidget *editor() const
    {
        return m_panel->findChild<QWidget *>(QStringLiteral("previewText"));
    }
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] ZoomWindow *zoom() const { return m_panel->findChild<ZoomWindow *>(); }
    void open(const QStringList &paths);

    PreviewFiles m_files;
    QString m_a, m_b, m_c;
    FakeOwner m_owner;
    QString m_encoding;
    MotionStyle *m_style = nullptr;
    std::unique_ptr<QWidget> m_window;
    PreviewPanel *m_panel = nullptr;
};

void tst_PreviewPanel::initTestCase()
{
    m_style = new MotionStyle;
    QApplication::setStyle(m_style); // which the application owns from here
    m_a = m_files.add(QStringLiteral("a.css"), "a{color:red}");
    m_b = m_files.add(QStringLiteral("b.js"), "var b");
    m_c = m_files.add(QStringLiteral("c.html"), "<p>c</p>");
}

void tst_PreviewPanel::init()
{
    m_owner = FakeOwner();
    m_encoding = QStringLiteral("utf-8");
    m_style->duration = 200;
    m_window = std::make_unique<QWidget>();
    m_window->setGeometry(20, 20, 200, 200);
    m_window->show();
    m_panel = new PreviewPanel([this] { return m_encoding; }, m_window.get());
    m_panel->setDataSource(&m_owner);
    m_panel->setDelegate(&m_owner);
}

void tst_PreviewPanel::cleanup()
{
    m_window.reset();
}

QString tst_PreviewPanel::shownText() const
{
    return m_panel->shownText();
}

void tst_PreviewPanel::open(const QStringList &paths)
{
    m_owner.paths = paths;
    m_panel->makeKeyAndOrderFront();
    QTRY_VERIFY(m_panel->isVisible());
    QTRY_VERIFY(paths.isEmpty() || !labelText("previewFooter").isEmpty() ||
                !labelText("previewSentence").isEmpty());
}

void tst_PreviewPanel::opensAndCloses()
{
    QVERIFY(!m_panel->isOpen());
    QCOMPARE(m_panel->currentPreviewItemIndex(), -1);
    open({m_a});
    QVERIFY(m_panel->isOpen());
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    QCOMPARE(m_panel->windowTitle(), QStringLiteral("a.css"));
    QCOMPARE(labelText("previewName"), QStringLiteral("a.css"));
    QCOMPARE(labelText("previewFolder") + QStringLiteral("/a.css"), m_a);
    QVERIFY(
        labelText("previewFooter").startsWith(QStringLiteral("12 bytes  ·  1 line  ·  utf-8  ·  Modified ")));
    QVERIFY(labelText("previewNotice").isEmpty());
    QTRY_VERIFY(m_panel->isActiveWindow());
    m_panel->makeKeyAndOrderFront();
    QVERIFY(m_panel->isOpen());
    m_panel->orderOut();
    QVERIFY(!m_panel->isOpen());
    QVERIFY(!m_panel->isVisible());
}

void tst_PreviewPanel::giveAndTakeControl()
{
    m_panel->setDataSource(nullptr);
    m_panel->setDelegate(nullptr);
    m_owner.paths = QStringList{m_a};
    QStringList order;
    connect(m_panel, &PreviewPanel::willOpen, this, [&] {
        order += QStringLiteral("open");
        QVERIFY(m_panel->isOpen());
        m_panel->setDelegate(&m_owner);
        m_panel->setDataSource(&m_owner);
    });
    connect(m_panel, &PreviewPanel::didClose, this, [&] {
        order += QStringLiteral("close");
        QVERIFY(!m_panel->isOpen());
        m_panel->setDelegate(nullptr);
        m_panel->setDataSource(nullptr);
    });
    m_panel->makeKeyAndOrderFront();
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    m_panel->makeKeyAndOrderFront();
    m_panel->orderOut();
    m_panel->orderOut();
    m_panel->reloadData(); // no one asks while it is closed
    QCOMPARE(order, (QStringList{QStringLiteral("open"), QStringLiteral("close")}));
    QCOMPARE(m_owner.framesAskedFor, (QList<QUrl>{QUrl::fromLocalFile(m_a), QUrl::fromLocalFile(m_a)}));
}

void tst_PreviewPanel::itemsInOrder()
{
    open({m_a, m_b});
    QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
    QTRY_COMPARE(labelText("previewName"), QStringLiteral("a.css"));
    QCOMPARE(labelText("previewCounter"), QStringLiteral("1 of 2"));
    QVERIFY(button("previewNext")->isVisible());
    m_panel->setCurrentPreviewItemIndex(1);
    QTRY_COMPARE(shownText(), QStringLiteral("var b"));
    QCOMPARE(labelText("previewCounter"), QStringLiteral("2 of 2"));
    m_panel->setCurrentPreviewItemIndex(2);
    m_panel->setCurrentPreviewItemIndex(-1);
    QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
}

void tst_PreviewPanel::deselectingOne()
{
    open({m_a, m_b});
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    m_owner.paths = QStringList{m_b};
    m_panel->reloadData();
    QTRY_COMPARE(shownText(), QStringLiteral("var b"));
    QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
    QVERIFY(labelText("previewCounter").isEmpty());
    QVERIFY(!button("previewNext")->isVisible());
    QVERIFY(!button("previewPrevious")->isVisible());
}

void tst_PreviewPanel::keepsTheItem()
{
    open({m_a, m_b});
    m_panel->setCurrentPreviewItemIndex(1);
    m_owner.paths = QStringList{m_b, m_c};
    m_panel->reloadData();
    QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
    QTRY_COMPARE(shownText(), QStringLiteral("var b"));
    QCOMPARE(labelText("previewCounter"), QStringLiteral("1 of 2"));
    // Gone: the one that has taken its place, or the last.
    m_owner.paths = QStringList{m_a, m_b, m_c};
    m_panel->reloadData();
    QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
    m_owner.paths = QStringList{m_a, m_c};
    m_panel->reloadData();
    QCOMPARE(m_panel->currentPreviewItemIndex(), 1);
    QTRY_COMPARE(shownText(), QStringLiteral("<p>c</p>"));
    m_owner.paths = QStringList{m_a};
    m_panel->reloadData();
    QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
}

void tst_PreviewPanel::nothingSelected()
{
    open({});
    QCOMPARE(labelText("previewSentence"), QStringLiteral("No file is selected."));
    QCOMPARE(m_panel->currentPreviewItemIndex(), -1);
    QCOMPARE(m_panel->windowTitle(), QStringLiteral("Preview"));
    m_owner.paths = QStringList{m_a};
    m_panel->reloadData();
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    // Even while a file is read.
    m_owner.paths = QStringList{m_b};
    m_panel->reloadData();
    m_owner.paths.clear();
    m_panel->reloadData();
    QTest::qWait(50);
    QCOMPARE(labelText("previewSentence"), QStringLiteral("No file is selected."));
    QVERIFY(shownText().isEmpty());
    QVERIFY(labelText("previewFooter").isEmpty());
    QVERIFY(labelText("previewName").isEmpty());
}

void tst_PreviewPanel::sentences_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("empty") << m_files.add(QStringLiteral("empty.css"), "")
                           << QStringLiteral("This file is empty.");
    QTest::newRow("missing") << m_files.path(QStringLiteral("none.css"))
                             << QStringLiteral("This file does not exist.");
    QTest::newRow("unreadable") << QStringLiteral("/proc/self/mem")
                                << QStringLiteral("This file cannot be read: Input/output error.");
    QTest::newRow("folder") << QFileInfo(m_a).path() << QStringLiteral("This is a folder.");
    QTest::newRow("device") << QStringLiteral("/dev/zero")
                            << QStringLiteral("This is not an ordinary file, so it is not opened.");
    QTest::newRow("binary") << m_files.add(QStringLiteral("binary.css"), QByteArray("a\0b", 3))
                            << QStringLiteral("This file is not text.");
}

void tst_PreviewPanel::sentences()
{
    QFETCH(QString, path);
    QFETCH(QString, sentence);
    open({m_a});
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    m_owner.paths = QStringList{path};
    m_panel->reloadData();
    QTRY_COMPARE(labelText("previewSentence"), sentence);
    auto *const label = m_panel->findChild<QLabel *>(QStringLiteral("previewSentence"));
    QVERIFY(label->isVisible());
    QVERIFY(shownText().isEmpty());
    QCOMPARE(labelText("previewName"), QFileInfo(path).fileName());
    // Keys still reach the delegate.
    QTRY_COMPARE(m_panel->focusWidget(), m_panel);
    QTest::keyClick(m_panel, Qt::Key_Down);
    QCOMPARE(m_owner.keys, std::vector<int>{Qt::Key_Down});
}

void tst_PreviewPanel::readsInTheChosenEncoding()
{
    const QString path = m_files.add(QStringLiteral("jp.css"), QByteArray::fromHex("8abf8e9a"));
    m_encoding = QStringLiteral("shift-jis");
    open({path});
    QTRY_COMPARE(shownText(), QStringLiteral("漢字"));
    QVERIFY(labelText("previewFooter").contains(QStringLiteral("shift-jis")));
    m_encoding = QStringLiteral("utf-8");
    m_panel->reloadData();
    QTRY_VERIFY(shownText().contains(QChar::ReplacementCharacter));
    QCOMPARE(labelText("previewNotice"),
             QStringLiteral("Bytes that are not valid in utf-8 are shown as \uFFFD."));
    QVERIFY(m_panel->findChild<QLabel *>(QStringLiteral("previewNotice"))->isVisible());
}

void tst_PreviewPanel::keysGoToTheDelegate_data()
{
    QTest::addColumn<QKeySequence>("keys");
    for (const Qt::Key key :
         {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_PageDown,
          Qt::Key_Home, Qt::Key_Delete, Qt::Key_X, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << QKeySequence(key);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp,
                              Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
        QTest::newRow(qPrintable(QKeySequence(Qt::ALT | key).toString())) << QKeySequence(Qt::ALT | key);
    for (const QKeySequence::StandardKey key :
         {QKeySequence::Copy, QKeySequence::SelectAll, QKeySequence::Close})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << QKeySequence(key);
}

void tst_PreviewPanel::keysGoToTheDelegate()
{
    QFETCH(QKeySequence, keys);
    open({m_a, m_b});
    QTRY_COMPARE(m_panel->focusWidget(), editor());
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    QVERIFY(QMetaObject::invokeMethod(editor(), "selectAll"));
    QTest::keySequence(editor(), keys);
    QTest::keySequence(m_panel, keys);
    QCOMPARE(m_owner.keys, (std::vector<int>{keys[0].key(), keys[0].key()}));
    QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
    QVERIFY(m_panel->isOpen());
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
}

void tst_PreviewPanel::keysLeftToThePanel()
{
    const QString path = m_files.add(QStringLiteral("long.css"), QByteArray("a{}\n").repeated(500));
    m_owner.takesKeys = false;
    open({path});
    QTRY_COMPARE(m_panel->focusWidget(), editor());
    auto *const area = qobject_cast<QAbstractScrollArea *>(editor());
    QTest::keyClick(editor(), Qt::Key_PageDown);
    QTest::keyClick(editor(), Qt::Key_PageDown);
    QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
    QTest::keyClick(editor(), Qt::Key_F5); // one that the text does not take either
    QCOMPARE(m_owner.keys, (std::vector<int>{Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_F5}));
}

void tst_PreviewPanel::heldKeys()
{
    open({m_a});
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down}) {
        QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(m_panel, &held);
    }
    QCOMPARE(m_owner.keys, (std::vector<int>{Qt::Key_Space, Qt::Key_Down}));
}

void tst_PreviewPanel::theTextHasAMenu()
{
    open({m_files.add(QStringLiteral("long.css"), QByteArray("a{}\n").repeated(500))});
    QTRY_COMPARE(m_panel->focusWidget(), editor());
    const QScrollBar &bar = *qobject_cast<QAbstractScrollArea *>(editor())->verticalScrollBar();
    QTRY_VERIFY(bar.maximum() > 4 * bar.pageStep());
    const auto item = [this](int index) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5),
                                editor()->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(editor(), &event);
        auto *const menu = m_panel->findChild<QMenu *>();
        return menu != nullptr && menu->isVisible() ? menu->actions().value(index) : nullptr;
    };
    const auto closeMenu = [this] {
        QPointer<QMenu> menu = m_panel->findChild<QMenu *>();
        menu->close();
        QTRY_VERIFY(!menu);
    };
    QVERIFY(item(0) != nullptr && !item(0)->isEnabled()); // nothing is selected
    closeMenu();
    item(3)->trigger();
    QCOMPARE(bar.value(), bar.pageStep());
    closeMenu();
    item(2)->trigger();
    QCOMPARE(bar.value(), 0);
    closeMenu();
    QVERIFY(QMetaObject::invokeMethod(editor(), "selectAll"));
    item(0)->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text().size(), 500 * 4 - 1);
    closeMenu();
}

void tst_PreviewPanel::turnButtons()
{
    open({m_a, m_b});
    QVERIFY(!button("previewPrevious")->isEnabled());
    QTest::mouseClick(button("previewNext"), Qt::LeftButton);
    QTRY_COMPARE(labelText("previewName"), QStringLiteral("b.js"));
    QVERIFY(!button("previewNext")->isEnabled());
    QTest::mouseClick(button("previewPrevious"), Qt::LeftButton);
    QTRY_COMPARE(labelText("previewName"), QStringLiteral("a.css"));
}

void tst_PreviewPanel::closedByTheWindowManager()
{
    const QSignalSpy closed(m_panel, &PreviewPanel::didClose);
    open({m_a});
    m_panel->close();
    QVERIFY(!m_panel->isOpen());
    QVERIFY(!m_panel->isVisible());
    QCOMPARE(closed.size(), 1);
}

void tst_PreviewPanel::zooms()
{
    m_owner.frame = QRect(30, 40, 150, 34);
    m_owner.paths = QStringList{m_a, m_b};
    m_panel->makeKeyAndOrderFront();
    QVERIFY(m_panel->isOpen());
    QVERIFY(!m_panel->isVisible());
    QVERIFY(zoom()->isVisible());
    QCOMPARE(zoom()->geometry(), m_owner.frame);
    QTRY_VERIFY(m_panel->isVisible());
    QCOMPARE(zoom()->geometry(), m_panel->geometry());
    QTRY_VERIFY(!zoom()->isVisible());
    QTRY_VERIFY(m_panel->isActiveWindow());

    m_panel->setCurrentPreviewItemIndex(1);
    m_owner.framesAskedFor.clear();
    m_panel->orderOut();
    QVERIFY(!m_panel->isVisible());
    QVERIFY(zoom()->isVisible());
    QTRY_VERIFY(!zoom()->isVisible());
    QCOMPARE(zoom()->geometry(), m_owner.frame);
    QCOMPARE(m_owner.framesAskedFor, QList<QUrl>{QUrl::fromLocalFile(m_b)});
}

void tst_PreviewPanel::closedWhileItOpens()
{
    m_owner.frame = QRect(30, 40, 150, 34);
    m_owner.paths = QStringList{m_a};
    m_panel->makeKeyAndOrderFront();
    m_panel->orderOut();
    QVERIFY(!m_panel->isOpen());
    QTRY_VERIFY(!zoom()->isVisible());
    QVERIFY(!m_panel->isVisible());
}

void tst_PreviewPanel::reopenedWhileItCloses()
{
    m_owner.frame = QRect(30, 40, 150, 34);
    open({m_a});
    m_panel->orderOut();
    m_panel->makeKeyAndOrderFront();
    QTRY_VERIFY(m_panel->isVisible());
    QTRY_VERIFY(!zoom()->isVisible());
    QVERIFY(m_panel->isVisible());
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
}

void tst_PreviewPanel::noZoom_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<int>("duration");
    QTest::newRow("not in the queue") << QRect() << 200;
    QTest::newRow("reduced motion") << QRect(30, 40, 150, 34) << 0;
}

void tst_PreviewPanel::noZoom()
{
    QFETCH(QRect, frame);
    QFETCH(int, duration);
    m_owner.frame = frame;
    m_style->duration = duration;
    m_owner.paths = QStringList{m_a};
    m_panel->makeKeyAndOrderFront();
    QVERIFY(m_panel->isVisible());
    QVERIFY(!zoom()->isVisible());
    m_panel->orderOut();
    QVERIFY(!zoom()->isVisible());
}

void tst_PreviewPanel::noSourceAndNoDelegate()
{
    m_panel->setDataSource(nullptr);
    m_panel->setDelegate(nullptr);
    open({m_a});
    QCOMPARE(labelText("previewSentence"), QStringLiteral("No file is selected."));
    QTest::keyClick(m_panel, Qt::Key_Down);
    m_panel->setCurrentPreviewItemIndex(0);
    m_panel->reloadData();
    m_panel->orderOut();
    QVERIFY(!m_panel->isOpen());
}

void tst_PreviewPanel::bigFile()
{
    const QString path = m_files.add(QStringLiteral("big.css"), oneLineOfCss(10'000'000));
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer ticks;
    ticks.setTimerType(Qt::PreciseTimer);
    connect(&ticks, &QTimer::timeout, this, [&] { longest = std::max(longest, sinceTick.restart()); });
    QElapsedTimer sinceOpen;
    sinceOpen.start();
    sinceTick.start();
    ticks.start(10);
    m_owner.paths = QStringList{path};
    m_panel->makeKeyAndOrderFront();
    QTRY_COMPARE_WITH_TIMEOUT(labelText("previewNotice"),
                              QStringLiteral("Showing the first 1 MB of 10 MB. Long lines are folded."),
                              60'000);
    const qint64 opened = sinceOpen.elapsed();
    QTest::qWait(200);
    QVERIFY(shownText().startsWith(QStringLiteral(".a0>b:hover{")));
    QVERIFY(labelText("previewFooter").startsWith(QStringLiteral("10 MB  ·  1 line  ·  ")));
    auto *const area = qobject_cast<QAbstractScrollArea *>(editor());
    const qint64 longestOpening = std::exchange(longest, 0);
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    QTest::qWait(200);
    qInfo("10 MB in one line: open after %lld ms, longest gap %lld ms, %lld ms going to the end", opened,
          longestOpening, longest);
}

void tst_PreviewPanel::fastSwitching()
{
    open({m_a});
    for (int index = 0; index < 50; ++index) {
        const QString name = QStringLiteral("s%1.css").arg(index);
        m_owner.paths =
            QStringList{m_files.add(name, "x" + QByteArray::number(index) + '{' + oneLineOfCss(100'000))};
        m_panel->reloadData();
        QTest::qWait(index % 4);
    }
    QTRY_COMPARE(labelText("previewName"), QStringLiteral("s49.css"));
    QTRY_VERIFY(shownText().startsWith(QStringLiteral("x49{")));
    QTest::qWait(50);
    QCOMPARE(labelText("previewName"), QStringLiteral("s49.css"));
}

void tst_PreviewPanel::loadingIsSaid()
{
    open({m_a});
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
    auto *const patience = m_panel->findChild<QTimer *>(QStringLiteral("previewPatience"));
    m_owner.paths = QStringList{m_b};
    m_panel->reloadData();
    QVERIFY(patience->isActive());
    QCOMPARE(shownText(), QStringLiteral("a{color:red}")); // until there is something else to show
    QCOMPARE(labelText("previewName"), QStringLiteral("a.css"));
    QTRY_COMPARE(shownText(), QStringLiteral("var b"));
    QVERIFY(!patience->isActive());
    // A file that takes longer, which no file here does by itself.
    patience->setInterval(0);
    QStringList shown;
    const auto watch = connect(patience, &QTimer::timeout, this, [&] {
        shown = QStringList{labelText("previewSentence"), labelText("previewName"), shownText()};
    });
    m_owner.paths = QStringList{m_files.add(QStringLiteral("slow.css"), oneLineOfCss(15 * 1024 * 1024))};
    m_panel->reloadData();
    QTRY_COMPARE(shown, QStringList({QStringLiteral("Loading…"), QStringLiteral("slow.css"), QString()}));
    disconnect(watch);
    QTRY_VERIFY(shownText().startsWith(QStringLiteral(".a0")));
    // The same file again is read without a word.
    m_panel->reloadData();
    QVERIFY(!patience->isActive());
}

void tst_PreviewPanel::closedWhileLoading()
{
    const QString path = m_files.add(QStringLiteral("big.css"), oneLineOfCss(10'000'000));
    for (int round = 0; round < 5; ++round) {
        m_owner.paths = QStringList{path};
        m_panel->makeKeyAndOrderFront();
        QTest::qWait(round);
        m_panel->orderOut();
        QVERIFY(!m_panel->isOpen());
    }
    m_panel->makeKeyAndOrderFront();
    QTRY_VERIFY(shownText().startsWith(QStringLiteral(".a0")));
    m_panel->orderOut();
    m_owner.paths = QStringList{m_a};
    m_panel->makeKeyAndOrderFront();
    QTRY_COMPARE(shownText(), QStringLiteral("a{color:red}"));
}

void tst_PreviewPanel::destroyedWhileLoading()
{
    const QString path = m_files.add(QStringLiteral("big.css"), oneLineOfCss(10'000'000));
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

void tst_PreviewPanel::changedOnDisk()
{
    const QString path = m_files.add(QStringLiteral("changing.css"), "before{}");
    open({path});
    QTRY_COMPARE(shownText(), QStringLiteral("before{}"));
    (void)m_files.add(QStringLiteral("changing.css"), "after{}");
    m_panel->reloadData();
    QTRY_COMPARE(shownText(), QStringLiteral("after{}"));
    QVERIFY(QFile::remove(path));
    m_panel->reloadData();
    QTRY_COMPARE(labelText("previewSentence"), QStringLiteral("This file does not exist."));
}

void tst_PreviewPanel::keepsSizeAndStaysOnScreen()
{
    const QRect screen = m_panel->screen()->availableGeometry();
    open({m_a});
    QVERIFY(screen.contains(m_panel->frameGeometry()));
    m_panel->resize(410, 333);
    m_panel->orderOut();
    m_panel->makeKeyAndOrderFront();
    QCOMPARE(m_panel->size(), QSize(410, 333));
    m_panel->move(screen.right() - 20, screen.bottom() - 20);
    m_panel->orderOut();
    m_panel->makeKeyAndOrderFront();
    QVERIFY(screen.contains(m_panel->frameGeometry()));
    QCOMPARE(m_panel->size(), QSize(410, 333));
}

void tst_PreviewPanel::accessibleNames()
{
    open({m_a, m_b});
    QTRY_COMPARE(editor()->accessibleName(), QStringLiteral("Text of a.css"));
    QCOMPARE(m_panel->accessibleName(), QStringLiteral("Preview"));
    QCOMPARE(button("previewPrevious")->accessibleName(), QStringLiteral("Previous file"));
    QCOMPARE(button("previewNext")->accessibleName(), QStringLiteral("Next file"));
    QVERIFY(button("previewNext")->toolTip().contains(QStringLiteral("Next file")));
}

BREVANT_TEST(tst_PreviewPanel, QApplication)
#include "tst_PreviewPanel.moc"
