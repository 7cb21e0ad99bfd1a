// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace brevant {

struct PreviewContent;

/// Source text to read, in the colours of its kind. The keys come to its focus proxy.
class PreviewText : public QWidget {
public:
    using QWidget::QWidget;

    /// Shows the text of `content` from its beginning, coloured as what its path names. Text that is there
    /// already stays where it is.
    virtual void setContent(const PreviewContent &content) = 0;

    /// All of the text as it is shown: without the end of its last line.
    [[nodiscard]] virtual QString shownText() const = 0;
};

/// What the module exports that is loaded with the first preview: the editor's library would cost every
/// start of the program.
class PreviewTextMaker {
public:
    virtual ~PreviewTextMaker() = default;
    [[nodiscard]] virtual PreviewText *make(QWidget *parent) const = 0;
};

} // namespace brevant

Q_DECLARE_INTERFACE(brevant::PreviewTextMaker, "org.brevant.PreviewTextMaker")
