// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RecordedFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVarLengthArray>

#include <optional>
#include <utility>

namespace brevant {

/// Files with the extensions that name them copies of an output; empty for itself, and for its source.
using RecordedFiles = QVarLengthArray<std::pair<QString, RecordedFile>, 5>;

} // namespace brevant

/// What BuildCache records of an output, as a line of JSON: its path, and an array of the source, the recipe,
/// the RecordedFile of the source, that of the output, and those of its copies, each behind its extension.
///
/// Such a line is read by its parts alone, which is much faster than any reader of JSON; one that is no such
/// line says nothing.
namespace brevant::CacheLine {

[[nodiscard]] QByteArray from(const QByteArray &name, QByteArrayView source, QByteArrayView recipe,
                              const RecordedFiles &files);

/// A path as it stands between quotes.
[[nodiscard]] QByteArray quoted(const QByteArray &path);

/// The path of the output, as it stands there; empty if this is no line.
[[nodiscard]] QByteArrayView nameIn(QByteArrayView line);

/// Takes the parts of a line, one after the other.
class Parts final {
public:
    explicit Parts(QByteArrayView line);

    /// The next one; null behind the last.
    [[nodiscard]] QByteArrayView next();

private:
    QByteArrayView m_rest;
};

/// What a part says of a file, and the extension before it.
[[nodiscard]] std::optional<std::pair<QString, RecordedFile>> fileFrom(QByteArrayView part);

/// The path of a copy with that extension, or of the output itself.
[[nodiscard]] QByteArray pathOf(const QByteArray &output, const QString &extension);

/// Whether source, output and copies look as the parts from here on say. If not, they may still hold the
/// same.
[[nodiscard]] bool looksUnchanged(Parts parts, const QByteArray &source, const QByteArray &output);

} // namespace brevant::CacheLine
