// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

/// What an esbuild that takes one text after another reads and writes: packets of values, each with its
/// length before it. Its JavaScript and Dart packages talk to it so (esbuild 0.28.2,
/// cmd/esbuild/stdio_protocol.go); other versions may do it otherwise.
namespace brevant::EsbuildPackets {

/// Makes esbuild do so; it ends where its standard input does.
[[nodiscard]] QStringList arguments();

/// The packet that it begins with.
[[nodiscard]] QByteArray greeting();

/// The begin of a request to minify a text of that size, which is to follow it. `flags` are those that would
/// have it minify one text alone.
[[nodiscard]] QByteArray requestHead(const QStringList &flags, qsizetype textSize);

/// The bytes of the packet that begins there, its length included; nothing as long as that is not there.
[[nodiscard]] std::optional<qint64> sizeOfPacket(const QByteArray &bytes);

struct Answer {
    QByteArray code;
    bool isFailure = false; ///< it has told why on standard error
};

/// Nothing if the packet is no answer.
[[nodiscard]] std::optional<Answer> readAnswer(QByteArrayView packet);

} // namespace brevant::EsbuildPackets
