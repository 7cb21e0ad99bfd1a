// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preview/PreviewText.h"

#include <QStringView>

#include <memory>
#include <vector>

class QsciLexer;
class QsciScintilla;

namespace brevant {

class StyleSheets;

/// Source text to read, in the colours of its kind, with a menu that copies and scrolls.
class SourceText final : public PreviewText {
    Q_OBJECT

public:
    explicit SourceText(QWidget *parent);
    ~SourceText() override;

    void setContent(const PreviewContent &content) override;
    [[nodiscard]] QString shownText() const override;

    /// What is selected with the pointer, as it is in the file: without folds and marks.
    [[nodiscard]] QString selectedText() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void setUpEditor();
    void applyTheme();
    void applyThemeToEditor();
    void fitMargin();
    void showMenu(QPoint point);
    [[nodiscard]] QsciLexer *lexerFor(QStringView path) const;

    QsciScintilla *m_editor;
    QsciLexer *m_css;
    QsciLexer *m_javaScript;
    QsciLexer *m_html;
    std::unique_ptr<StyleSheets> m_styleSheets;
    QByteArray m_text;
    std::vector<qsizetype> m_added; ///< offsets of the bytes in the text that are not in the file, ascending
    bool m_isFolded = false;
    QString m_path;
};

} // namespace brevant
