// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace brevant {

class SettingsStore;
struct EntryResult;
struct FileKind;

/// An output and the copies that are made of it, which have one more extension each: by default those that
/// any settings can ask for.
[[nodiscard]] QStringList withCopies(const QString &output,
                                     const QStringList &extensions = {
                                         QStringLiteral("gz"), QStringLiteral("br"), QStringLiteral("map")});

/// Which copies are made, by the settings of one moment.
class WantedCopies final {
public:
    explicit WantedCopies(const SettingsStore &settings);

    /// The extensions of those of an output of that kind.
    [[nodiscard]] QStringList extensionsFor(const FileKind &kind) const;

private:
    QStringList m_packed;
    bool m_hasMaps;
};

/// The output of an entry and the copies that were made of it; nothing if it was not minified.
[[nodiscard]] QStringList writtenFiles(const EntryResult &result, const SettingsStore &settings);

} // namespace brevant
