// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/ShowSettings.h"

#include "cli/CommandLine.h"
#include "cli/InputChecks.h"
#include "cli/project/ProjectUse.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "settings/EntrySettings.h"
#include "settings/SettingsKeys.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Where the settings come from.
class Sources final {
public:
    Sources(const CommandLine &given, const ProjectUse &project, const QString &entry)
        : m_given(given), m_project(project), m_userSettings(settingsFile(given)),
          m_own(entry.isEmpty() ? ProjectUse::OwnSettings() : project.ownSettings(entry))
    {
    }

    [[nodiscard]] QString of(QLatin1StringView key) const
    {
        const bool isFolder = key == sameFolderKeyString || key == selectedFolderKeyString;
        if (isFolder && !m_given.outDir.isEmpty())
            return u"--out-dir"_s;
        const auto isGiven = [key](const auto &setting) { return setting.first == key; };
        if (std::ranges::any_of(m_given.settings, isGiven))
            return u"command line"_s;
        if (const auto own = m_own.sources.constFind(key); own != m_own.sources.constEnd())
            return *own;
        QString source;
        for (const ProjectUse::Layer &layer : m_project.layers()) {
            if (layer.values->settings.contains(key))
                source = layer.name;
        }
        if (isFolder && m_project.value(&ProjectValues::outDir))
            return u"outDir"_s;
        if (!source.isEmpty())
            return source;
        const QJsonValue value = m_userSettings.objectForKey(key);
        if (value.isUndefined() || value.isNull())
            return u"default"_s;
        return m_given.settingsFile.isEmpty() ? u"the user's file"_s : m_given.settingsFile;
    }

private:
    const CommandLine &m_given;
    const ProjectUse &m_project;
    const SettingsStore m_userSettings;
    const ProjectUse::OwnSettings m_own;
};

/// "KEY=VALUE  (SOURCE)"
QString row(const QString &key, const QString &value, const QString &source)
{
    return printable(u"%1=%2  (%3)"_s.arg(key, value, source)) + u'\n';
}

QString words(bool state)
{
    return state ? u"true"_s : u"false"_s;
}

QString words(const QString &text)
{
    return text;
}

QString words(const QStringList &texts)
{
    return texts.join(u", ");
}

QString words(const ProjectValues::Patterns &patterns)
{
    return patterns.texts.join(u", ");
}

/// A key of the project file; empty if nobody has set it. What is `given` on the command line holds.
template <typename Value>
QString projectRow(const ProjectUse &project, const QString &key, std::optional<Value> ProjectValues::*member,
                   const Value &given = {})
{
    if (words(given) != words(Value()))
        return row(key, words(given), u"command line"_s);
    QString text;
    for (const ProjectUse::Layer &layer : project.layers()) {
        if (const std::optional<Value> &value = layer.values->*member)
            text = row(key, words(*value), layer.name);
    }
    return text;
}

} // namespace

QString settingsText(const CommandLine &given, const ProjectUse &project, const EntrySettings &settings)
{
    const QString user = settingsFile(given);
    QString text =
        u"Project file: %1\n"_s.arg(project.file().isEmpty() ? u"none"_s : printable(project.file())) +
        u"Settings file: %1\n\n"_s.arg(user.isEmpty() ? u"none"_s : printable(user));
    text += projectRow(project, u"paths"_s, &ProjectValues::paths, given.paths) +
            projectRow(project, u"exclude"_s, &ProjectValues::exclude) +
            projectRow(project, u"include"_s, &ProjectValues::include) +
            projectRow(project, u"gitignore"_s, &ProjectValues::gitignore, given.gitignore) +
            projectRow(project, u"sort"_s, &ProjectValues::sort, given.sort) +
            projectRow(project, u"also"_s, &ProjectValues::also, given.also) +
            projectRow(project, u"outDir"_s, &ProjectValues::outDir, given.outDir) +
            projectRow(project, u"copyRest"_s, &ProjectValues::copyRest, given.copyRest) +
            projectRow(project, u"keepTimes"_s, &ProjectValues::keepTimes, given.keepTimes);
    const bool isOneFile = given.paths.size() == 1;
    QStringList paths = given.paths;
    project.spell(paths);
    const QString entry = isOneFile ? PathString::absolute(paths[0]) : QString();
    const Sources sources(given, project, entry);
    const SettingsStore &store = isOneFile ? settings.of(entry) : settings.common();
    for (const SettingKey &setting : allSettingKeys)
        text +=
            row(setting.key, store.objectForKey(setting.key).toVariant().toString(), sources.of(setting.key));
    return text;
}

} // namespace brevant
