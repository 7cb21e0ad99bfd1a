// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChangedFiles.h"

#include "cli/CommandLine.h"
#include "cli/OutputFiles.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCryptographicHash>
#include <QDir>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// What the classic compressors are told, and which files they are. One may load the other.
QStringList classicRecipe(const FileKind &kind, const CompressorCommand &command, const Tools &tools,
                          BuildCache &cache)
{
    const QString anyFile = u"/a."_s + kind.extension.toString();
    QStringList parts = command.arguments(anyFile, u"/"_s);
    for (const QLatin1StringView archive : {Tools::yuiCompressor, Tools::htmlCompressor})
        parts.append(QString::fromLatin1(cache.hashOf(PathString::join(tools.folder, QString(archive)))));
    return parts;
}

QStringList modernRecipe(const FileKind &kind, const ModernOptions &options, const Tools &tools,
                         BuildCache &cache)
{
    const Filter filter = modernFilter(kind, options, tools);
    QStringList parts = filter.arguments;
    parts.append(nameOf(options.encoding));
    for (const QString &program : {filter.program, tools.minify()})
        parts.append(QString::fromLatin1(cache.hashOf(program)));
    return parts;
}

} // namespace

QString cacheFolder(const CommandLine &line, const EntrySettings &settings)
{
    if (!line.outDir.isEmpty())
        return line.outDir;
    if (!line.projectFolder.isEmpty())
        return line.projectFolder;
    const SettingsStore &common = settings.common();
    const QString folder = common.stringForKey(selectedFolderKeyString).value_or(QString());
    const bool isUsed = !common.isTrue(sameFolderKeyString) && folder.startsWith(u'/');
    return isUsed ? folder : QDir::currentPath();
}

ChangedFiles::ChangedFiles(const CommandLine &line, const EntrySettings &settings, const Tools &tools)
    : m_settings(settings), m_tools(tools), m_keepsTimes(line.keepTimes), m_cache(cacheFolder(line, settings))
{
    if (!line.quiet && !m_cache.error().isEmpty())
        TerminalText::printError(m_cache.error());
}

QString ChangedFiles::leaveOutUnchanged(FileQueue &queue)
{
    std::vector<int> indexes;
    int index = 0;
    m_unchanged.reserve(m_unchanged.size() + static_cast<std::size_t>(queue.count()));
    for (auto &[entry, output] : entriesWithOutputs(queue, m_settings)) {
        const std::optional<MadeOutput> wanted = wantedFor(entry, output);
        if (wanted && m_cache.isUpToDate(*wanted)) {
            m_unchanged.emplace_back(std::move(entry), std::move(output));
            indexes.push_back(index);
        } else if (output && FileMarks::areOfSameFile(entry, *output)) {
            return u"--changed cannot tell what is done where outputs replace their sources, as that of %1 "
                   u"would: "
                   "add --suffix .min or --out-dir DIR"_s.arg(entry);
        }
        ++index;
    }
    queue.removeAt(indexes);
    return {};
}

QString ChangedFiles::inWords() const
{
    const auto count = static_cast<qint64>(m_unchanged.size());
    return count == 0 ? QString() : TerminalText::countedFiles(count) + u" unchanged.\n"_s;
}

void ChangedFiles::entryTaken(const QString &entry, const std::optional<QString> &output)
{
    m_recipes.clear(); // the settings and the compressors may have changed
    if (const std::optional<MadeOutput> wanted = wantedFor(entry, output))
        m_cache.begin(*wanted);
}

void ChangedFiles::entryDone(const QString &entry, const std::optional<QString> &output)
{
    m_recipes.clear();
    if (const std::optional<MadeOutput> wanted = wantedFor(entry, output))
        m_cache.made(*wanted);
}

void ChangedFiles::save()
{
    if (const QString error = m_cache.save(); !error.isEmpty())
        TerminalText::printError(error);
}

std::optional<MadeOutput> ChangedFiles::wantedFor(const QString &entry, const std::optional<QString> &output)
{
    const FileKind *const kind = anyKindOf(entry);
    // Where a path that does not begin at the root leads to is a matter of the compressor.
    if (kind == nullptr || !output || !output->startsWith(u'/'))
        return std::nullopt;
    const SettingsStore &settings = m_settings.of(entry);
    const auto known = m_recipes.constFind({&settings, kind});
    const Recipe &recipe = known != m_recipes.constEnd()
                               ? *known
                               : *m_recipes.insert({&settings, kind}, recipeFor(*kind, settings));
    return MadeOutput{entry, *output, recipe.copies, recipe.text};
}

ChangedFiles::Recipe ChangedFiles::recipeFor(const FileKind &kind, const SettingsStore &settings)
{
    Recipe recipe{WantedCopies(settings).extensionsFor(kind), {}};
    const CompressorCommand command(settings);
    const bool isModern = isModernChosen(settings);
    const ModernOptions options = isModern ? command.modernOptions(kind) : ModernOptions();
    const QStringList parts = QStringList{QStringLiteral(BREVANT_VERSION), recipe.copies.join(u' '),
                                          m_keepsTimes ? u"times"_s : QString()} +
                              (isModern ? modernRecipe(kind, options, m_tools, m_cache)
                                        : classicRecipe(kind, command, m_tools, m_cache));
    const QByteArray hash = QCryptographicHash::hash(parts.join(u'\0').toUtf8(), QCryptographicHash::Sha256);
    constexpr qsizetype length = 12; // bytes, so that no two recipes are ever taken for each other
    recipe.text = hash.first(length).toBase64(QByteArray::Base64UrlEncoding);
    return recipe;
}

} // namespace brevant
