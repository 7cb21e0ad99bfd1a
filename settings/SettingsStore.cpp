// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsStore.h"

#include "files/PathString.h"
#include "settings/SettingsFile.h"
#include "settings/SettingsKeys.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLocale>

#include <cmath>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

std::optional<QString> textOf(const QJsonValue &value)
{
    if (!value.isDouble())
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    // Integers first: a double would not keep every digit of a large one.
    const double number = value.toDouble();
    const qint64 integer = value.toInteger(); // 0 if it is none
    return integer != 0 || number == 0 ? QString::number(integer)
                                       : QString::number(number, 'g', QLocale::FloatingPointShortest);
}

bool truthOf(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber)
        return number != 0 && !std::isnan(number);
    return text.compare("true"_L1, Qt::CaseInsensitive) == 0 ||
           text.compare("yes"_L1, Qt::CaseInsensitive) == 0;
}

} // namespace

SettingsStore::SettingsStore(const QString &filePath)
    // Sent later, so that no reader is interrupted by a notice.
    : m_file(std::make_shared<SettingsFile>(filePath, [this] {
          QMetaObject::invokeMethod(this, &SettingsStore::didChange, Qt::QueuedConnection);
      }))
{
}

SettingsStore::SettingsStore(std::shared_ptr<SettingsFile> file) : m_file(std::move(file)) {}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::defaultFilePath()
{
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    return PathString::join(config.startsWith(u'/') ? config
                                                    : PathString::join(PathString::home(), u".config"),
                            u"brevant/settings.json");
}

void SettingsStore::registerDefaults(const QJsonObject &defaults)
{
    const std::lock_guard lock(m_mutex);
    m_defaults = defaults;
}

void SettingsStore::setOverride(const QJsonValue &value, QLatin1StringView key)
{
    const std::lock_guard lock(m_mutex);
    m_overrides.insert(key, value);
}

std::unique_ptr<SettingsStore> SettingsStore::variant(const QJsonObject &values) const
{
    std::unique_ptr<SettingsStore> other(new SettingsStore(m_file)); // its constructor is not for others
    const std::lock_guard lock(m_mutex);
    other->m_defaults = m_defaults;
    other->m_overrides = m_overrides;
    for (auto it = values.begin(); it != values.end(); ++it)
        other->m_overrides.insert(it.key(), it.value());
    return other;
}

QJsonValue SettingsStore::objectForKey(QLatin1StringView key) const
{
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_overrides.constFind(key);
        if (found != m_overrides.constEnd())
            return *found;
    }
    if (QJsonValue set = m_file->value(key); !set.isUndefined() && !set.isNull())
        return set;
    const std::lock_guard lock(m_mutex);
    return m_defaults.value(key);
}

std::optional<QString> SettingsStore::stringForKey(QLatin1StringView key) const
{
    if (std::optional<QString> text = textOf(objectForKey(key)))
        return text;
    const std::lock_guard lock(m_mutex);
    return textOf(m_defaults.value(key));
}

bool SettingsStore::boolForKey(QLatin1StringView key) const
{
    const QJsonValue value = objectForKey(key);
    return value.toBool() || value.toDouble() != 0 || truthOf(value.toString());
}

bool isModernChosen(const SettingsStore &settings)
{
    return settings.objectForKey(compressorsKeyString) == QJsonValue("modern"_L1);
}

void SettingsStore::setObject(const QJsonValue &value, QLatin1StringView key)
{
    m_file->setValue(key, value);
    Q_EMIT didChange();
}

void SettingsStore::synchronize()
{
    m_file->synchronize();
}

void SettingsStore::watchFile()
{
    if (m_watcher != nullptr)
        return;
    m_watcher = std::make_unique<QFileSystemWatcher>();
    const auto watchAgain = [this] { watchWhatIsThere(); };
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, watchAgain);
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, this, watchAgain);
    connect(this, &SettingsStore::didChange, m_watcher.get(), watchAgain);
    watchWhatIsThere();
}

/// A file that is replaced, or made, is a new one to watch; its folder reports it.
void SettingsStore::watchWhatIsThere()
{
    const QFileInfo file(m_file->path());
    // Until the folder exists, the nearest one above it that does is watched.
    QDir folder = file.absoluteDir();
    while (!folder.exists() && !folder.isRoot())
        folder.setPath(QFileInfo(folder.path()).path());
    m_watcher->addPath(folder.path());
    if (file.exists())
        m_watcher->addPaths({file.absoluteFilePath(), QFileInfo(file.canonicalFilePath()).absolutePath()});
    m_file->refresh();
}

} // namespace brevant
