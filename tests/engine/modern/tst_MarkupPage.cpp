// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/MarkupPage.h"
#include "engine/markup/PhpBlocks.h"
#include "tests/TestClass.h"

#include <QTest>

using brevant::markup::MarkupPage;
using brevant::markup::phpBlocks;
using brevant::markup::Place;

class tst_MarkupPage final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void blocksEndWherePhpEndsThem_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArrayList>("blocks");

        const auto row = [](const char *name, const QByteArray &page, const QByteArrayList &blocks) {
            QTest::newRow(name) << page << blocks;
        };
        row("none", "<p>a", {});
        row("two", "<?= $a ?><p><?php b() ?>", {"<?= $a ?>", "<?php b() ?>"});
        row("no end", "a<?php b() ", {"<?php b() "});
        row("nothing", "<?", {"<?"});
        row("in single quotes", "<?= '?>' ?>a", {"<?= '?>' ?>"});
        row("in double quotes", "<?= \"\\\"?>\" ?>a", {"<?= \"\\\"?>\" ?>"});
        row("backslash at the end of a string", "<?= '\\\\' ?>a'?>", {"<?= '\\\\' ?>"});
        row("string without an end", "<?= '?>", {"<?= '?>"});
        row("in a comment", "<?php /* ?> */ ?>a", {"<?php /* ?> */ ?>"});
        row("comment without an end", "<?php /* ?>", {"<?php /* ?>"});
        row("behind a line comment", "<?php // it's ?>a'?>", {"<?php // it's ?>"});
        row("behind a number sign", "<?php # it's\n b() ?>a", {"<?php # it's\n b() ?>"});
        row("attribute", "<?php #['?>'] ?>a", {"<?php #['?>'] ?>"});
        row("here document", "<?= <<<X\n?> it's\n X ?>a", {"<?= <<<X\n?> it's\n X ?>"});
        row("quoted here document", "<?= <<<'X'\n?>\nXY\nX ?>a", {"<?= <<<'X'\n?>\nXY\nX ?>"});
        row("here document without an end", "<?= <<<X\n?>", {"<?= <<<X\n?>"});
        row("shift", "<?= 1 <<<2 ?>a", {"<?= 1 <<<2 ?>"});
    }

    void blocksEndWherePhpEndsThem()
    {
        QFETCH(const QByteArray, page);
        QByteArrayList blocks;
        for (const std::string_view block : phpBlocks({page.data(), static_cast<std::size_t>(page.size())}))
            blocks.append(QByteArray(block.data(), static_cast<qsizetype>(block.size())));
        QTEST(blocks, "blocks");
    }

    void placesLeadBackToTheSource()
    {
        const MarkupPage page("<!-- <?= $a\n ?>\n--><?= $b ?>\r\nö x\ny <?= $c ?>\nz",
                              MarkupPage::Language::Php);
        QCOMPARE(page.text(), std::string("<!--#brevantkeeps0_--><?= $b ?>ö x\ny <?= $c ?>z"));
        const auto place = [&page](std::size_t line, std::size_t column) {
            const Place found = page.inSource({line, column});
            return QPair<std::size_t, std::size_t>(found.line, found.column);
        };
        using Pair = QPair<std::size_t, std::size_t>;
        QCOMPARE(place(1, 1), Pair(1, 1));
        QCOMPARE(place(1, 34), Pair(4, 3)); // x
        QCOMPARE(place(2, 1), Pair(5, 1));  // y
        QCOMPARE(place(2, 12), Pair(6, 1)); // z
        QCOMPARE(place(9, 9), Pair(6, 2));
    }

    void nothingIsRestoredFromChangedCode()
    {
        const MarkupPage page("<!-- <?= $a ?> --><p><?= $b ?>\n  x", MarkupPage::Language::Php);
        const std::string text = page.text();
        QCOMPARE(page.restored(text), std::string("<!-- <?= $a ?> --><p><?= $b ?>  x"));
        QCOMPARE(page.restored("<!--#brevantkeeps0_--><?= $b ?>\nx"),
                 std::string("<!-- <?= $a ?> --><?= $b ?>\n\nx"));
        QVERIFY(!page.restored("<p><?= $b ?>"));
        QVERIFY(!page.restored("<!--#brevantkeeps0_--><p>"));
        QVERIFY(!page.restored("<!--#brevantkeeps0_--><?= $b  ?>"));
        QVERIFY(!page.restored("<?= $b ?><!--#brevantkeeps0_-->"));
    }

    void namesOfItsOwnAreNotThoseOfTheSource()
    {
        const MarkupPage page("brevantkeeps0_<!--<?= 1 ?>-->", MarkupPage::Language::Php);
        QCOMPARE(page.text(), std::string("brevantkeeps0_<!--#brevantkeepss0_-->"));
        QCOMPARE(page.restored(page.text()), std::string("brevantkeeps0_<!--<?= 1 ?>-->"));
    }
};

BREVANT_TEST(tst_MarkupPage, QCoreApplication)
#include "tst_MarkupPage.moc"
