// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/InputChecks.h"

#include "cli/CommandLine.h"
#include "cli/OutputFiles.h"
#include "cli/PrintedRun.h"
#include "cli/ReportOutput.h"
#include "cli/StandardInput.h"
#include "cli/TerminalText.h"
#include "cli/project/ProjectFile.h"
#include "files/DurableFile.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Why that settings file cannot be used; empty if it can. Keys in it that are no settings are named.
QString settingsFileError(const QString &fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return u"the settings file %1 cannot be read"_s.arg(fileName);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        return u"the settings file %1 holds no JSON object (%2)"_s.arg(
            fileName, document.isNull() ? error.errorString() : u"it holds something else"_s);
    QStringList unknown = document.object().keys();
    unknown.removeIf([](const QString &key) { return findSettingKey(key) != nullptr; });
    if (!unknown.isEmpty())
        TerminalText::printError(
            u"the settings file %1 holds what is no setting: %2"_s.arg(fileName, unknown.join(u", ")));
    return {};
}

} // namespace

QString settingsFile(const CommandLine &line)
{
    if (!line.settingsFile.isEmpty())
        return PathString::absolute(line.settingsFile);
    return line.noUserSettings ? QString() : SettingsStore::defaultFilePath();
}

void overrideSettings(SettingsStore &settings, const CommandLine &line)
{
    for (const auto &[key, value] : line.settings) {
        const bool isFolder = key == selectedFolderKeyString && !value.toString().isEmpty();
        settings.setOverride(isFolder ? PathString::absolute(value.toString()) : value, key);
    }
    if (line.action == CommandLine::Action::MinifyText)
        overrideForText(settings);
    if (line.outDir.isEmpty())
        return;
    settings.setOverride(false, sameFolderKeyString);
    settings.setOverride(line.outDir, selectedFolderKeyString);
}

QString reportError(const CommandLine &line, const QString &reason)
{
    return u"the report %1 cannot be written: %2"_s.arg(
        isReportPrinted(line) ? u"on standard output"_s : line.reportFile, reason);
}

QString inputError(const CommandLine &line)
{
    if (QDir::currentPath().isEmpty())
        return u"the working folder is gone"_s;
    if (!line.settingsFile.isEmpty()) {
        if (QString error = settingsFileError(line.settingsFile); !error.isEmpty())
            return error;
    }
    for (const QString &path : line.paths) {
        if (!isThere(RawBytes::encoded(path)))
            return u"%1 does not exist"_s.arg(path);
    }
    if (const auto status = statusOf(QFile::encodeName(line.outDir)); status && !S_ISDIR(status->st_mode))
        return u"--out-dir: %1 is no folder"_s.arg(line.outDir);
    if (!line.reportFile.isEmpty() && !isReportPrinted(line)) {
        if (DurableFile trial(line.reportFile); !trial.write({}))
            return reportError(line, trial.errorText());
    }
    return {};
}

QString settingsError(const CommandLine &line, const SettingsStore &settings)
{
    const FileKind *const kind = anyKindOf(u"a."_s + line.textKind);
    if (kind != nullptr && kind->isExtra && !isModernChosen(settings))
        return u"--stdin %1 needs the modern compressors: add --compressors modern"_s.arg(line.textKind);
    if (!line.also.isEmpty() && !isModernChosen(settings))
        return u"--also needs the modern compressors: add --set %1=modern"_s.arg(compressorsKeyString);
    if (line.copyRest && line.outDir.isEmpty())
        return u"--copy-rest needs --out-dir, where the copies go"_s;
    if (line.sourceMaps && !isModernChosen(settings))
        return u"--source-maps needs the modern compressors: add --compressors modern"_s;
    if (settings.isTrue(sameFolderKeyString) ||
        !settings.stringForKey(selectedFolderKeyString).value_or(QString()).isEmpty())
        return {};
    return u"%1 is not true, and %2 names no folder for the outputs"_s.arg(sameFolderKeyString,
                                                                           selectedFolderKeyString);
}

QString reportPlaceError(const CommandLine &line, const FileQueue &queue, const EntrySettings &settings,
                         const std::vector<FileCopy> &copies)
{
    if (line.reportFile.isEmpty() || isReportPrinted(line))
        return {};
    const QStringList marks = FileMarks::all(PathString::absolute(line.reportFile));
    QStringList files;
    if (const QString file = settingsFile(line); !file.isEmpty())
        files.append(file);
    if (!line.projectFolder.isEmpty())
        files.append(PathString::join(line.projectFolder, ProjectFile::name));
    if (!line.filesFrom.isEmpty() && line.filesFrom != u"-")
        files.append(PathString::absolute(line.filesFrom));
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        files.append(entry);
        if (output)
            files += withCopies(*output);
    }
    for (const FileCopy &copy : copies)
        files << copy.found << copy.target;
    FileMarks::Reader marksOf;
    for (const QString &file : files) {
        for (const QString &mark : marksOf.all(file)) {
            if (marks.contains(mark))
                return u"the report %1 would be written over %2"_s.arg(line.reportFile, file);
        }
    }
    return {};
}

} // namespace brevant
