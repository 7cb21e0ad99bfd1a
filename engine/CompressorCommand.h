// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace brevant {

class SettingsStore;

/// How a switch stands by the strict tests: a stored value that is no boolean is neither on nor off.
enum class SwitchState { Off, On, Undecided };

/// What the arguments of a compressor depend on besides the entry and its output.
struct CompressorOptions {
    /// The column and the character set as they are stored; read once, when a run starts.
    std::optional<QString> lineBreakColumn;
    std::optional<QString> encoding;

    /// Read again for every file.
    SwitchState lineBreak = SwitchState::Off;
    SwitchState nomunge = SwitchState::Off;
    SwitchState preserveSemi = SwitchState::Off;
    SwitchState disableOptimizations = SwitchState::Off;
    bool keepXMLSpace = false;

    /// The values of a run that starts now, the switches included.
    [[nodiscard]] static CompressorOptions atStartOfRun(const SettingsStore &settings);

    void readSwitches(const SettingsStore &settings);
};

/// The whole argument list of the Java runtime for one entry, compressor first; to be run in the tools
/// folder, where the compressors are found by their bare names. Empty for an entry of no kind, and where a
/// switch that the kind looks at is undecided: Java is started all the same then, and compresses nothing.
///
/// Options of YUI Compressor 2.4.8 (its --help) and of htmlcompressor 1.5.3 (its --help).
[[nodiscard]] QStringList compressorArguments(const QString &entry, const std::optional<QString> &output,
                                              const CompressorOptions &options);

/// Whether YUI Compressor takes that output path for a pattern and a replacement, with ":" between them: it
/// writes where the replacement of the pattern in the path of the entry leads, which is the entry itself
/// where the pattern does not match.
[[nodiscard]] bool isTakenForPattern(const QString &entry, const QString &output);

/// Whether it does so, and the two are no plain texts: the output may be any file then.
[[nodiscard]] bool isDangerousPattern(const QString &entry, const QString &output);

} // namespace brevant
