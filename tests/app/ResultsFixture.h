// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppFixture.h"
#include "app/results/ResultMark.h"
#include "app/results/ResultsWindow.h"

#include <QTest>

using namespace brevant;

/// A test with the whole program, and runs of it.
class ResultsFixture : public QObject {
    Q_OBJECT

protected:
    /// A text that the stub for Java makes smaller: a check finds nothing to say.
    inline static const QByteArray sound = "copy " + QByteArray(1000, 'x');

    void fill(const QList<QByteArray> &texts)
    {
        QStringList paths;
        for (const QByteArray &text : texts)
            paths.append(m_app->file(u"f%1.css"_s.arg(paths.size()), text));
        m_app->drop(paths);
    }

    /// A whole run on this thread; the window shows it afterwards.
    void run()
    {
        runMinifyJob(*m_app, m_stop);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] ResultMark *mark() const { return m_app->window.findChild<ResultMark *>(); }
    [[nodiscard]] ResultsWindow *results() const { return m_app->window.findChild<ResultsWindow *>(); }

    std::unique_ptr<AppFixture> m_app;
    std::atomic<Stop> m_stop = Stop::No;
};
