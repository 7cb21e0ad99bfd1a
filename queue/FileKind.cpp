// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileKind.h"

#include "files/PathString.h"
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
    for (const FileKind kind : kinds) {
        if (PathString::hasExtension(path, extensionOf(kind)))
            return kind;
    }
    return std::nullopt;
}

QStringView extensionOf(FileKind kind)
{
    switch (kind) {
    case FileKind::Css:
        return u"css";
    case FileKind::Js:
        return u"js";
    case FileKind::Html:
        return u"html";
    case FileKind::Phtml:
        return u"phtml";
    case FileKind::Php:
        return u"php";
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
