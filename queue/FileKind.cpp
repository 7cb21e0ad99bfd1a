// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileKind.h"

#include "queue/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <array>

namespace brevant {

namespace {

constexpr std::array kinds{FileKind::Css, FileKind::Js, FileKind::Html, FileKind::Phtml, FileKind::Php};

// Fixed on purpose: it does not follow the suffix of the outputs.
constexpr QLatin1StringView minifiedEnding(".min");

bool isSwitchedOn(FileKind kind, const SettingsStore &settings)
{
    switch (kind) {
    case FileKind::Css:
    case FileKind::Js:
        return true;
    case FileKind::Html:
        return settings.boolForKey(enableHTMLCheckerKeyString);
    case FileKind::Phtml:
    case FileKind::Php:
        return settings.boolForKey(enablePHPCheckerKeyString);
    }
    return false;
}

} // namespace

std::optional<FileKind> kindOf(QStringView path)
{
    const QStringView extension = PathString::extension(path);
    for (const FileKind kind : kinds) {
        const QLatin1StringView own = extensionOf(kind);
        if (extension.size() == own.size() && extension.compare(own, Qt::CaseInsensitive) == 0)
            return kind;
    }
    return std::nullopt;
}

QLatin1StringView extensionOf(FileKind kind)
{
    switch (kind) {
    case FileKind::Css:
        return QLatin1StringView("css");
    case FileKind::Js:
        return QLatin1StringView("js");
    case FileKind::Html:
        return QLatin1StringView("html");
    case FileKind::Phtml:
        return QLatin1StringView("phtml");
    case FileKind::Php:
        return QLatin1StringView("php");
    }
    return {};
}

bool isAccepted(QStringView path, const SettingsStore &settings)
{
    const std::optional<FileKind> kind = kindOf(path);
    if (!kind || !isSwitchedOn(*kind, settings))
        return false;
    return !PathString::stem(path).endsWith(minifiedEnding) || !settings.boolForKey(filterCheckerKeyString);
}

} // namespace brevant
