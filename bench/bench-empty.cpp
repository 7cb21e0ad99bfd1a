// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// An empty Qt window: the floor that the start of the program is measured against.
#include "bench/FirstPaint.h"

#include <QApplication>
#include <QWidget>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    FirstPaint firstPaint;
    QWidget window;
    window.resize(520, 560);
    window.installEventFilter(&firstPaint);
    window.show();
    return QApplication::exec();
}
