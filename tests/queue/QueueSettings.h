// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant::test {

/// A store of its own for one test: the defaults, and values that are never written anywhere.
class QueueSettings final {
public:
    QueueSettings(std::initializer_list<std::pair<QLatin1StringView, QJsonValue>> values = {})
        : m_store(u"/nonexistent/settings.json"_s)
    {
        m_store.registerDefaults(registeredDefaults());
        for (const auto &[key, value] : values)
            m_store.setOverride(value, key);
    }

    void set(QLatin1StringView key, const QJsonValue &value) { m_store.setOverride(value, key); }
    [[nodiscard]] const SettingsStore &store() const { return m_store; }

private:
    SettingsStore m_store;
};

} // namespace brevant::test
