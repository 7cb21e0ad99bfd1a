// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/GzipCopy.h"

#include "engine/ArgumentList.h"
#include "engine/ChildProcess.h"
#include "files/PathString.h"

namespace brevant {

using namespace Qt::StringLiterals;

std::array<GzipStep, 4> gzipSteps(const std::optional<QString> &output)
{
    const QString gzip = u"/usr/bin/gzip"_s;
    const QString force = u"-f"_s;
    const QString suffix = u"brevantgziptemp"_s;
    const auto outputWith = [&](QStringView extension) {
        return output ? std::optional(PathString::withExtension(*output, extension)) : std::nullopt;
    };
    return {{
        {gzip, ArgumentList{force, output}.values()},
        {u"/bin/cp"_s, ArgumentList{force, outputWith(u"gz"), outputWith(suffix)}.values()},
        {gzip, ArgumentList{force, u"-d"_s, u"-S"_s, suffix, outputWith(suffix)}.values()},
        {u"/bin/mv"_s, ArgumentList{force, outputWith({}), output}.values()},
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
