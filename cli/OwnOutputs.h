// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/FileState.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

namespace brevant {

class ChangedPaths;

/// The files that a watch has written, with their sources, and how it has left them. Whoever has changed one
/// since has made it his own.
class OwnOutputs final {
public:
    /// Records a file that has just been written.
    void add(const QString &file, const QString &source);

    /// Whether that file is as it was left here.
    [[nodiscard]] bool hold(const QString &file) const;

    /// Whether it was made from that source, too.
    [[nodiscard]] bool hold(const QString &file, const QString &source) const;

    struct Orphan {
        QString file;
        QString source;
    };

    /// Forgets what was made from sources that are gone and among `changed`. Returns it with its sources, as
    /// far as it is as it was left.
    [[nodiscard]] std::vector<Orphan> takeOrphans(const ChangedPaths &changed);

private:
    struct Own {
        QByteArray source; ///< its path, or its name alone where it is beside the file
        FileState state;
    };
    [[nodiscard]] static QByteArray sourceOf(const QByteArray &file, const Own &own);

    QHash<QByteArray, Own> m_files; ///< by their paths, as bytes, which take half the memory
};

} // namespace brevant
