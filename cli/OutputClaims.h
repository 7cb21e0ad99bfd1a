// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace brevant {

/// Keeps the entries of a run independent: none may be written over the source or output of another. Asked
/// for each entry, in the order of the queue.
class OutputClaims final {
public:
    explicit OutputClaims(const std::vector<QString> &sources);

    /// Why that entry must not be run; empty if it may, and its output is taken from then on.
    [[nodiscard]] QString claim(const QString &source, const std::optional<QString> &output);

private:
    [[nodiscard]] bool isTaken(const QString &output, const QStringList &marks) const;

    QHash<QString, QString> m_sources; ///< by mark
    QHash<QString, QString> m_outputs; ///< by mark
    QSet<QString> m_outputsInAnyCase;  ///< folders and names, case-folded
};

/// Why an entry whose path holds RawBytes is not run.
[[nodiscard]] QString notUtf8();

/// What a run in the terminal refuses to do. Asked for each entry, in the order of the queue.
[[nodiscard]] Refusal refusalFor(const std::vector<QString> &sources, const SettingsStore &settings);

/// Each entry with the output that a run would give it.
using EntriesWithOutputs = std::vector<std::pair<QString, std::optional<QString>>>;
[[nodiscard]] EntriesWithOutputs entriesWithOutputs(const FileQueue &queue, const SettingsStore &settings);

/// Prints the path of each entry and of its output, except for entries that hold RawBytes. False, with errno
/// set, on failure.
[[nodiscard]] bool printList(const FileQueue &queue, const SettingsStore &settings);

/// Prints the commands of a run as a shell script. False, with errno set, on failure.
[[nodiscard]] bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools);

} // namespace brevant
