// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "tests/TestClass.h"

#include <QLabel>
#include <QTest>
#include <QToolButton>

using namespace brevant;

/// The outputs that the preview shows beside their sources.
class tst_PreviewOutputs final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_app->settings.setOverride(false, soundCheckerKeyString);
        m_app->window.show();
    }

    void beforeAndAfterARun()
    {
        m_app->drop({m_app->file(u"a.css"_s, "copy"), m_app->file(u"b.css"_s, "fail")});
        preview(0);
        QTRY_COMPARE(panel().shownText(), u"copy"_s);
        QCOMPARE(whyGreyed(), u"There is no output."_s);
        m_app->delegate.togglePreviewPanel();
        run();
        preview(0);
        QTRY_VERIFY(minified()->isEnabled());
        QTest::mouseClick(minified(), Qt::LeftButton);
        QTRY_COMPARE(panel().shownText(), u"minified "_s + m_app->folder.filePath(u"a.css"_s));
        QCOMPARE(m_app->controller.numberOfPreviewItemsInPreviewPanel(), 1);
        m_app->table->selectRowIndexes({1}, false);
        QTRY_COMPARE(panel().shownText(), u"fail"_s);
        QVERIFY2(whyGreyed().startsWith(u"Not minified: "_s), qPrintable(whyGreyed()));
    }

    void outputOfARunBySettingsOfThen()
    {
        m_app->drop({m_app->file(u"a.css"_s, "copy")});
        run();
        m_app->settings.setObject(u"-other"_s, suffixKeyString);
        preview(0);
        QTRY_VERIFY(minified()->isEnabled());
        QTest::mouseClick(minified(), Qt::LeftButton);
        QTRY_COMPARE(panel().shownText(), u"minified "_s + m_app->folder.filePath(u"a.css"_s));
    }

    void inPlace()
    {
        m_app->settings.setBool(false, suffixSwitcherKeyString);
        m_app->drop({m_app->file(u"a.css"_s, "copy")});
        preview(0);
        QTRY_COMPARE(panel().shownText(), u"copy"_s);
        QCOMPARE(whyGreyed(), u"The output replaces the source."_s);
    }

    void inPlaceWithTheOriginalKept()
    {
        m_app->tools.originals = {m_app->folder.filePath(u"originals"_s)};
        m_app->settings.setBool(false, suffixSwitcherKeyString);
        m_app->settings.setBool(true, keepOriginalsCheckerKeyString);
        m_app->drop({m_app->file(u"a.css"_s, "copy")});
        run();
        preview(0);
        QTRY_COMPARE(panel().shownText(), u"copy"_s);
        QVERIFY(minified()->isEnabled());
        QCOMPARE(panel().findChild<QLabel *>(u"previewName"_s)->text(), u"a.css"_s);
        QTest::mouseClick(minified(), Qt::LeftButton);
        const QString output = u"minified "_s + m_app->folder.filePath(u"a.css"_s);
        QTRY_COMPARE(panel().shownText(), output);
        m_app->delegate.togglePreviewPanel();
        m_app->keptOriginals.dropForRun();
        preview(0);
        QTRY_COMPARE(panel().shownText(), output);
        QCOMPARE(whyGreyed(), u"The output replaces the source."_s);
    }

private:
    void preview(int row)
    {
        m_app->table->selectRowIndexes({row}, false);
        m_app->delegate.togglePreviewPanel();
    }
    void run()
    {
        m_app->controller.minify();
        QTRY_VERIFY(!m_app->jobs.isRunning());
        QTRY_COMPARE(m_app->status(), u"Well done!"_s);
    }

    PreviewPanel &panel() const { return *m_app->delegate.sharedPreviewPanel(); }
    QToolButton *minified() const { return panel().findChild<QToolButton *>(u"previewMinified"_s); }
    QString whyGreyed() const { return minified()->isEnabled() ? QString() : minified()->toolTip(); }

    std::unique_ptr<AppFixture> m_app;
};

BREVANT_TEST(tst_PreviewOutputs, QApplication)
#include "tst_PreviewOutputs.moc"
