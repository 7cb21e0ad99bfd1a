// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileKind.h"

#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

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
    for (const FileKind &kind : kinds) {
        if (PathString::hasExtension(path, kind.extension))
            return &kind;
    }
    return nullptr;
}

bool isAccepted(QStringView path, const SettingsStore &settings, const QStringList &also)
{
    const FileKind *const kind = anyKindOf(path);
    if (!kind || !(kind->isExtra ? also.contains(kind->extension) : kind->isSwitchedOn(settings)))
        return false;
    return !PathString::stem(path).endsWith(minifiedEnding) || !settings.boolForKey(filterCheckerKeyString);
}

} // namespace brevant
