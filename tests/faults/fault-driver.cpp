// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Does one piece of the programs' work by their own code. It prints "ready", and begins once a line comes in
// on standard input: between the two a tracer can get hold of it.
//
//   fault-driver settings FILE VALUE...     sets the suffix to one value after the other
//   fault-driver combine TARGET SOURCE...   joins the sources as the window does
//   fault-driver keep ESBUILD SOURCE...     minifies the sources in place and keeps their originals, as the
//                                           window does; by the classic compressors if ESBUILD is "-"
//   fault-driver restore ESBUILD SOURCE...  puts the originals back; the run comes before "ready"
//   fault-driver forever settings|combine … the same again and again
//
// Exit status 0 if nothing failed as far as the code says, 1 with a line on standard error otherwise.
#include "engine/CombineFiles.h"
#include "engine/MinifyJob.h"
#include "engine/originals/KeptOriginals.h"
#include "engine/originals/RestoreSource.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>

#include <cstdio>
#include <functional>
#include <memory>

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

class Results final : public RunObserver {
public:
    std::vector<EntryResult> all;
    void entryEnded(const EntryResult &result) override { all.push_back(result); }
};

int sayFailure(const QString &source, const QString &why)
{
    if (!why.isEmpty())
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(source), qUtf8Printable(why));
    return why.isEmpty() ? 0 : 1;
}

/// A run in place, as the window has them.
std::vector<EntryResult> minifyInPlace(KeptOriginals &originals, const Tools &tools, const QString &esbuild,
                                       const QStringList &sources)
{
    SettingsStore settings(u"/nonexistent/settings.json"_s);
    settings.registerDefaults(registeredDefaults());
    settings.setOverride(false, suffixSwitcherKeyString);
    settings.setOverride(true, keepOriginalsCheckerKeyString);
    if (esbuild != u"-") {
        settings.setOverride(u"modern"_s, compressorsKeyString);
        settings.setOverride(esbuild, esbuildPathKeyString);
    }
    FileQueue queue;
    for (const QString &source : sources)
        queue.append(source);
    Results results;
    const std::atomic<Stop> stop = Stop::No;
    originals.dropForRun();
    KeptOriginals::Use use(originals);
    MinifyJob job(queue, settings, tools, results, stop);
    job.keepOriginals(use);
    job.run();
    return results.all;
}

int sayFailures(const std::vector<EntryResult> &results, qsizetype sources)
{
    int status = static_cast<qsizetype>(results.size()) == sources ? 0 : 1; // a runtime could not be started
    for (const EntryResult &result : results) {
        for (const QString &note : result.notes)
            status |= sayFailure(result.source, note);
        status |= sayFailure(result.source, result.reason()) | sayFailure(result.source, result.notKept);
    }
    return status;
}

int restoreAll(const std::vector<EntryResult> &results)
{
    int status = 0;
    for (const EntryResult &result : results) {
        const RestoredSource restored = restoreSource(result.source, result.original);
        const bool isDone = restored.outcome == RestoredSource::Outcome::Restored;
        status |= sayFailure(result.source, isDone ? QString() : u"not put back: "_s + restored.error);
        status |= sayFailure(result.source, restored.lacks);
    }
    return status;
}

std::function<int()> workOf(const QStringList &arguments)
{
    const QString what = arguments.first();
    const QString first = arguments.at(1);
    const QStringList rest = arguments.sliced(2);
    if (what == u"settings")
        return [first, rest] { return setValues(first, rest); };
    if (what == u"combine")
        return [first, rest] { return combineOnce(first, rest); };
    const auto tools = std::make_shared<Tools>(
        Tools::inResources(QCoreApplication::applicationDirPath() + u"/../resources"_s));
    const auto originals = std::make_shared<KeptOriginals>(*tools);
    const auto minify = [=] { return minifyInPlace(*originals, *tools, first, rest); };
    if (what == u"keep")
        return [minify, rest] { return sayFailures(minify(), rest.size()); };
    return [results = minify()] { return restoreAll(results); };
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
    const std::function<int()> work = workOf(arguments);
    std::puts("ready");
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) < 0) {
    }
    int status = work();
    while (forever)
        status = work();
    return status;
}
