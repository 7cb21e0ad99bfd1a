// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// bench-check SOURCE OUTPUT...   prints the seconds that checking these pairs of files takes.
#include "engine/check/ResultCheck.h"

#include <QElapsedTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    using namespace brevant;
    QElapsedTimer timer;
    timer.start();
    for (int i = 1; i + 1 < argc; i += 2) {
        const CheckedFile checked = checkFile(QString::fromLocal8Bit(argv[i]),
                                              QString::fromLocal8Bit(argv[i + 1]), TextEncoding::Utf8);
        if (!checked.obstacle.isEmpty())
            std::fprintf(stderr, "%s: %s\n", argv[i], qPrintable(checked.obstacle));
    }
    std::printf("%.6f\n", static_cast<double>(timer.nsecsElapsed()) / 1e9);
    return 0;
}
