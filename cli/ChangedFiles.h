// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BuildCache.h"
#include "cli/PrintedRun.h"
#include "settings/EntrySettings.h"

namespace brevant {

struct CommandLine;
struct FileKind;

/// The folder of the cache: that of --out-dir, of the project file or of the outputs, where there is one, or
/// the working folder.
[[nodiscard]] QString cacheFolder(const CommandLine &line, const EntrySettings &settings);

/// What a run need not do, as it was done before, and what it does. One call at a time.
class ChangedFiles final {
public:
    ChangedFiles(const CommandLine &line, const EntrySettings &settings, const Tools &tools);

    /// Takes the files out of a queue whose outputs are up to date. Why that cannot be told, in words; empty
    /// if it can.
    [[nodiscard]] QString leaveOutUnchanged(FileQueue &queue);

    /// Those files, with their outputs.
    [[nodiscard]] const EntriesWithOutputs &unchanged() const { return m_unchanged; }
    void forgetUnchanged() { m_unchanged = {}; }

    /// Such an output with its copies, as far as nobody has changed them.
    [[nodiscard]] QStringList ownFiles(const QString &source, const QString &output) const
    {
        return m_cache.ownFiles(source, output);
    }

    /// How many they are, in words, as a line; empty for none.
    [[nodiscard]] QString inWords() const;

    /// To be called before work on an entry begins.
    void entryTaken(const QString &entry, const std::optional<QString> &output);

    /// To be called for an entry that needs no more work.
    void entryDone(const QString &entry, const std::optional<QString> &output);

    /// Writes down what has been done. Says on standard error why that is not possible, or why what had been
    /// written down is not used.
    void save();

private:
    /// Nothing for an output of which nothing can be known.
    [[nodiscard]] std::optional<MadeOutput> wantedFor(const QString &entry,
                                                      const std::optional<QString> &output);
    struct Recipe {
        QStringList copies;
        QByteArray text;
    };
    [[nodiscard]] Recipe recipeFor(const FileKind &kind, const SettingsStore &settings);

    const EntrySettings m_settings;
    const Tools &m_tools;
    const bool m_keepsTimes; ///< of sources, for their outputs
    BuildCache m_cache;
    QHash<std::pair<const SettingsStore *, const FileKind *>, Recipe> m_recipes;
    EntriesWithOutputs m_unchanged;
};

} // namespace brevant
