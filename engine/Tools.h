// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace brevant {

class SettingsStore;

/// Where the external programs of a run are, and where its safety copies go.
struct Tools {
    /// The Java runtime; always this one, whatever the search path says.
    QString java = QStringLiteral("/usr/bin/java");

    /// The folder of the compressors, which is their working folder too.
    QString folder;

    /// The folder of the modern compressors.
    QString programs;

    /// The folders for safety copies, the best first. Empty for no copies at all, which only measurements
    /// want.
    QStringList originals = standardOriginals();

    /// `$XDG_STATE_HOME/brevant/originals`, with ~/.local/state for a variable that is unset or relative (XDG
    /// Base Directory Specification 0.8), then one in the temporary folder, for a home that cannot be
    /// written.
    [[nodiscard]] static QStringList standardOriginals();

    /// The tools in `lib` of a resource folder, with the modern compressors of the running program.
    [[nodiscard]] static Tools inResources(const QString &resourceFolder);

    /// File names of the two compressors in the tools folder.
    static constexpr QLatin1StringView yuiCompressor{"yuicompressor-2.4.8.jar"};
    static constexpr QLatin1StringView htmlCompressor{"htmlcompressor-1.5.3.jar"};

    /// The modern compressors, by their absolute paths.
    [[nodiscard]] QString esbuild() const;
    [[nodiscard]] QString markup() const;
    [[nodiscard]] QString minify() const; ///< the library within it

    /// A line for each of the four, with the version that `scripts/fetch-compressors` brings, and whether it
    /// is missing.
    [[nodiscard]] QString versions() const;

    /// What makes Brotli copies.
    [[nodiscard]] static QString brotli() { return QStringLiteral("/usr/bin/brotli"); }
    [[nodiscard]] static bool hasBrotli();

    /// What is missing for a run with these settings, and what to do about it; empty if nothing is.
    [[nodiscard]] QString missing(const SettingsStore &settings) const;

    /// What of one family of compressors is missing; empty if nothing is. An `esbuild` of the user's own, by
    /// its path, stands for ours.
    [[nodiscard]] QString missingClassic() const;
    [[nodiscard]] QString missingModern(const QString &esbuild = {}) const;
};

/// The resource folder of the running program: `resources` beside it in a build folder, `share/brevant` below
/// the same prefix when installed.
[[nodiscard]] QString findResourceFolder();

/// The folder of the modern compressors: `libexec` beside it, or `libexec/brevant` below the same prefix.
[[nodiscard]] QString findProgramFolder();

} // namespace brevant
