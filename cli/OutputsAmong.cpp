// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputsAmong.h"

#include "files/PathString.h"
#include "queue/OutputPath.h"
#include "settings/EntrySettings.h"
#include "settings/SettingsKeys.h"

#include <QMultiHash>

#include <algorithm>
#include <utility>

namespace brevant {

namespace {

/// The suffix of outputs; empty for none.
struct Suffix {
    explicit Suffix(const SettingsStore &settings) : isBeside(settings.isTrue(sameFolderKeyString))
    {
        if (settings.isTrue(suffixSwitcherKeyString))
            text = settings.stringForKey(suffixKeyString).value_or(QString());
    }

    const bool isBeside; ///< their sources
    QString text;
};

struct File {
    qsizetype index;
    QStringView stem; ///< of its name
};

std::vector<std::vector<File>> byFolder(const QStringList &files)
{
    std::vector<std::vector<File>> groups;
    QHash<QStringView, std::size_t> known;
    QStringView folder;
    std::size_t group = 0;
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QStringView name = PathString::lastComponent(files[i]);
        if (const QStringView next = QStringView(files[i]).chopped(name.size()); next != folder) {
            folder = next;
            group = known.value(folder, groups.size());
            known.insert(folder, group);
            groups.resize(std::max(groups.size(), group + 1));
        }
        groups[group].push_back({i, PathString::stem(name)});
    }
    return groups;
}

} // namespace

std::vector<bool> outputsAmong(const QStringList &files, const EntrySettings &settings, bool areBeside)
{
    std::vector<bool> areOutputs(static_cast<std::size_t>(files.size()));
    BySettings<Suffix> suffixes(settings);
    const auto suffixOf = [&](const QString &file) {
        const Suffix &suffix = suffixes.of(file);
        return areBeside || suffix.isBeside ? QStringView(suffix.text) : QStringView();
    };
    QList<QStringView> used;
    for (const QString &file : files) {
        if (const QStringView suffix = suffixOf(file); !suffix.isEmpty() && !used.contains(suffix))
            used.append(suffix);
    }
    OutputPath outputPath(settings, OutputPath::Reading::Once);
    for (const std::vector<File> &group : byFolder(files)) {
        QMultiHash<QStringView, qsizetype> named; // like outputs, by the stems of their sources
        for (const auto &[index, stem] : group) {
            for (const QStringView suffix : used) {
                if (stem.endsWith(suffix))
                    named.insert(stem.chopped(suffix.size()), index);
            }
        }
        if (named.isEmpty())
            continue;
        for (const auto &[index, stem] : group) {
            const auto [first, last] = std::as_const(named).equal_range(stem);
            if (first == last || suffixOf(files[index]).isEmpty())
                continue;
            const QString path = outputPath.next(files[index]).value_or(QString()); // in that folder
            const QStringView output = PathString::lastComponent(path);
            for (auto at = first; at != last; ++at) {
                if (PathString::lastComponent(files[*at]) == output)
                    areOutputs[static_cast<std::size_t>(*at)] = true;
            }
        }
    }
    return areOutputs;
}

} // namespace brevant
