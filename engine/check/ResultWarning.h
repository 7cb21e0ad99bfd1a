// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

namespace brevant {

/// Something that a result has lost, though its compressor called it done.
struct ResultWarning {
    enum class Kind {
        Declaration, ///< of a style sheet, lost or changed
        Statement,   ///< an at-rule without a block, lost or changed
        NothingLeft, ///< of a style sheet with rules
        GluedWords,  ///< of a page
        GluedLinks,  ///< likewise, both in links
        UseStrict,   ///< the directive of a function: a note
        NotSmaller,  ///< than its source
    };

    Kind kind;
    int line = 0;         ///< in the source, from 1; 0 for the whole file
    QStringList within{}; ///< the at-rules and rules around it, from the outermost
    QString selector{};   ///< empty in an at-rule
    QString property{};
    QString before{};
    QString after{}; ///< empty if nothing is left of it

    /// Notes alone make no file suspicious.
    [[nodiscard]] bool isNote() const { return kind == Kind::UseStrict; }

    /// What it is, in words: "declaration lost", "declaration changed".
    [[nodiscard]] QString sentence() const;

    /// All of it but the line: "declaration changed in @media print, .a: top: 0s -> 0".
    [[nodiscard]] QString withoutLine(const QString &arrow) const;

    /// All of it in one line: "line 3: declaration changed in @media print, .a: top: 0s -> 0".
    [[nodiscard]] QString inWords() const;

    bool operator==(const ResultWarning &) const = default;
};

/// What became of checking a file.
struct CheckedFile {
    QString obstacle; ///< why it could not be checked; empty if it was
    QList<ResultWarning> warnings;

    /// Whether there is more than notes.
    [[nodiscard]] bool isSuspicious() const;

    bool operator==(const CheckedFile &) const = default;
};

/// All of them in one line: "3 declarations damaged, links glued together". Notes are named if there is
/// nothing else; empty for no warnings.
[[nodiscard]] QString summaryOf(const QList<ResultWarning> &warnings);

} // namespace brevant
