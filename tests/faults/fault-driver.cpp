// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Does one piece of the programs' work by their own code. It prints "ready", and begins once a line comes in
// on standard input: between the two a tracer can get hold of it.
//
//   fault-driver settings FILE VALUE...     sets the suffix to one value after the other
//   fault-driver combine TARGET SOURCE...   joins the sources as the window does
//   fault-driver forever settings|combine … the same again and again
//
// Exit status 0 if nothing failed as far as the code says, 1 with a line on standard error otherwise.
#include "engine/CombineFiles.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>

#include <cstdio>

#include <sys/prctl.h>
#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

int setValues(const QString &file, const QStringList &values)
{
    SettingsStore store(file);
    for (const QString &value : values) {
        store.setObject(value, suffixKeyString);
        store.synchronize();
    }
    return 0;
}

int combineOnce(const QString &target, const QStringList &sources)
{
    const CombineResult result = combine({sources.begin(), sources.end()}, target, TextEncoding::Utf8);
    if (result.outcome == CombineResult::Outcome::Written)
        return 0;
    std::fprintf(stderr, "%s\n", qUtf8Printable(result.errorText));
    return 1;
}

int work(const QStringList &arguments)
{
    const QStringList rest = arguments.sliced(2);
    return arguments.first() == "settings"_L1 ? setValues(arguments.at(1), rest)
                                              : combineOnce(arguments.at(1), rest);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    ::prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY);
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    const bool forever = arguments.value(0) == "forever"_L1;
    if (forever)
        arguments.removeFirst();
    if (arguments.size() < 3)
        return 2;
    std::puts("ready");
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) < 0) {
    }
    int status = work(arguments);
    while (forever)
        status = work(arguments);
    return status;
}
