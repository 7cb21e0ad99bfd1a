// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// bench-queue adding TREE      adds TREE to an empty queue, prints the seconds and the entries
// bench-queue memory COUNT     fills a queue with COUNT paths of 80 characters, prints the bytes over an
// empty one
// bench-queue combine TARGET SOURCE...
//                              joins the sources, prints the seconds and the most memory used, in KiB
// bench-queue in-place with|without SOURCE...
//                              minifies each source onto itself, with or without safety copies, prints the
//                              seconds
#include "engine/CombineFiles.h"
#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"
#include "engine/Tools.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace brevant;

namespace {

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

int benchAdding(const char *tree)
{
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(QStringLiteral("settings.json")));
    settings.registerDefaults(registeredDefaults());
    FileQueue queue;
    const auto start = std::chrono::steady_clock::now();
    addTopLevelPath(QFile::decodeName(tree), queue, settings);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%.6f %d\n", seconds.count(), queue.count());
    return 0;
}

int benchMemory(const char *count)
{
    FileQueue queue;
    malloc_trim(0);
    const qint64 before = residentBytes();
    const int entries = QByteArray(count).toInt();
    for (int i = 0; i < entries; ++i)
        queue.append(QStringLiteral("/srv/sites/%1.css").arg(i, 65, 10, QLatin1Char('0')));
    std::printf("%lld %d\n", static_cast<long long>(residentBytes() - before), queue.count());
    return queue.entryAt(0)->size() == 80 ? 0 : 1;
}

int benchCombine(int count, char *paths[])
{
    std::vector<QString> sources;
    for (int i = 1; i < count; ++i)
        sources.push_back(QFile::decodeName(paths[i]));
    const auto start = std::chrono::steady_clock::now();
    const CombineResult result = combine(sources, QFile::decodeName(paths[0]), TextEncoding::Utf8);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.4f %ld\n", seconds.count(), usage.ru_maxrss);
    return result.outcome == CombineResult::Outcome::Written ? 0 : 1;
}

/// Ends the program where a file was not minified.
class Failures final : public RunObserver {
public:
    void entryEnded(const EntryResult &result) override
    {
        if (result.outcome != EntryResult::Outcome::Done)
            std::exit(1);
    }
};

int benchInPlace(bool withCopies, int count, char *paths[])
{
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(QStringLiteral("settings.json")));
    settings.registerDefaults(registeredDefaults());
    settings.setOverride(false, suffixSwitcherKeyString);
    FileQueue queue;
    for (int i = 0; i < count; ++i)
        queue.append(QFile::decodeName(paths[i]));
    Tools tools = Tools::inResources(findResourceFolder());
    if (!withCopies)
        tools.originals.clear();
    Failures failures;
    const std::atomic<Stop> stop = Stop::No;
    const auto start = std::chrono::steady_clock::now();
    const RunEnd end = MinifyJob(queue, settings, tools, failures, stop).run();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%.4f\n", seconds.count());
    return end == RunEnd::Completed ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && std::strcmp(argv[1], "adding") == 0)
        return benchAdding(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "memory") == 0)
        return benchMemory(argv[2]);
    if (argc > 3 && std::strcmp(argv[1], "combine") == 0)
        return benchCombine(argc - 2, argv + 2);
    if (argc > 3 && std::strcmp(argv[1], "in-place") == 0)
        return benchInPlace(std::strcmp(argv[2], "with") == 0, argc - 3, argv + 3);
    std::fprintf(stderr, "usage: bench-queue adding TREE | memory COUNT | combine TARGET SOURCE... | "
                         "in-place with|without SOURCE...\n");
    return 2;
}
