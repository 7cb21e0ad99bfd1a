// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CacheLine.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace brevant {

class Descriptor;

/// An output, and what it is made from.
struct MadeOutput {
    QString source;
    QString output;
    QStringList copies; ///< extensions of what may lie beside it then: "gz", "br", "map"
    QByteArray recipe;  ///< stands for all else that decides its bytes; letters and digits

    bool operator==(const MadeOutput &) const = default;
};

/// What was made from what, in a file of JSON with a CacheLine for each output. Other files, with empty texts
/// for source and recipe, are there for their hashes. Paths are relative to the folder of the file, unless
/// only the root has them both.
///
/// Nothing depends on the file. One that is missing, or no such file, says that nothing has been made; a line
/// of it that is none says nothing. So it may come from anywhere: each thing that it says is held against the
/// files themselves. One call at a time.
class BuildCache final {
public:
    static constexpr QLatin1StringView fileName{".brevant-cache.json"};

    /// Reads the file in that folder.
    explicit BuildCache(const QString &folder);

    /// Why a file that is there is not used; empty if it is.
    [[nodiscard]] const QString &error() const { return m_error; }

    /// Whether that was made, and source, output and copies still have the content that they had then.
    [[nodiscard]] bool isUpToDate(const MadeOutput &wanted);

    /// To be called before that is made: what the source holds now is what the output will be made from.
    void begin(const MadeOutput &wanted);

    /// What was begun has been made. Nothing is recorded of it where that is not called, or where it says
    /// that it was made from something else.
    void made(const MadeOutput &made);

    /// The output, where it was made from that source, and its copies, as far as nobody has changed them.
    /// `output` has to be known from elsewhere, as the file might name any.
    [[nodiscard]] QStringList ownFiles(const QString &source, const QString &output) const;

    /// The content of a file is known by this; empty if it cannot be read.
    [[nodiscard]] QByteArray hashOf(const QString &path);

    /// Brings the file up to date, if there is something new, and forgets outputs that are gone. What other
    /// processes have recorded meanwhile stays. Why that is not possible, in words; empty if it is.
    [[nodiscard]] QString save();

private:
    [[nodiscard]] QString path() const;
    void read();
    [[nodiscard]] QString readLines(const Descriptor &file, qint64 size);
    [[nodiscard]] QByteArray nameOf(QByteArray path) const;
    [[nodiscard]] QByteArrayView usualNameOf(const QByteArray &path) const;
    [[nodiscard]] bool isNameOf(QByteArrayView name, const QByteArray &path) const;
    [[nodiscard]] QByteArrayView lineOf(const QByteArray &path) const;
    void settle();
    [[nodiscard]] bool isOfUse(QByteArrayView line) const;

    struct Begun {
        MadeOutput wanted;
        std::optional<RecordedFile> source;
        RecordedFiles files; ///< once made
    };

    const QString m_folder;
    std::vector<std::pair<QByteArray, QByteArray>> m_above; ///< folders above a path, and the way to them
    QString m_error;
    bool m_isOurs = true; ///< and may be replaced
    mode_t m_mode = 0600;
    QByteArray m_text;                             ///< of the file
    QHash<QByteArrayView, QByteArrayView> m_lines; ///< of that text, by the names of their outputs
    QHash<QString, Begun> m_begun;
    std::vector<Begun> m_made;
    QHash<QByteArray, QByteArray> m_changed; ///< lines that are new, by the names of their outputs
};

} // namespace brevant
