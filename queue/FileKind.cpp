// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileKind.h"

#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <algorithm>
#include <array>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr bool extra = true;

constexpr std::array kinds{
    FileKind{u"css", KindFamily::StyleSheet, "text/css"_L1, "CSS"_L1, {}},
    FileKind{u"js", KindFamily::Script, "text/javascript"_L1, "JavaScript"_L1, {}},
    FileKind{u"html", KindFamily::Markup, "text/html"_L1, "HTML"_L1, enableHTMLCheckerKeyString},
    FileKind{u"phtml", KindFamily::Markup, "application/x-httpd-php"_L1, "PHP"_L1, enablePHPCheckerKeyString},
    FileKind{u"php", KindFamily::Markup, "application/x-httpd-php"_L1, "PHP"_L1, enablePHPCheckerKeyString},
    FileKind{u"mjs", KindFamily::Script, "text/javascript"_L1, "JavaScript"_L1, {}, extra},
    FileKind{u"cjs", KindFamily::Script, "text/javascript"_L1, "JavaScript"_L1, {}, extra},
    FileKind{u"htm", KindFamily::Markup, "text/html"_L1, "HTML"_L1, {}, extra},
    FileKind{u"svg", KindFamily::Markup, "image/svg+xml"_L1, "SVG"_L1, {}, extra},
};

// Fixed on purpose: it does not follow the suffix of the outputs.
constexpr QLatin1StringView minifiedEnding(".min");

} // namespace

bool FileKind::isSwitchedOn(const SettingsStore &settings) const
{
    return !isExtra && (switchKey.isEmpty() || settings.boolForKey(switchKey));
}

std::span<const FileKind> allFileKinds()
{
    return kinds;
}

const FileKind *kindOf(QStringView path)
{
    const FileKind *const kind = anyKindOf(path);
    return kind && !kind->isExtra ? kind : nullptr;
}

const FileKind *anyKindOf(QStringView path)
{
    const QStringView extension = PathString::extension(path);
    const auto *const found = std::ranges::find_if(
        kinds, [&](const FileKind &kind) { return PathString::isSameExtension(extension, kind.extension); });
    return found == kinds.end() ? nullptr : found;
}

static bool isMinified(QStringView path)
{
    return PathString::stem(path).endsWith(minifiedEnding);
}

static bool isOn(const FileKind &kind, const SettingsStore &settings, const QStringList &also)
{
    return kind.isExtra ? also.contains(kind.extension) : kind.isSwitchedOn(settings);
}

bool isAccepted(QStringView path, const SettingsStore &settings, const QStringList &also)
{
    const FileKind *const kind = anyKindOf(path);
    return kind && isOn(*kind, settings, also) &&
           (!isMinified(path) || !settings.boolForKey(filterCheckerKeyString));
}

AcceptedKinds::AcceptedKinds(const SettingsStore &settings, const QStringList &also)
    : m_skipsMinified(settings.boolForKey(filterCheckerKeyString))
{
    for (const FileKind &kind : kinds) {
        if (isOn(kind, settings, also))
            m_kinds.push_back(&kind);
    }
}

bool AcceptedKinds::accept(QStringView path) const
{
    const FileKind *const kind = anyKindOf(path);
    return kind && std::ranges::find(m_kinds, kind) != m_kinds.end() &&
           !(m_skipsMinified && isMinified(path));
}

} // namespace brevant
