// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsStore.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace brevant {

/// The settings of each entry of a run: one store for all, or variants of it for some. Copies share the
/// variants. All members but addRule() are safe from any thread.
class EntrySettings final {
public:
    using Matches = std::function<bool(const QString &entry)>;

    /// One store for all entries, which must outlive this and its copies. Whoever has no more than that hands
    /// it over as it is.
    EntrySettings(const SettingsStore &settings); // NOLINT(google-explicit-constructor)

    /// Values for the entries that match; later rules win. To be called before anybody asks.
    void addRule(Matches matches, const QJsonObject &values);

    /// Has the outputs of entries go into these folders, whatever the settings say; where that is empty, they
    /// hold. To be called before anybody asks.
    void setOutputFolders(std::function<QString(const QString &entry)> folderOf)
    {
        m_outputFolderOf = std::move(folderOf);
    }
    [[nodiscard]] QString outputFolderOf(const QString &entry) const
    {
        return m_outputFolderOf ? m_outputFolderOf(entry) : QString();
    }

    /// The store for all entries without a rule of their own.
    [[nodiscard]] const SettingsStore &common() const { return m_common; }

    /// The settings of an entry. Two entries with the same ones get the same store.
    [[nodiscard]] const SettingsStore &of(const QString &entry) const;

    /// The stores of all entries asked for so far, and the common one.
    [[nodiscard]] std::vector<const SettingsStore *> known() const;

    /// The stores of these entries, each once.
    [[nodiscard]] std::vector<const SettingsStore *> of(const std::vector<QString> &entries) const;

private:
    struct Rules;

    const SettingsStore &m_common;
    std::function<QString(const QString &)> m_outputFolderOf; ///< may be empty
    std::shared_ptr<Rules> m_rules;                           ///< null without any
};

/// What is made of the settings of entries, one `Value` for each of the stores: of those known at the moment,
/// and of others when they are first asked for. Not safe from several threads.
template <typename Value>
class BySettings final {
public:
    explicit BySettings(const EntrySettings &settings) : m_settings(settings)
    {
        for (const SettingsStore *const store : settings.known())
            m_values.try_emplace(store, *store);
    }

    [[nodiscard]] Value &of(const QString &entry)
    {
        const SettingsStore &store = m_settings.of(entry);
        return m_values.try_emplace(&store, store).first->second; // which stays where it is
    }

private:
    EntrySettings m_settings;
    std::map<const SettingsStore *, Value> m_values;
};

} // namespace brevant
