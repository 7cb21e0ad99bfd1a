// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"
#include "tests/TestClass.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocumentFragment>

using brevant::FileQueue;

namespace {

QString path(int number)
{
    return QStringLiteral("/w/%1.css").arg(number);
}

void fill(FileQueue &queue, int count)
{
    for (int i = 0; i < count; ++i)
        queue.append(path(i));
}

QVariant shown(const FileQueue &model, int row, int role = Qt::DisplayRole)
{
    return model.data(model.index(row), role);
}

} // namespace

class tst_FileQueueModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsTheRulesOfModels();
    void showsTheQueue();
    void staysConsistentBetweenReloads();
    void appendedEntriesAreInserted();
    void reloadTellsWhereRowsWent_data();
    void reloadTellsWhereRowsWent();
    void rowsReadAsNameAndFolder();
    void toolTipIsNeverMarkup_data();
    void toolTipIsNeverMarkup();
};

void tst_FileQueueModel::keepsTheRulesOfModels()
{
    FileQueue queue;
    const QAbstractItemModelTester tester(&queue, QAbstractItemModelTester::FailureReportingMode::QtTest);
    fill(queue, 5);
    queue.reload();
    queue.removeAt({0, 2});
    queue.reload();
    queue.append(QStringLiteral("/w/new.js"));
    queue.reload();
    queue.removeAt({0});
    queue.append(path(0));
    queue.reload();
    QCOMPARE(queue.rowCount(), 4);
    queue.clear();
    queue.reload();
    QCOMPARE(queue.rowCount(), 0);
}

void tst_FileQueueModel::showsTheQueue()
{
    FileQueue queue;
    fill(queue, 3);
    queue.reload();
    QCOMPARE(queue.rowCount(), 3);
    QCOMPARE(std::as_const<QAbstractItemModel>(queue).columnCount(), 1);
    QCOMPARE(queue.rowCount(queue.index(0, 0)), 0);
    QCOMPARE(shown(queue, 2), QVariant(path(2)));
    QVERIFY(!shown(queue, 2, Qt::DecorationRole).isValid());
    QVERIFY(!queue.data({}, Qt::DisplayRole).isValid());
}

void tst_FileQueueModel::staysConsistentBetweenReloads()
{
    FileQueue queue;
    fill(queue, 3);
    queue.reload();
    queue.removeAt({0});
    QCOMPARE(queue.rowCount(), 3);
    QCOMPARE(shown(queue, 0), QVariant(path(1)));
    QCOMPARE(shown(queue, 2), QVariant());
    queue.append(path(7));
    queue.append(path(8));
    QCOMPARE(queue.rowCount(), 3);
    queue.reload();
    QCOMPARE(queue.rowCount(), 4);
    QCOMPARE(shown(queue, 3), QVariant(path(8)));
}

void tst_FileQueueModel::appendedEntriesAreInserted()
{
    FileQueue queue;
    fill(queue, 2);
    queue.reload();
    const QSignalSpy inserted(&queue, &FileQueue::rowsInserted);
    const QSignalSpy reset(&queue, &FileQueue::modelReset);
    QCOMPARE(queue.reload(), std::vector<int>());
    QCOMPARE(inserted.count(), 0);
    fill(queue, 5);
    QCOMPARE(queue.reload(), std::vector<int>());
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 2);
    QCOMPARE(inserted.first().at(2).toInt(), 4);
    QCOMPARE(reset.count(), 0);
}

void tst_FileQueueModel::reloadTellsWhereRowsWent_data()
{
    QTest::addColumn<std::vector<int>>("removed");
    QTest::addColumn<QStringList>("appended");
    QTest::addColumn<std::vector<int>>("expected");
    QTest::newRow("first and third of four")
        << std::vector<int>{0, 2} << QStringList() << std::vector<int>{-1, 0, -1, 1};
    QTest::newRow("last") << std::vector<int>{3} << QStringList() << std::vector<int>{0, 1, 2, -1};
    QTest::newRow("all") << std::vector<int>{0, 1, 2, 3} << QStringList() << std::vector<int>{-1, -1, -1, -1};
    QTest::newRow("removed and others added")
        << std::vector<int>{1} << QStringList{QStringLiteral("/w/x.js")} << std::vector<int>{0, -1, 1, 2};
    QTest::newRow("all replaced") << std::vector<int>{0, 1, 2, 3}
                                  << QStringList{QStringLiteral("/w/x.js"), QStringLiteral("/w/y.js")}
                                  << std::vector<int>{-1, -1, -1, -1};
}

void tst_FileQueueModel::reloadTellsWhereRowsWent()
{
    QFETCH(const std::vector<int>, removed);
    QFETCH(const QStringList, appended);
    QFETCH(const std::vector<int>, expected);
    FileQueue queue;
    fill(queue, 4);
    queue.reload();
    queue.removeAt(removed);
    for (const QString &entry : appended)
        queue.append(entry);
    QCOMPARE(queue.reload(), expected);
    QCOMPARE(queue.rowCount(), queue.count());
}

void tst_FileQueueModel::rowsReadAsNameAndFolder()
{
    FileQueue queue;
    queue.append(QStringLiteral("/home/me/site/index.html"));
    queue.append(QStringLiteral("/style.css"));
    queue.reload();
    QCOMPARE(shown(queue, 0, Qt::AccessibleTextRole).toString(), QStringLiteral("index.html, /home/me/site"));
    QCOMPARE(shown(queue, 1, Qt::AccessibleTextRole).toString(), QStringLiteral("style.css, /"));
}

void tst_FileQueueModel::toolTipIsNeverMarkup_data()
{
    QTest::addColumn<QString>("entry");
    QTest::newRow("plain") << QStringLiteral("/w/a  b.css");
    QTest::newRow("tag") << QStringLiteral("/w/<b>bold</b>.css");
    QTest::newRow("entity") << QStringLiteral("/w/a&lt;b.css");
    QTest::newRow("image and blanks") << QStringLiteral("/w/<img src='x'>  two.css");
}

void tst_FileQueueModel::toolTipIsNeverMarkup()
{
    QFETCH(const QString, entry);
    FileQueue queue;
    queue.append(entry);
    queue.reload();
    const QString toolTip = shown(queue, 0, Qt::ToolTipRole).toString();
    const QString asSeen =
        Qt::mightBeRichText(toolTip) ? QTextDocumentFragment::fromHtml(toolTip).toPlainText() : toolTip;
    QCOMPARE(asSeen, entry);
}

BREVANT_TEST(tst_FileQueueModel, QApplication)
#include "tst_FileQueueModel.moc"
