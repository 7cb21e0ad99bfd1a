// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SettingValues.h"

#include "queue/FileKind.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"

using namespace Qt::StringLiterals;

namespace brevant {

QString settingValueError(const SettingKey &setting, const QString &value)
{
    if (setting.type == SettingType::Boolean && value != u"true" && value != u"false")
        return u"%1 takes true or false, not \"%2\""_s.arg(setting.key, value);
    if (setting.key == compressorsKeyString && value != u"classic" && value != u"modern")
        return u"%1 takes classic or modern, not \"%2\""_s.arg(setting.key, value);
    if (setting.key != selectedEncodingKeyString || isEncodingName(value))
        return {};
    QStringList names;
    for (const Encoding &encoding : allEncodings)
        names.append(encoding.name);
    return u"there is no encoding \"%1\"; there are %2"_s.arg(value, names.join(u", "_s));
}

QStringList extraKinds()
{
    QStringList extras;
    for (const FileKind &kind : allFileKinds()) {
        if (kind.isExtra)
            extras.append(kind.extension.toString());
    }
    return extras;
}

} // namespace brevant
