// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QSet>
#include <QString>

#include <optional>
#include <vector>

namespace brevant {

class SettingsStore;

/// Sees to it that no entry of a run is written over another one's source or output, so that the entries do
/// not depend on one another. To be asked for each entry, in the order of the list.
class OutputClaims final {
public:
    explicit OutputClaims(const std::vector<QString> &sources);

    /// Why that entry must not be run; empty if it may be, and its output is taken from then on.
    [[nodiscard]] QString claim(const QString &source, const std::optional<QString> &output);

private:
    [[nodiscard]] bool isTaken(const QString &output, const QStringList &marks) const;

    QSet<QString> m_sources;
    QSet<QString> m_outputs;
    QSet<QString> m_outputsInAnyCase; ///< folders and names without the difference of capitals
};

/// Why an entry must not be run whose path holds RawBytes.
[[nodiscard]] QString notUtf8();

/// All that a run in the terminal does not do; to be asked for each entry, in the order of the list.
[[nodiscard]] Refusal refusalFor(const std::vector<QString> &sources, const SettingsStore &settings);

} // namespace brevant
