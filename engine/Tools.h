// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace brevant {

/// The outside programs of a run and where they are, and where safety copies go meanwhile.
struct Tools {
    /// The Java runtime; always this one, whatever the search path says.
    QString java = QStringLiteral("/usr/bin/java");

    /// Where the compressors lie: their working folder too.
    QString folder;

    /// The folders for safety copies of sources, the best first; empty for none at all, which only a
    /// measurement wants.
    QStringList originals = standardOriginals();

    /// `$XDG_STATE_HOME/brevant/originals`, where ~/.local/state stands in for a variable that is not set or
    /// whose path does not begin at the root (XDG Base Directory Specification 0.8); then, for a home that
    /// takes no files, a folder among the temporary ones.
    [[nodiscard]] static QStringList standardOriginals();

    /// The tools in `lib` of a resource folder.
    [[nodiscard]] static Tools inResources(const QString &resourceFolder);

    /// File names of the two compressors in the tools folder.
    [[nodiscard]] static QString yuiCompressor();
    [[nodiscard]] static QString htmlCompressor();

    /// What a run cannot do without and that is not there, with what to do about it; empty if all is well.
    [[nodiscard]] QString missing() const;
};

/// The application's resource folder, found from the place of the running program: `resources` beside it in a
/// build folder, `share/brevant` below the same prefix when installed.
[[nodiscard]] QString findResourceFolder();

} // namespace brevant
