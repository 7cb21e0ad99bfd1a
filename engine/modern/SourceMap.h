// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace brevant {

struct FileKind;

/// Source maps, revision 3 (ECMA-426): https://tc39.es/ecma426/. They lie beside their output, as OUTPUT.map.

[[nodiscard]] QString sourceMapPath(const QString &outputPath);

/// Cuts the source map that esbuild has put behind its output off, and returns it with the source named as
/// seen from the output. Empty if there is none.
[[nodiscard]] QByteArray takeSourceMap(QByteArray &output, const QString &sourcePath,
                                       const QString &outputPath);

/// The comment, on a line of its own, by which the output names its map.
[[nodiscard]] QByteArray sourceMapLink(const FileKind &kind, const QString &outputPath);

} // namespace brevant
