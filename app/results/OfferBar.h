// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QStringList>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace brevant {

struct RunRecord;

/// Offers to minify by the modern compressors what classic ones failed on.
class OfferBar final : public QWidget {
    Q_OBJECT

public:
    explicit OfferBar(QWidget *parent);

    /// Is about that run, or about none. `isPossible`: no run is on.
    void setRun(const RunRecord *run, bool isPossible);

Q_SIGNALS:
    /// For always, and not only this once.
    void accepted(const QStringList &sources, bool isForAlways);

    /// Also when it has been accepted. It does not come back about that run.
    void closed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void accept(bool isForAlways);
    void decline();
    void updateLooks();

    QBoxLayout *m_lines;
    QLabel *m_sign;
    QLabel *m_text;
    QPushButton *m_once;
    QPushButton *m_always;
    QToolButton *m_close;
    QStringList m_sources;
    int m_run = -1;
    QSet<int> m_declined; ///< runs
};

} // namespace brevant
