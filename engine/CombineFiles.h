// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"
#include "files/DurableFile.h"

namespace brevant {

/// What a refused combine tells the user.
struct CombineAlert {
    QString title;
    QString message;

    bool operator==(const CombineAlert &) const = default;
};

/// The kind of the selected `entries`: the extension of the first one as it is spelt there, or "NO" if the
/// others do not all have the same one, the case of A to Z ignored. It is the type that the combined file may
/// have.
[[nodiscard]] QString combineKind(const std::vector<QString> &entries);

/// Why the selected `entries`, in the order of their rows, may not be combined; nothing if they may.
[[nodiscard]] std::optional<CombineAlert> combineRefusal(const std::vector<QString> &entries);

/// Why the text of a file could not be read.
struct TextFileError {
    QString path;
    qint64 position; ///< of the byte, counted from 0, at which reading stopped
    QString reason;

    /// In one line, without control characters.
    [[nodiscard]] QString message() const;
};

/// Builds a text file from other texts and replaces the target as a whole on commit(); without it, nothing
/// changes. At most one file is in memory at a time. Write failures are reported at the end; the texts that
/// follow are still read and checked.
class TextFile final {
public:
    TextFile(const QString &path, TextEncoding encoding);

    void append(QStringView text);

    /// Appends the text of the regular file `path`, in the same encoding and without a byte-order mark. After
    /// an error the text is incomplete and must not be committed.
    [[nodiscard]] std::optional<TextFileError> appendFile(const QString &path);

    /// Replaces the target, as DurableFile does. Returns the reason of a failure, or an empty text.
    [[nodiscard]] QString commit();

private:
    void encode(QStringView text, bool last);
    void put(QByteArrayView bytes);

    DurableFile m_file;
    TextEncoding m_encoding;
    TextCodec m_codec;
    QByteArray m_output; ///< encoded, and not yet in the file
    QString m_failure;   ///< why the text cannot be written
};

/// How a combine ended.
struct CombineResult {
    enum class Outcome {
        Aborted,    ///< a file could not be read or was not valid; nothing may change, the queue neither
        Written,    ///< the target holds the combined text
        WriteFailed ///< the target is as it was, but the queue changes as if it had been written
    };

    Outcome outcome;
    QString errorText; ///< one line that names the file, and the byte if reading failed; else empty
};

/// Writes the texts of `paths`, each followed by one line feed, to `target`, which may be one of them; they
/// are read and written in `encoding`, and a leading "~" is expanded. The target is replaced as a whole at
/// the end, or not at all. Without paths, an existing target is kept.
[[nodiscard]] CombineResult combine(const std::vector<QString> &paths, const QString &target,
                                    TextEncoding encoding);

} // namespace brevant
