// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"

#include <QWidget>

class QAction;
class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QTextCursor;
class QToolButton;

namespace brevant {

class ElidedLabel;

/// All that there is to say of one file, and what can be done with it.
class MessagePane final : public QWidget {
    Q_OBJECT

public:
    /// What its second button shows in the file manager.
    enum class Reveal { Output, Source };

    explicit MessagePane(Reveal reveal, QWidget *parent = nullptr);

    /// Shows a file, or that none is selected. `isAsked`: its compressor is being asked once more.
    void setRow(const ResultRow *row, bool isAsked = false);

    /// Open, Reveal Output or Reveal Source, Copy Path, and Restore Source for results.
    [[nodiscard]] QList<QAction *> fileActions() const;

    /// Restore Source, which is left to others; null for plans.
    [[nodiscard]] QAction *restoreAction() const { return m_restore; }

Q_SIGNALS:
    void openRequested(const QString &source);
    void revealRequested(const QString &output);

    /// The user has chosen a message, by Return or a double click.
    void messageChosen(const CompressorMessage &message);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QAction *addButton(QHBoxLayout &bar, const QString &text);
    bool chooseMessage(const QTextCursor &at);
    void updateLooks();

    const Reveal m_whatToReveal;
    ResultRow m_row;
    int m_linesBefore = 0; ///< the first message
    QLabel *m_sign;
    ElidedLabel *m_name;
    ElidedLabel *m_folder;
    QPlainTextEdit *m_messages;
    std::vector<QToolButton *> m_buttons;
    QAction *m_open;
    QAction *m_reveal;
    QAction *m_copy;
    QAction *m_restore = nullptr;
};

/// The text with a capital and a full stop.
[[nodiscard]] QString wholeSentence(QString text);

/// Everything that is to be said of a file, a line each: messages with their places, then what became of it.
[[nodiscard]] QStringList linesAbout(const ResultRow &row);

} // namespace brevant
