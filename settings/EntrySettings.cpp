// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/EntrySettings.h"

#include <algorithm>
#include <mutex>

namespace brevant {

struct EntrySettings::Rules {
    struct Rule {
        Matches matches;
        QJsonObject values;
    };

    std::vector<Rule> list;
    std::mutex mutex;                                                     ///< guards all below
    std::map<std::vector<bool>, std::unique_ptr<SettingsStore>> variants; ///< by the rules that match
};

EntrySettings::EntrySettings(const SettingsStore &settings) : m_common(settings) {}

void EntrySettings::addRule(Matches matches, const QJsonObject &values)
{
    if (m_rules == nullptr)
        m_rules = std::make_shared<Rules>();
    m_rules->list.push_back({std::move(matches), values});
}

const SettingsStore &EntrySettings::of(const QString &entry) const
{
    if (m_rules == nullptr)
        return m_common;
    std::vector<bool> matching;
    QJsonObject values;
    for (const Rules::Rule &rule : m_rules->list) {
        matching.push_back(rule.matches(entry));
        for (auto it = rule.values.begin(); matching.back() && it != rule.values.end(); ++it)
            values.insert(it.key(), it.value());
    }
    if (values.isEmpty())
        return m_common;
    const std::lock_guard lock(m_rules->mutex);
    std::unique_ptr<SettingsStore> &variant = m_rules->variants[matching];
    if (variant == nullptr)
        variant = m_common.variant(values);
    return *variant;
}

std::vector<const SettingsStore *> EntrySettings::of(const std::vector<QString> &entries) const
{
    std::vector<const SettingsStore *> stores;
    for (const QString &entry : entries) {
        if (const SettingsStore *const store = &of(entry); std::ranges::find(stores, store) == stores.end())
            stores.push_back(store);
    }
    return stores;
}

std::vector<const SettingsStore *> EntrySettings::known() const
{
    std::vector<const SettingsStore *> stores{&m_common};
    if (m_rules == nullptr)
        return stores;
    const std::lock_guard lock(m_rules->mutex);
    for (const auto &[matching, variant] : m_rules->variants)
        stores.push_back(variant.get());
    return stores;
}

} // namespace brevant
