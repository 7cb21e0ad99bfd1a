// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/project/Project.h"

namespace brevant {

class EntrySettings;
class FileQueue;
class SettingsStore;
struct CommandLine;

/// The project file of a command line, with its profile, and what it is used for. Whatever the command line
/// says itself holds instead.
class ProjectUse final {
public:
    /// Finds and reads the file, if it is wanted. Returns why it cannot be used, in words; empty if it can,
    /// or if there is none.
    [[nodiscard]] QString load(const CommandLine &line);

    /// The command line, with what it does not say itself filled in.
    [[nodiscard]] CommandLine completed(CommandLine line) const;

    /// Spells the paths that lead into its folder by a link or by ".." as it spells its own, so that all it
    /// says holds for them.
    void spell(QStringList &paths) const;

    /// Applies its settings, to be called before those of the command line are.
    void overrideSettings(SettingsStore &settings) const;

    /// Its settings for some entries.
    void addRules(EntrySettings &settings, const CommandLine &line) const;

    /// Why no run is possible: no more than the command line may ask for outputs in the place of their
    /// sources. Empty if one is.
    [[nodiscard]] QString inPlaceError(const FileQueue &queue, const EntrySettings &settings,
                                       const CommandLine &line) const;

    /// The file in use; empty for none.
    [[nodiscard]] const QString &file() const { return m_project.file; }

    /// What the file itself says, and then the profile, with what to call them.
    struct Layer {
        QString name; ///< "project", "project, profile release"
        const ProjectValues *values;
    };
    [[nodiscard]] const std::vector<Layer> &layers() const { return m_layers; }

    /// What the last layer says that says something; otherwise nothing.
    template <typename Value>
    [[nodiscard]] std::optional<Value> value(std::optional<Value> ProjectValues::*member) const
    {
        std::optional<Value> found;
        for (const Layer &layer : m_layers) {
            if (layer.values->*member)
                found = layer.values->*member;
        }
        return found;
    }

    /// The settings of that entry which hold for it alone, with where each is from.
    struct OwnSettings {
        QJsonObject values;
        QMap<QString, QString> sources;
    };
    [[nodiscard]] OwnSettings ownSettings(const QString &entry) const;

private:
    [[nodiscard]] bool matches(const ProjectValues::Override &rule, const QString &entry) const;
    [[nodiscard]] bool namesOutputs() const;

    Project m_project;
    std::vector<Layer> m_layers;
};

} // namespace brevant
