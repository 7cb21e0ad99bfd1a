// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InquiryFixture.h"
#include "app/results/MessagePane.h"
#include "app/results/ResultTable.h"
#include "app/results/ResultsWindow.h"
#include "app/results/SourceView.h"
#include "app/results/SourceViewer.h"

#include <QLabel>
#include <QTest>

namespace brevant::test {

/// A test of the window Results together with what finds out more about its files.
class WindowFixture : public QObject {
    Q_OBJECT

protected:
    void open()
    {
        m_window = std::make_unique<ResultsWindow>(
            m_bench->runs, m_bench->inquiry, [] { return u"utf-8"_s; }, nullptr);
        m_window->showLastRun();
        m_window->resize(1200, 600);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    static void doubleClick(QWidget *viewport, QPoint place)
    {
        QTest::mouseClick(viewport, Qt::LeftButton, {}, place);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, place);
    }

    void doubleClick(int row) const
    {
        doubleClick(table()->viewport(),
                    table()->visualRect(table()->model()->index(row, ResultModel::Name)).center());
    }

    [[nodiscard]] ResultTable *table() const { return m_window->findChild<ResultTable *>(); }
    [[nodiscard]] QPlainTextEdit *pane() const
    {
        return m_window->findChild<MessagePane *>()->findChild<QPlainTextEdit *>();
    }
    [[nodiscard]] QString messages() const { return pane()->toPlainText(); }
    [[nodiscard]] SourceViewer *viewer() const { return m_window->findChild<SourceViewer *>(); }

    static bool hasLabel(const QWidget &parent, const QString &text)
    {
        return std::ranges::any_of(parent.findChildren<QLabel *>(), [&text](const QLabel *label) {
            return label->isVisible() && label->text() == text;
        });
    }

    std::unique_ptr<InquiryFixture> m_bench;
    std::unique_ptr<ResultsWindow> m_window;
};

} // namespace brevant::test
