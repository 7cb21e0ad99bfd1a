// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/DropHint.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QStringList>

namespace brevant {

QString dropHint(const SettingsStore &settings)
{
    QStringList kinds{QStringLiteral("CSS"), QStringLiteral("JavaScript")};
    if (settings.boolForKey(enableHTMLCheckerKeyString))
        kinds += QStringLiteral("HTML");
    if (settings.boolForKey(enablePHPCheckerKeyString))
        kinds += QStringLiteral("PHP");
    const QString last = kinds.takeLast();
    return QCoreApplication::translate("DropHint", "Drop %1 or %2 files")
        .arg(kinds.join(QStringLiteral(", ")), last);
}

} // namespace brevant
