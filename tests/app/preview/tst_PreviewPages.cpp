// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewBench.h"

using namespace brevant;
using namespace brevant::test;

/// The two pages of a file that has an output.
class tst_PreviewPages final : public PreviewBench {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setUpFiles(); }

    void init()
    {
        setUpPanel();
        m_output = m_files.add(u"a.min.css"_s, "a{}");
        m_panel->setOutputOf([this](const QString &source) {
            return source == m_a ? PreviewOutput{m_output, {}} : PreviewOutput{{}, m_reason};
        });
    }

    void cleanup() { m_window.reset(); }

    void thePagesTurnByClick()
    {
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QVERIFY(button("previewSource")->isVisible() && button("previewSource")->isChecked());
        QVERIFY(button("previewMinified")->isEnabled() && !button("previewMinified")->isChecked());
        QCOMPARE(sizes(), u"12 bytes, minified 3 bytes (75.0 % saved)"_s);
        QTest::mouseClick(button("previewMinified"), Qt::LeftButton);
        QTRY_COMPARE(shownText(), u"a{}"_s);
        QVERIFY(button("previewMinified")->isChecked() && !button("previewSource")->isChecked());
        QCOMPARE(sizes(), u"3 bytes, source 12 bytes (75.0 % saved)"_s);
        QCOMPARE(labelText("previewName"), u"a.css"_s);
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QTest::mouseClick(button("previewSource"), Qt::LeftButton);
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
    }

    void theChosenPageStaysWhereThereIsOne()
    {
        m_reason = u"Not minified: line 68, column 58: syntax error"_s;
        open({m_a, m_b});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QTest::mouseClick(button("previewMinified"), Qt::LeftButton);
        QTRY_COMPARE(shownText(), u"a{}"_s);
        m_panel->setCurrentPreviewItemIndex(1);
        QTRY_COMPARE(shownText(), u"var b"_s);
        QVERIFY(button("previewSource")->isChecked());
        QVERIFY(!button("previewMinified")->isEnabled());
        QCOMPARE(button("previewMinified")->toolTip(), m_reason);
        QCOMPARE(sizes(), u"5 bytes"_s);
        m_panel->setCurrentPreviewItemIndex(0);
        QTRY_COMPARE(shownText(), u"a{}"_s);
    }

    void withoutAnOutputOnTheDisk()
    {
        QVERIFY(QFile::remove(m_output));
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QVERIFY(!button("previewMinified")->isEnabled());
        QCOMPARE(button("previewMinified")->toolTip(), u"There is no output."_s);
    }

    void anOutputThatIsLarger()
    {
        QCOMPARE(m_files.add(u"a.min.css"_s, "a{color:red;}   "), m_output);
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QCOMPARE(sizes(), u"12 bytes, minified 16 bytes (33.3 % larger)"_s);
    }

    void noButtonsWithoutAFile()
    {
        open({});
        QVERIFY(!button("previewSource")->isVisible());
        QVERIFY(!button("previewMinified")->isVisible());
    }

    void keysAreTheLists()
    {
        open({m_a});
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
        QTest::mouseClick(button("previewMinified"), Qt::LeftButton);
        QTRY_COMPARE(shownText(), u"a{}"_s);
        QVERIFY(!button("previewMinified")->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(m_owner.keys, (std::vector<int>{Qt::Key_Right, Qt::Key_Space}));
        QCOMPARE(shownText(), u"a{}"_s);
    }

private:
    QString sizes() const { return labelText("previewFooter").section(u"  ·  "_s, 0, 0); }

    QString m_output;
    QString m_reason;
};

BREVANT_TEST(tst_PreviewPages, QApplication)
#include "tst_PreviewPages.moc"
