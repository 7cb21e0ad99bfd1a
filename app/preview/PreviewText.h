// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace brevant {

struct PreviewContent;

/// Source text to read, in the colours of its kind. Its maker lies in a module of its own, loaded with the
/// first preview: the editor's library would cost every start of the program.
class PreviewText {
public:
    PreviewText() = default;
    PreviewText(const PreviewText &) = delete;
    PreviewText &operator=(const PreviewText &) = delete;
    virtual ~PreviewText() = default;

    /// The widget that shows it, which owns it.
    [[nodiscard]] virtual QWidget *widget() = 0;

    /// Shows the text of `content` from its beginning, coloured as what its path names. Text that is there
    /// already stays where it is.
    virtual void setContent(const PreviewContent &content) = 0;

    /// All of the text as it is shown: without the end of its last line.
    [[nodiscard]] virtual QString shownText() const = 0;

    /// What is selected with the pointer, as it is in the file: without folds and marks.
    [[nodiscard]] virtual QString selectedText() const = 0;

    /// The text itself, for the keys that come to it.
    [[nodiscard]] virtual QWidget *editor() const = 0;
};

/// What the module exports.
class PreviewTextMaker {
public:
    virtual ~PreviewTextMaker() = default;
    [[nodiscard]] virtual PreviewText *make(QWidget *parent) const = 0;
};

/// A text as a child of `parent`; null if its module is missing.
[[nodiscard]] PreviewText *makePreviewText(QWidget *parent);

} // namespace brevant

Q_DECLARE_INTERFACE(brevant::PreviewTextMaker, "org.brevant.PreviewTextMaker")
