// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are those of a project file.
#include "cli/project/JsonText.h"
#include "cli/project/Project.h"
#include "settings/SettingsKeys.h"
#include "tests/fuzz/Fuzzing.h"

#include <QRegularExpression>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QString top = u"/usr"_s;

void requirePlace(const QString &path)
{
    require(path == top || path.startsWith(top + u'/'), "a path lies in the folder of the file");
    require(!(path + u'/').contains("/../"_L1) && !path.contains(QChar(u'\0')), "a path leads nowhere else");
}

void requireSettings(const QJsonObject &settings)
{
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        const SettingKey *const setting = findSettingKey(it.key());
        require(setting != nullptr && it->isBool() == (setting->type == SettingType::Boolean),
                "a setting is there, and of its type");
        require(setting->key != esbuildPathKeyString && setting->key != keepOriginalsCheckerKeyString,
                "a project names no programs");
    }
    require(!settings.value(suffixKeyString).toString().contains(u'/'), "a suffix is no path");
    if (settings.contains(selectedFolderKeyString))
        requirePlace(settings.value(selectedFolderKeyString).toString());
}

void requireValues(const ProjectValues &values)
{
    for (const QString &path : values.paths.value_or(QStringList()))
        requirePlace(path);
    if (values.outDir)
        requirePlace(*values.outDir);
    requireSettings(values.settings);
    for (const ProjectValues::Override &rule : values.overrides) {
        requireSettings(rule.settings);
        require(!rule.files.globs.isEmpty(), "an override has patterns");
        require(!rule.settings.contains(sameFolderKeyString) &&
                    !rule.settings.contains(selectedFolderKeyString),
                "no override says where to");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size).toByteArray();
    const JsonText text(bytes);
    require(text.errorAt() >= 0 && text.errorAt() <= bytes.size(), "an error has a place");
    const Project project = readProject(top + "/brevant.json"_L1, bytes);
    static const QRegularExpression placed(u"^/usr/brevant\\.json:[1-9][0-9]*:[1-9][0-9]*: ."_s,
                                           QRegularExpression::DotMatchesEverythingOption);
    require(project.error.isEmpty() || placed.match(project.error).hasMatch(), "an error says where it is");
    require(text.error().isEmpty() || !project.error.isEmpty(), "what is no JSON is no project");
    if (!project.error.isEmpty())
        return 0;
    requireValues(project.values);
    for (const auto &[name, values] : project.profiles)
        requireValues(values);
    return 0;
}
