// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "app/planned/PlanTable.h"
#include "app/planned/PlannedWindow.h"
#include "tests/TestClass.h"
#include "widgets/FilterField.h"

#include <QTest>

using namespace brevant;

/// Counts what the preview asks.
class AskedSource final : public PreviewPanelDataSource {
public:
    mutable int asked = 0;
    [[nodiscard]] int numberOfPreviewItemsInPreviewPanel() const override
    {
        ++asked;
        return 0;
    }
    [[nodiscard]] QUrl previewPanelPreviewItemAtIndex(int) const override { return {}; }
};

/// Planned outputs as a part of the program.
class tst_Planned final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_app->settings.setOverride(false, soundCheckerKeyString);
        m_app->fill(2);
        m_app->window.show();
    }

    void madeWhenItIsNeeded()
    {
        QVERIFY(!planned());
        m_app->window.ui().plannedMenu->trigger();
        QTRY_COMPARE(rows(), 2);
        QPointer<PlannedWindow> const window = planned();
        window->close();
        m_app->window.ui().plannedMenu->trigger();
        QCOMPARE(planned(), window.data());
        QVERIFY(window->isVisible());
        m_app->window.close();
        QVERIFY(!window->isVisible());
    }

    void aRunChangesWhatIsPlanned()
    {
        m_app->window.ui().plannedMenu->trigger();
        QTRY_COMPARE(problem(0), QString());
        const QPushButton *minify = nullptr;
        for (const QPushButton *const button : planned()->findChildren<QPushButton *>())
            minify = button->text() == u"&Minify" ? button : minify;
        QVERIFY(minify->isEnabled());
        m_app->window.setRunning(true);
        QVERIFY(!minify->isEnabled());
        m_app->window.setRunning(false);
        m_app->window.ui().minifyMenu->trigger();
        QTRY_VERIFY(!m_app->jobs.isRunning());
        QTRY_COMPARE(problem(0), u"Output is newer than the source"_s);
        QTRY_VERIFY(minify->isEnabled());
        QVERIFY(planned()->isVisible());
    }

    void theSelectionIsNothingToThePreview()
    {
        m_app->window.ui().plannedMenu->trigger();
        QTRY_COMPARE(rows(), 2);
        m_app->table->selectRowIndexes({0}, false);
        m_app->delegate.togglePreviewPanel();
        PreviewPanel *const panel = m_app->delegate.sharedPreviewPanel();
        AskedSource source;
        panel->setDataSource(&source);
        source.asked = 0;
        planned()->findChild<PlanTable *>()->selectRow(1);
        QCOMPARE(source.asked, 0);
        panel->setDataSource(&m_app->controller);
        m_app->delegate.togglePreviewPanel();
    }

    void theFilterIsNoTextChangeToThePreferences()
    {
        m_app->controller.showPreferencePanel();
        m_app->window.ui().plannedMenu->trigger();
        m_app->settings.setObject(u"-outside"_s, suffixKeyString);
        QVERIFY(QTest::qWaitForWindowActive(planned()));
        auto *const filter = planned()->findChild<FilterField *>();
        filter->setFocus();
        QTest::keyClicks(filter, u"css"_s);
        QCOMPARE(filter->text(), u"css"_s);
        QCOMPARE(m_app->settings.stringForKey(suffixKeyString), u"-outside"_s);
    }

    void minifySaysWhatItWillDo()
    {
        const QPushButton *const minify = m_app->window.ui().minifyButton;
        QCOMPARE(minify->toolTip(), u"Writes 2 minified copies beside their sources"_s);
        m_app->drop({m_app->file(u"more.css"_s)});
        QCOMPARE(minify->toolTip(), u"Writes 3 minified copies beside their sources"_s);
        m_app->settings.setBool(false, suffixSwitcherKeyString);
        QCOMPARE(minify->toolTip(), u"Replaces 3 sources"_s);
        m_app->table->selectRowIndexes({0, 1}, false);
        m_app->controller.removeRow();
        QCOMPARE(minify->toolTip(), u"Replaces 1 source"_s);
        m_app->settings.setBool(false, sameFolderKeyString);
        m_app->settings.setObject(u"/d"_s, selectedFolderKeyString);
        QCOMPARE(minify->toolTip(), u"Writes 1 minified copy into /d"_s);
    }

private:
    PlannedWindow *planned() const { return m_app->window.findChild<PlannedWindow *>(); }
    const QAbstractItemModel &model() const { return *planned()->findChild<PlanTable *>()->model(); }
    int rows() const { return model().rowCount(); }
    QString problem(int row) const { return model().index(row, PlanModel::Problem).data().toString(); }

    std::unique_ptr<AppFixture> m_app;
};

BREVANT_TEST(tst_Planned, QApplication)
#include "tst_Planned.moc"
