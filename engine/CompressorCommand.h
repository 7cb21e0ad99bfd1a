// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/modern/ModernCompressor.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <utility>

namespace brevant {

class SettingsStore;

/// The arguments of one child process: those before the first absent one, with which it is started.
[[nodiscard]] QStringList upToAbsent(const QList<std::optional<QString>> &arguments);

/// The command lines of the compressors in one run.
class CompressorCommand final {
public:
    /// Reads the column of line breaks and the character set, which hold for the whole run.
    explicit CompressorCommand(const SettingsStore &settings);

    /// All arguments of the Java runtime for one entry, to be run in the tools folder, as the compressors go
    /// by their bare names. The switches are read here. Empty for an entry of no kind, and if a switch that
    /// matters is neither true nor false: Java is started all the same, and compresses nothing.
    ///
    /// Options of YUI Compressor 2.4.8 (its --help) and of htmlcompressor 1.5.3 (its --help).
    [[nodiscard]] QStringList arguments(const QString &entry, const std::optional<QString> &output) const;

    /// What a modern compressor does for a kind instead. The switches are read here.
    [[nodiscard]] ModernOptions modernOptions(const FileKind &kind) const
    {
        return ModernOptions::forKind(kind, m_settings, m_lineBreakColumn, m_encoding);
    }

    [[nodiscard]] const SettingsStore &settings() const { return m_settings; }

    /// The character set of the sources and outputs of the run.
    [[nodiscard]] TextEncoding encoding() const { return textEncodingNamed(m_encoding); }

private:
    [[nodiscard]] QStringList yuiArguments(bool isScript, const QString &entry,
                                           const std::optional<QString> &output) const;
    [[nodiscard]] QStringList htmlArguments(const QString &entry, const std::optional<QString> &output) const;

    const SettingsStore &m_settings;
    const std::optional<QString> m_lineBreakColumn;
    const std::optional<QString> m_encoding;
};

/// Whether YUI Compressor takes the output path for PATTERN:REPLACEMENT, as it does with any ":". It then
/// writes to the entry's path with the pattern replaced, which is the entry itself if nothing matches.
[[nodiscard]] bool isTakenForPattern(const QString &entry, const QString &output);

/// Whether it does so and either part holds special characters, so that the output may be any file.
[[nodiscard]] bool isDangerousPattern(const QString &entry, const QString &output);

/// What to call a temporary folder for outputs, for QTemporaryDir: not where YUI Compressor would take their
/// paths for patterns, nor where Java cannot open them in the locale C.
[[nodiscard]] QString temporaryFolderForOutputs();

/// One child process of the gzip copy: program and arguments.
using GzipStep = std::pair<QString, QStringList>;

/// The four steps that make a compressed copy of `output` and leave `output` itself as it was, by way of a
/// temporary copy. Without an output path each list ends where that would stand.
///
/// gzip -S SUFFIX (gzip(1)) removes just SUFFIX and leaves the dot before it, which is what mv is for.
[[nodiscard]] std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output);

} // namespace brevant
