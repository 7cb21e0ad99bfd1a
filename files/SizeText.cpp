// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/SizeText.h"

#include <QCoreApplication>
#include <QLocale>

namespace brevant {

QString sizeText(qint64 bytes)
{
    constexpr qint64 kilo = 1000;
    if (bytes == 1)
        return QCoreApplication::translate("Size", "1 byte");
    if (bytes < kilo)
        return QCoreApplication::translate("Size", "%1 bytes").arg(bytes);
    // Whole numbers have no fraction: "1 MB".
    const qint64 unit = bytes < kilo * kilo ? kilo : kilo * kilo;
    const int digits = bytes % unit == 0 ? 0 : 1;
    return QLocale().formattedDataSize(bytes, digits, QLocale::DataSizeSIFormat);
}

} // namespace brevant
