// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>

class QFileSystemWatcher;

namespace brevant {

class SettingsFile;

/// All choices of the user: one key/value store over a JSON file.
///
/// Nothing is cached by its readers: whoever needs a value asks at the moment it acts, from any thread.
/// A value is looked up among the overrides of this run, then the user's own values, then the registered
/// defaults. A value is a JSON boolean, number or string and stays what it is, so the two ways of reading
/// a boolean can differ: the flag test takes a number for a truth value, the strict tests do not.
class SettingsStore final : public QObject {
    Q_OBJECT

public:
    /// A store on the file `filePath`, which need not exist. Nothing is written until a value is set.
    explicit SettingsStore(const QString &filePath);

    /// Waits until every value set so far is on the disk.
    ~SettingsStore() override;

    /// `settings.json` in the application's folder under `$XDG_CONFIG_HOME` (`~/.config` if unset or
    /// relative).
    [[nodiscard]] static QString defaultFilePath();

    /// Values that answer for every key that the user has not set. They are never written.
    void registerDefaults(const QJsonObject &defaults);

    /// A value that answers for `key` in this process only and is never written.
    void setOverride(const QJsonValue &value, QLatin1StringView key);

    /// A store with the same values but these, which are never written. It must not outlive this store.
    [[nodiscard]] std::unique_ptr<SettingsStore> variant(const QJsonObject &values) const;
    [[nodiscard]] std::unique_ptr<SettingsStore> variant(const QJsonValue &value, QLatin1StringView key) const
    {
        return variant(QJsonObject{{key, value}});
    }

    /// The value stored under `key`; undefined if there is none, not even a default.
    [[nodiscard]] QJsonValue objectForKey(QLatin1StringView key) const;

    /// The text stored under `key`; a number reads as its text. A value of another form counts as not set:
    /// the default answers, or nothing where there is no default either.
    [[nodiscard]] std::optional<QString> stringForKey(QLatin1StringView key) const;

    /// The flag test: true for the boolean true, a number that is not zero, and the texts "true" and "yes"
    /// (case ignored) and numbers as text that are not zero.
    [[nodiscard]] bool boolForKey(QLatin1StringView key) const;

    /// The strict tests: whether the stored value is the boolean true, or the boolean false, itself.
    [[nodiscard]] bool isTrue(QLatin1StringView key) const { return objectForKey(key) == QJsonValue(true); }
    [[nodiscard]] bool isFalse(QLatin1StringView key) const { return objectForKey(key) == QJsonValue(false); }

    /// Sets a value. It holds for the next reader at once; a thread of the store's own writes it to the disk,
    /// so the caller never waits. Sends didChange() once.
    void setObject(const QJsonValue &value, QLatin1StringView key);
    void setBool(bool state, QLatin1StringView key) { setObject(state, key); }

    /// Waits until every value set so far has been written, or could not be.
    void synchronize();

    /// From now on, changes that others make to the file send didChange() even while nobody reads. Needs an
    /// event loop in the thread of this object; readers see such changes at once without it.
    void watchFile();

Q_SIGNALS:
    /// Some value has changed. Sent by the thread that set it, or, for a change from outside, in the thread
    /// of this object.
    void didChange();

private:
    explicit SettingsStore(std::shared_ptr<SettingsFile> file);
    void watchWhatIsThere();

    mutable std::mutex m_mutex; ///< guards the two tables below
    QJsonObject m_defaults;
    QJsonObject m_overrides;
    std::shared_ptr<SettingsFile> m_file; ///< shared with variants
    std::unique_ptr<QFileSystemWatcher> m_watcher;
};

/// Whether the modern compressors are to work, and not the classic ones.
[[nodiscard]] bool isModernChosen(const SettingsStore &settings);

} // namespace brevant
