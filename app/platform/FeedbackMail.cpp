// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FeedbackMail.h"

#include <QSysInfo>

namespace brevant {

QByteArray percentEscaped(const QString &text)
{
    return text.toUtf8().toPercentEncoding("!*'();/?:@&=+$,");
}

QUrl feedbackMailUrl(const QString &address, const QString &version, const QString &systemVersion)
{
    const QString subject = QStringLiteral("Brevant %1 feedback, OS X %2").arg(version, systemVersion);
    const QByteArray query = "SUBJECT=" + percentEscaped(subject);
    // Strict, and so without a second thought about what is escaped and what is not.
    return QUrl::fromEncoded("mailto:" + percentEscaped(address) + '?' + query + '&', QUrl::StrictMode);
}

QString operatingSystemVersionString()
{
    return QStringLiteral("%1, %2 %3")
        .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion());
}

} // namespace brevant
