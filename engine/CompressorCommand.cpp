// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CompressorCommand.h"

#include "engine/Tools.h"
#include "files/PathString.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// The switches for scripts alone, in the order of their arguments.
constexpr std::pair<QLatin1StringView, QLatin1StringView> scriptSwitches[] = {
    {nomungeSwitcherKeyString, "--nomunge"_L1},
    {preserveSemiSwitcherKeyString, "--preserve-semi"_L1},
    {disableOptimizationsSwitcherKeyString, "--disable-optimizations"_L1},
};

bool isForYui(KindFamily family)
{
    switch (family) {
    case KindFamily::StyleSheet:
    case KindFamily::Script:
        return true;
    case KindFamily::Markup:
        return false;
    }
    Q_UNREACHABLE();
}

} // namespace

QStringList upToAbsent(const QList<std::optional<QString>> &arguments)
{
    QStringList values;
    for (const std::optional<QString> &argument : arguments) {
        if (!argument)
            break;
        values.append(*argument);
    }
    return values;
}

CompressorCommand::CompressorCommand(const SettingsStore &settings)
    : m_settings(settings), m_lineBreakColumn(settings.stringForKey(lineBreakKeyString)),
      m_encoding(settings.stringForKey(selectedEncodingKeyString))
{
}

QStringList CompressorCommand::arguments(const QString &entry, const std::optional<QString> &output) const
{
    const FileKind *const kind = kindOf(entry);
    if (!kind)
        return {};
    return isForYui(kind->family) ? yuiArguments(kind->family == KindFamily::Script, entry, output)
                                  : htmlArguments(entry, output);
}

/// The encoding stands at the very end.
QStringList CompressorCommand::yuiArguments(bool isScript, const QString &entry,
                                            const std::optional<QString> &output) const
{
    bool isDecided = true;
    const auto isOn = [&](QLatin1StringView key) {
        // Read once, as the user may turn the switch at any moment.
        const QJsonValue value = m_settings.objectForKey(key);
        isDecided = isDecided && value.isBool();
        return value.toBool();
    };
    QList<std::optional<QString>> arguments{u"-jar"_s, Tools::yuiCompressor};
    if (isOn(lineBreakSwitcherKeyString))
        arguments << u"--line-break"_s << m_lineBreakColumn;
    for (const auto &[key, argument] : scriptSwitches) {
        if (isScript && isOn(key))
            arguments << QString(argument);
    }
    arguments << entry << u"-o"_s << output << u"--charset"_s << m_encoding;
    return isDecided ? upToAbsent(arguments) : QStringList();
}

/// The encoding stands first, and the output ends the list.
QStringList CompressorCommand::htmlArguments(const QString &entry, const std::optional<QString> &output) const
{
    const bool keepsSpace = m_settings.boolForKey(keepXMLSpaceCheckerKeyString);
    return upToAbsent({u"-jar"_s, Tools::htmlCompressor, u"--charset"_s, m_encoding, u"--type"_s, u"html"_s,
                       u"--compress-js"_s, u"--compress-css"_s,
                       keepsSpace ? u"--preserve-intertag-spaces"_s : u"--remove-intertag-spaces"_s, entry,
                       u"-o"_s, output});
}

bool isTakenForPattern(const QString &entry, const QString &output)
{
    const FileKind *const kind = kindOf(entry);
    return kind && isForYui(kind->family) && output.contains(u':');
}

bool isDangerousPattern(const QString &entry, const QString &output)
{
    if (!isTakenForPattern(entry, output))
        return false;
    const auto holdsAny = [](QStringView text, QStringView signs) {
        return std::ranges::any_of(text, [signs](QChar sign) { return signs.contains(sign); });
    };
    const qsizetype colon = output.indexOf(u':');
    // "." is a pattern too, but in nearly every path; the entry is kept safe in that case.
    return holdsAny(QStringView(output).first(colon), u"\\^$|?*+()[]{}") ||
           holdsAny(QStringView(output).sliced(colon), u"$\\");
}

QString temporaryFolderForOutputs()
{
    const QString path = QDir::tempPath(); // empty for a TMPDIR that is not there
    const bool isPlain = path.startsWith(u'/') && std::ranges::all_of(path, [](QChar sign) {
                             return sign < QChar(u'\x7f') && sign != u':';
                         });
    return PathString::join(isPlain ? path : u"/tmp"_s, u"brevant-XXXXXX");
}

std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output)
{
    const QString gzip = u"/usr/bin/gzip"_s;
    const QString force = u"-f"_s;
    const QString suffix = u"brevantgziptemp"_s;
    const auto outputWith = [&](QStringView extension) {
        return output ? std::optional(PathString::withExtension(*output, extension)) : std::nullopt;
    };
    return {{
        {gzip, upToAbsent({force, output})},
        {u"/bin/cp"_s, upToAbsent({force, outputWith(u"gz"), outputWith(suffix)})},
        {gzip, upToAbsent({force, u"-d"_s, u"-S"_s, suffix, outputWith(suffix)})},
        {u"/bin/mv"_s, upToAbsent({force, outputWith({}), output})},
    }};
}

} // namespace brevant
