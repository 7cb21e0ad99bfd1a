// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/GzipCopy.h"

#include "engine/ArgumentList.h"
#include "engine/ChildProcess.h"
#include "files/PathString.h"

namespace brevant {

namespace {

const QString gzipProgram = QStringLiteral("/usr/bin/gzip");
const QString cpProgram = QStringLiteral("/bin/cp");
const QString mvProgram = QStringLiteral("/bin/mv");
const QString force = QStringLiteral("-f");
const QString temporarySuffix = QStringLiteral("brevantgziptemp");

} // namespace

std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output)
{
    std::optional<QString> compressed;
    std::optional<QString> temporary;
    std::optional<QString> decompressed;
    if (output) {
        compressed = PathString::withExtension(*output, u"gz");
        temporary = PathString::withExtension(*output, temporarySuffix);
        decompressed = *output + u'.';
    }
    const auto list = [](std::initializer_list<std::optional<QString>> arguments) {
        return ArgumentList(arguments).values();
    };
    return {{
        {gzipProgram, list({force, output})},
        {cpProgram, list({force, compressed, temporary})},
        {gzipProgram, list({force, QStringLiteral("-d"), QStringLiteral("-S"), temporarySuffix, temporary})},
        {mvProgram, list({force, decompressed, output})},
    }};
}

void makeGzipCopy(const std::optional<QString> &output, const std::atomic<Stop> &stop)
{
    for (const GzipStep &step : gzipSteps(output)) {
        if (stop == Stop::AtOnce)
            return;
        ChildProcess process(step.program, QString(), step.arguments);
        process.launch();
        static_cast<void>(process.waitUntilExit(stop));
    }
}

} // namespace brevant
