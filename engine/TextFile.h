// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"
#include "files/DurableFile.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevant {

/// Why the text of a file could not be read.
struct TextFileError {
    QString path;
    qint64 position; ///< of the byte, counted from 0, at which reading stopped
    QString reason;

    /// In one line, without control characters.
    [[nodiscard]] QString message() const;
};

/// Builds a text file from other texts and replaces the target as a whole on commit(); without it, nothing
/// changes.
///
/// At most one file is in memory at a time, and of UTF-8 only a part. Write failures are reported at the end;
/// the texts that follow are still read and checked.
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
    [[nodiscard]] std::optional<TextFileError> appendUtf8(const QString &path, int file);
    [[nodiscard]] std::optional<TextFileError> appendDecoded(const QString &path, int file);
    [[nodiscard]] QString faultReason(TextFault::Kind kind) const;
    void encode(QStringView text, bool last);
    void flush();

    DurableFile m_file;
    TextEncoding m_encoding;
    TextDecoder m_decoder;
    TextEncoder m_encoder;
    QByteArray m_output; ///< encoded, and not yet in the file
    QString m_failure;   ///< why the text cannot be written
};

} // namespace brevant
