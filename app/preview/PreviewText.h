// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>
#include <QWidget>

#include <vector>

class QsciLexer;
class QsciScintilla;

namespace brevant {

enum class TextRole;
struct PreviewContent;

/// Source text to read, in the colours of its kind.
class PreviewText final : public QWidget {
    Q_OBJECT

public:
    explicit PreviewText(QWidget *parent);

    /// Shows the text of `content` from its beginning, coloured as what its path names. Text that is there
    /// already stays where it is.
    void setContent(const PreviewContent &content);

    /// All of the text as it is shown.
    [[nodiscard]] QString shownText() const;

    /// What is selected with the pointer, as it is in the file: without the folds.
    [[nodiscard]] QString selectedText() const;

    /// The text itself, for the keys that come to it.
    [[nodiscard]] QWidget *editor() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void setUpEditor();
    void applyTheme();
    void applyThemeTo(QsciLexer &lexer, TextRole (*roleOf)(int style)) const;
    void applyThemeToEditor();
    void fitMargin();
    [[nodiscard]] QsciLexer *lexerFor(QStringView path) const;

    QsciScintilla *m_editor;
    QsciLexer *m_css;
    QsciLexer *m_javaScript;
    QsciLexer *m_html;
    QByteArray m_text;
    std::vector<qsizetype> m_folds;
    QString m_path;
};

} // namespace brevant
