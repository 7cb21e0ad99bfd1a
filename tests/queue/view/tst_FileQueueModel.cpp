// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"
#include "tests/TestClass.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

using brevant::FileQueue;

namespace {

QString path(int number)
{
    return u"/w/%1.css"_s.arg(number);
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
    void keepsTheRulesOfModels()
    {
        FileQueue queue;
        const QAbstractItemModelTester tester(&queue, QAbstractItemModelTester::FailureReportingMode::QtTest);
        fill(queue, 5);
        queue.reload();
        queue.removeAt({0, 2});
        queue.reload();
        queue.append(u"/w/new.js"_s);
        queue.reload();
        queue.removeAt({0});
        queue.append(path(0));
        queue.reload();
        QCOMPARE(queue.rowCount(), 4);
        queue.clear();
        queue.reload();
        QCOMPARE(queue.rowCount(), 0);
    }

    void showsTheQueue()
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

    void staysConsistentBetweenReloads()
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

    void appendedEntriesAreInserted()
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

    void reloadTellsWhereRowsWent_data()
    {
        QTest::addColumn<std::vector<int>>("removed");
        QTest::addColumn<QStringList>("appended");
        QTest::addColumn<std::vector<int>>("expected");
        QTest::newRow("first and third of four")
            << std::vector<int>{0, 2} << QStringList() << std::vector<int>{-1, 0, -1, 1};
        QTest::newRow("last") << std::vector<int>{3} << QStringList() << std::vector<int>{0, 1, 2, -1};
        QTest::newRow("all") << std::vector<int>{0, 1, 2, 3} << QStringList()
                             << std::vector<int>{-1, -1, -1, -1};
        QTest::newRow("removed and others added")
            << std::vector<int>{1} << QStringList{u"/w/x.js"_s} << std::vector<int>{0, -1, 1, 2};
        QTest::newRow("all replaced")
            << std::vector<int>{0, 1, 2, 3} << QStringList{u"/w/x.js"_s, u"/w/y.js"_s}
            << std::vector<int>{-1, -1, -1, -1};
    }

    void reloadTellsWhereRowsWent()
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

    void rowsReadAsNameAndFolder()
    {
        FileQueue queue;
        queue.append(u"/home/me/site/index.html"_s);
        queue.append(u"/style.css"_s);
        queue.reload();
        QCOMPARE(shown(queue, 0, Qt::AccessibleTextRole).toString(), u"index.html, /home/me/site"_s);
        QCOMPARE(shown(queue, 1, Qt::AccessibleTextRole).toString(), u"style.css, /"_s);
    }

    void toolTipIsNeverMarkup_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::newRow("plain") << u"/w/a  b.css"_s;
        QTest::newRow("tag") << u"/w/<b>bold</b>.css"_s;
        QTest::newRow("entity") << u"/w/a&lt;b.css"_s;
        QTest::newRow("image and blanks") << u"/w/<img src='x'>  two.css"_s;
    }

    void toolTipIsNeverMarkup()
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
};

BREVANT_TEST(tst_FileQueueModel, QApplication)
#include "tst_FileQueueModel.moc"
