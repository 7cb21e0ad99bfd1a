// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "engine/TextCodec.h"
#include "engine/modern/Filter.h"
#include "engine/modern/FilterMessages.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <optional>

namespace brevant {

struct FileKind;
class FilterRunner;
class SettingsStore;
struct Tools;

/// What a modern compressor is to do, as the settings have it.
struct ModernOptions {
    TextEncoding encoding = TextEncoding::Utf8;
    QString esbuild;   ///< the program, by its absolute path; empty for the one that Brevant brings along
    QString lineLimit; ///< the column after which lines are broken; empty for no breaks
    bool keepNames = false;  ///< of variables
    bool keepSyntax = false; ///< only white space and names get shorter
    bool isAscii = false;    ///< all other characters are escaped where the language can
    bool keepSpaces = false; ///< between tags
    bool keepComments = false;
    bool makeSourceMap = false;
    QString error; ///< why the settings cannot be followed; empty if they can

    /// `lineBreakColumn` and `encoding` are those of the start of the run.
    [[nodiscard]] static ModernOptions forKind(const FileKind &kind, const SettingsStore &settings,
                                               const std::optional<QString> &lineBreakColumn,
                                               const std::optional<QString> &encoding);
};

/// What a modern compressor made of a source.
struct ModernResult {
    QByteArray output;
    QByteArray sourceMap;  ///< in JSON; empty if there is none
    bool isSource = false; ///< the output is the source, as what the compressor wrote is not smaller
    QString error;         ///< why there is no output; empty if there is one
    CompressorMessages messages;
};

/// The program for a kind, with its arguments.
///
/// Options of esbuild 0.28.2 (its --help).
[[nodiscard]] Filter modernFilter(const FileKind &kind, const ModernOptions &options, const Tools &tools);

/// The same as it is asked first about a source of these bytes.
[[nodiscard]] Filter modernFilterFor(const FileKind &kind, const QByteArray &source,
                                     const ModernOptions &options, const Tools &tools);

/// Turns the bytes of a source into those of its output, by the programs esbuild and brevant-markup. No file
/// is read or written: `sourcePath` and `outputPath` are for the source map.
[[nodiscard]] ModernResult minifyModern(const FileKind &kind, const QByteArray &source,
                                        const ModernOptions &options, const Tools &tools,
                                        const QString &sourcePath, const QString &outputPath,
                                        FilterRunner &filters);

} // namespace brevant
