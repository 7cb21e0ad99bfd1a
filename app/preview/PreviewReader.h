// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace brevant {

/// What there is to show of one file.
struct PreviewContent {
    enum class State { Text, Empty, Missing, Unreadable, Folder, Special, Binary };

    QString path;
    QString encoding;
    State state = State::Missing;
    QString reason;               ///< why the file is unreadable
    QByteArray text;              ///< in UTF-8; from the file's beginning, perhaps not up to its end
    std::vector<qsizetype> folds; ///< offsets in `text` of line feeds that are not in the file
    std::vector<qsizetype> marks; ///< and of the left-to-right marks around what reads from right to left
    qint64 size = 0;              ///< of the file, in bytes
    qint64 shown = 0;             ///< of the file, the bytes that are in `text`
    std::optional<qint64> lines;  ///< of the file; not counted in a very large one
    bool hasInvalidBytes = false; ///< shown as U+FFFD
    QDateTime modified;
    bool isOutput = false;           ///< what was read is the output of the file
    std::optional<qint64> otherSize; ///< of the output, or of the file if that was read; if there is one
};

/// No more bytes of one file are shown.
constexpr qint64 previewLimit = 1'000'000;

/// Longer lines, in columns, are folded: a line is laid out as a whole, however little of it is in sight.
constexpr int previewLongestLine = 400;

/// The same for lines in which something reads from right to left.
constexpr int previewLongestMixedLine = 120;

/// The most columns of a folded line.
constexpr int previewFoldedLine = 80;

/// U+200E in UTF-8.
constexpr QByteArrayView leftToRightMark("\xE2\x80\x8E");

/// Reads `path` as text in the encoding of that name, UTF-8 if there is none. Only a regular file is opened.
/// Calls `cancelled` now and then, and returns nothing once it is true. Safe in any thread.
[[nodiscard]] std::optional<PreviewContent> readPreview(const QString &path, const QString &encoding,
                                                        const std::function<bool()> &cancelled);

/// What is said instead of text: one plain sentence. Empty if there is text.
[[nodiscard]] QString previewSentence(const PreviewContent &content);

/// What to know about the text that is shown, if anything: that it ends early, or differs from the file.
[[nodiscard]] QString previewNotice(const PreviewContent &content);

/// Size, lines, encoding and date of the file, as far as there are any.
[[nodiscard]] QString previewFooter(const PreviewContent &content);

} // namespace brevant
