// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace brevant {

class SettingsStore;

/// A switch by the strict tests: a stored value that is no boolean is neither on nor off.
enum class SwitchState { Off, On, Undecided };

/// The settings that the arguments of a compressor depend on.
struct CompressorOptions {
    /// Column and character set as stored; read once, when a run starts.
    std::optional<QString> lineBreakColumn;
    std::optional<QString> encoding;

    /// Read anew for every file.
    SwitchState lineBreak = SwitchState::Off;
    SwitchState nomunge = SwitchState::Off;
    SwitchState preserveSemi = SwitchState::Off;
    SwitchState disableOptimizations = SwitchState::Off;
    bool keepXMLSpace = false;

    /// All values at the start of a run.
    [[nodiscard]] static CompressorOptions atStartOfRun(const SettingsStore &settings);

    void readSwitches(const SettingsStore &settings);
};

/// All arguments of the Java runtime for one entry, to be run in the tools folder, as the compressors go by
/// their bare names. Empty for an entry of no kind, and if a switch that matters is undecided: Java is
/// started all the same, and compresses nothing.
///
/// Options of YUI Compressor 2.4.8 (its --help) and of htmlcompressor 1.5.3 (its --help).
[[nodiscard]] QStringList compressorArguments(const QString &entry, const std::optional<QString> &output,
                                              const CompressorOptions &options);

/// Whether YUI Compressor takes the output path for PATTERN:REPLACEMENT, as it does with any ":". It then
/// writes to the entry's path with the pattern replaced, which is the entry itself if nothing matches.
[[nodiscard]] bool isTakenForPattern(const QString &entry, const QString &output);

/// Whether it does so and either part holds special characters, so that the output may be any file.
[[nodiscard]] bool isDangerousPattern(const QString &entry, const QString &output);

} // namespace brevant
