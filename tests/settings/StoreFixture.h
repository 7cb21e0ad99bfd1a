// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

namespace brevant::test {

/// A settings file in a folder of its own, not there at first, and stores on it.
class StoreFixture {
protected:
    /// To be called before each test: a new folder.
    [[nodiscard]] bool setUp()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"settings.json"_s);
        return m_folder->isValid();
    }

    [[nodiscard]] std::unique_ptr<SettingsStore> makeStore() const
    {
        auto store = std::make_unique<SettingsStore>(m_path);
        store->registerDefaults(registeredDefaults());
        return store;
    }

    [[nodiscard]] QJsonObject fileContent() const
    {
        return QJsonDocument::fromJson(readFile(m_path)).object();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

} // namespace brevant::test
