// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/modern/FilterMessages.h"

#include <QWidget>

class QLabel;

namespace brevant {

class ElidedLabel;
class PreviewLoader;
class SourceView;
struct PreviewContent;
struct ResultRow;

/// A window with a source and what is to be said of one place in it. The file is read on another thread.
class SourceViewer final : public QWidget {
    Q_OBJECT

public:
    explicit SourceViewer(QWidget *parent);

    /// Opens with the source of a file, at the place that `about` is about, or shows it instead of another.
    void showSource(const ResultRow &row, const CompressorMessage &about, const QString &encoding);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showContent(const PreviewContent &content);

    PreviewLoader *m_loader;
    ElidedLabel *m_folder;
    QLabel *m_message;
    QLabel *m_notice;
    SourceView *m_view;
    CompressorMessage m_about;
};

} // namespace brevant
