// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/ProjectUse.h"

#include "cli/CommandLine.h"
#include "cli/PrintedRun.h"
#include "cli/project/ProjectFile.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/EntrySettings.h"
#include "settings/SettingsKeys.h"

#include <QDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// What decides where outputs go.
constexpr std::array namingKeys{suffixKeyString, suffixSwitcherKeyString, sameFolderKeyString,
                                selectedFolderKeyString};

bool isNamedBy(const QJsonObject &settings)
{
    return std::ranges::any_of(namingKeys, [&](QLatin1StringView key) { return settings.contains(key); });
}

bool isGiven(const CommandLine &line, QLatin1StringView key)
{
    return std::ranges::any_of(line.settings, [key](const auto &setting) { return setting.first == key; });
}

/// As it is spelt from that folder, if it leads through it.
QString spelledFrom(const QString &folder, const QString &path)
{
    const QString absolute = PathString::absolute(path);
    const QByteArray real = realPath(RawBytes::encoded(folder));
    for (QStringView at = absolute; at.size() > 1; at = PathString::folder(at)) {
        if (realPath(RawBytes::encoded(at.toString())) == real)
            return QDir::cleanPath(folder + absolute.sliced(at.size()));
        if (PathString::lastComponent(at) == u"..") // what stands before it is no folder above the path
            break;
    }
    return path;
}

template <typename Value>
void fill(Value &member, const std::optional<Value> &value)
{
    if (member == Value() && value)
        member = *value;
}

} // namespace

QString ProjectUse::load(const CommandLine &line)
{
    const QString path = line.noProject ? QString() : ProjectFile::find(QDir::currentPath());
    if (path.isEmpty())
        return line.profile.isEmpty() ? QString()
                                      : u"--profile %1 needs a project file, and there is no %2 in this "
                                        "folder or above it"_s.arg(line.profile, ProjectFile::name);
    const ProjectFile::Content content = ProjectFile::read(path);
    if (!content.error.isEmpty())
        return content.error;
    m_project = readProject(path, content.bytes);
    m_layers = {{u"project"_s, &m_project.values}};
    if (line.profile.isEmpty() || !m_project.error.isEmpty())
        return m_project.error;
    const auto profile = m_project.profiles.find(line.profile);
    if (profile != m_project.profiles.end()) {
        m_layers.push_back({u"project, profile "_s + line.profile, &profile->second});
        return {};
    }
    QStringList names;
    for (const auto &[name, values] : m_project.profiles)
        names.append(name);
    const QString there = names.isEmpty() ? u"no profiles"_s : u"these: "_s + names.join(u", ");
    return u"%1 has no profile \"%2\", but %3"_s.arg(path, line.profile, there);
}

CommandLine ProjectUse::completed(CommandLine line) const
{
    if (m_layers.empty())
        return line;
    line.projectFolder = m_project.folder;
    if (line.action == CommandLine::Action::MinifyText)
        return line;
    const QStringList roots = value(&ProjectValues::paths).value_or(QStringList());
    if (line.filesFrom.isEmpty())
        fill(line.paths, std::optional(roots));
    fill(line.gitignore, value(&ProjectValues::gitignore));
    fill(line.sort, value(&ProjectValues::sort));
    fill(line.also, value(&ProjectValues::also));
    line.projectExclude = value(&ProjectValues::exclude).value_or(ProjectValues::Patterns()).globs;
    if (line.include.isEmpty())
        line.projectInclude = value(&ProjectValues::include).value_or(ProjectValues::Patterns()).globs;
    fill(line.keepTimes, value(&ProjectValues::keepTimes));
    if (line.outDir.isEmpty() && !isGiven(line, sameFolderKeyString) &&
        !isGiven(line, selectedFolderKeyString)) {
        fill(line.outDir, value(&ProjectValues::outDir));
        line.treeRoots = line.outDir.isEmpty() ? QStringList() : roots;
    }
    if (!line.outDir.isEmpty())
        fill(line.copyRest, value(&ProjectValues::copyRest));
    return line;
}

void ProjectUse::spell(QStringList &paths) const
{
    const QString top = PathString::join(m_project.folder, {});
    for (QString &path : paths) {
        const QString absolute = PathString::absolute(path);
        if (!m_layers.empty() && (!absolute.startsWith(top) || absolute != QDir::cleanPath(absolute)))
            path = spelledFrom(m_project.folder, path);
    }
}

void ProjectUse::overrideSettings(SettingsStore &settings) const
{
    for (const Layer &layer : m_layers) {
        for (const SettingKey &setting : allSettingKeys) {
            if (layer.values->settings.contains(setting.key))
                settings.setOverride(layer.values->settings.value(setting.key), setting.key);
        }
    }
}

void ProjectUse::addRules(EntrySettings &settings, const CommandLine &line) const
{
    for (const Layer &layer : m_layers) {
        for (const ProjectValues::Override &rule : layer.values->overrides) {
            QJsonObject values = rule.settings;
            for (const auto &[key, value] : line.settings)
                values.remove(key);
            settings.addRule([this, &rule](const QString &entry) { return matches(rule, entry); }, values);
        }
    }
}

bool ProjectUse::matches(const ProjectValues::Override &rule, const QString &entry) const
{
    const QString path = QDir::cleanPath(entry);
    const QString top = PathString::join(m_project.folder, {});
    return path.startsWith(top) && rule.files.globs.covers(RawBytes::encoded(path.sliced(top.size())), false);
}

ProjectUse::OwnSettings ProjectUse::ownSettings(const QString &entry) const
{
    OwnSettings own;
    for (const Layer &layer : m_layers) {
        for (const ProjectValues::Override &rule : layer.values->overrides) {
            if (!matches(rule, entry))
                continue;
            for (auto it = rule.settings.begin(); it != rule.settings.end(); ++it) {
                own.values.insert(it.key(), it.value());
                own.sources.insert(it.key(), u"project, "_s + rule.name);
            }
        }
    }
    return own;
}

/// Whether it has something to say of where outputs go.
bool ProjectUse::namesOutputs() const
{
    return std::ranges::any_of(m_layers, [](const Layer &layer) {
        return layer.values->outDir || isNamedBy(layer.values->settings) ||
               std::ranges::any_of(layer.values->overrides,
                                   [](const auto &rule) { return isNamedBy(rule.settings); });
    });
}

QString ProjectUse::inPlaceError(const FileQueue &queue, const EntrySettings &settings,
                                 const CommandLine &line) const
{
    const bool isTreeGiven =
        !line.outDir.isEmpty() && line.outDir != value(&ProjectValues::outDir).value_or(QString());
    const bool isMeant = isTreeGiven || std::ranges::any_of(namingKeys, [&line](QLatin1StringView key) {
                             return isGiven(line, key);
                         });
    if (!namesOutputs() || isMeant)
        return {};
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        // Only by a suffix that is off can it be.
        if (!output || PathString::lastComponent(*output) != PathString::lastComponent(entry))
            continue;
        if (FileMarks::areOfSameFile(entry, *output))
            return u"%1 would have %2 written over; if that is meant, add --no-suffix"_s.arg(m_project.file,
                                                                                             entry);
    }
    return {};
}

} // namespace brevant
