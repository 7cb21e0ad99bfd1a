// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"
#include "files/DurableFile.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevant {

/// Why a file gave no text.
struct TextFileError {
    QString path;
    qint64 position; ///< of the byte, counted from 0, at which reading stopped
    QString reason;

    /// All of it in one line.
    [[nodiscard]] QString message() const;
};

/// A text file put together in a named encoding, which takes its place as a whole when it is committed.
///
/// At most one file is in memory at a time, and in UTF-8 only a part of it. What cannot be written shows at
/// the end: the texts that are appended are read and checked all the same. A writer that is dropped has
/// changed nothing.
class TextFile final {
public:
    TextFile(const QString &path, TextEncoding encoding);

    void append(QStringView text);

    /// Appends the whole text of the regular file `path`, which is read in the same encoding; a byte-order
    /// mark at its start is not text. After an error the text so far is incomplete and must not be committed.
    [[nodiscard]] std::optional<TextFileError> appendFile(const QString &path);

    /// Replaces the file atomically and durably; a symbolic link is followed and an existing file's mode
    /// kept. Returns the reason of a failure, which leaves the old file, or an empty text.
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
