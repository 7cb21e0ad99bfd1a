// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/InterruptedRuns.h"

#include "engine/OriginalRecord.h"
#include "engine/OriginalSlot.h"
#include "engine/OriginalsFolder.h"
#include "engine/PutBack.h"
#include "settings/Descriptor.h"
#include "settings/DurableFile.h"

#include <QFile>

#include <algorithm>
#include <memory>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

namespace {

std::vector<QByteArray> slotsIn(const QByteArray &folder)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::opendir(folder.constData()), &::closedir);
    std::vector<QByteArray> paths;
    if (!entries)
        return paths;
    while (const dirent *entry = ::readdir(entries.get())) {
        if (const QByteArray name(entry->d_name); OriginalSlot::isName(name))
            paths.push_back(folder + '/' + name);
    }
    std::ranges::sort(paths);
    return paths;
}

/// What the file is called that is kept of a slot.
QByteArray keptPath(const QByteArray &slotPath, const QByteArray &name)
{
    const qsizetype slash = slotPath.lastIndexOf('/') + 1;
    const QByteArray id = slotPath.sliced(slash, slotPath.indexOf('.', slash) - slash);
    return OriginalsFolder::keptPath(slotPath.first(slash - 1), id, name);
}

QString shown(const QByteArray &path)
{
    return QFile::decodeName(path);
}

/// Writes the content of a slot to a plain file and drops the slot; the sentence about it.
QString keepCopy(OriginalSlot &copy, const OriginalRecord &original)
{
    const QByteArray name = original.path.sliced(original.path.lastIndexOf('/') + 1);
    const QByteArray path = keptPath(copy.path(), name);
    const Descriptor file(uninterrupted([&] {
        return ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
    }));
    const bool written = file.isOpen() && copy.copyTo(file.number(), original.size) &&
                         uninterrupted([&] { return ::fsync(file.number()); }) == 0 &&
                         flushFolder(path.first(path.lastIndexOf('/')));
    if (written) {
        copy.remove();
        return QStringLiteral("A run over %1 was cut short; what it was before is kept as %2.")
            .arg(shown(original.path), shown(path));
    }
    const QString error = qt_error_string(errno);
    ::unlink(path.constData());
    return QStringLiteral(
               "A run over %1 was cut short; what it was before is in %2 and cannot be taken out: %3.")
        .arg(shown(original.path), shown(copy.path()), error);
}

/// Renames a slot whose content cannot be trusted, so that it is said once.
QString keepUnreadable(const OriginalSlot &copy, const QString &what)
{
    const QByteArray path = keptPath(copy.path(), "damaged");
    const bool renamed = ::rename(copy.path().constData(), path.constData()) == 0;
    return QStringLiteral("%1 is damaged and of no use; it is kept as %2.")
        .arg(what, shown(renamed ? path : copy.path()));
}

QString putBackSource(OriginalSlot &copy, const OriginalRecord &original)
{
    QString error = putBack(original, copy);
    if (error.isEmpty())
        error = putBackLink(original, false);
    if (!error.isEmpty())
        return QStringLiteral(
                   "%1 was lost when a run was cut short, and cannot be put back now: %2. The next start "
                   "tries again, with the copy %3.")
            .arg(shown(original.path), error, shown(copy.path()));
    copy.remove();
    return QStringLiteral("%1 was lost when a run was cut short, and has been put back.")
        .arg(shown(original.path));
}

QString settleSource(OriginalSlot &copy, const OriginalRecord &original)
{
    switch (stateOfSource(original, copy)) {
    case SourceState::Same:
        copy.remove();
        return {};
    case SourceState::Missing:
    case SourceState::Empty:
        return putBackSource(copy, original);
    case SourceState::Beginning:
        if (copy.isPuttingBack())
            return putBackSource(copy, original);
        break;
    case SourceState::Changed:
    case SourceState::Replaced:
        break;
    case SourceState::Unknown:
        return QStringLiteral(
                   "A run over %1 was cut short, and it cannot be read now; what it was before is in %2.")
            .arg(shown(original.path), shown(copy.path()));
    }
    return keepCopy(copy, original);
}

/// The copy was not written to the end: the compressor had not started, or the disk has a fault.
QString settleDamaged(OriginalSlot &copy, const OriginalRecord &original)
{
    if (stateOfSource(original, copy) == SourceState::Same) {
        copy.remove();
        return {};
    }
    return keepUnreadable(copy, QStringLiteral("A safety copy of %1").arg(shown(original.path)));
}

QString settle(OriginalSlot &copy)
{
    const auto [content, original] = copy.read();
    switch (content) {
    case OriginalSlot::Content::Nothing:
        copy.remove();
        break;
    case OriginalSlot::Content::Source:
        return settleSource(copy, *original);
    case OriginalSlot::Content::Damaged:
        return settleDamaged(copy, *original);
    case OriginalSlot::Content::Unknown:
        return keepUnreadable(copy, QStringLiteral("A safety copy"));
    case OriginalSlot::Content::Unreadable:
        return QStringLiteral("The safety copy %1 cannot be read now; the next start tries again.")
            .arg(shown(copy.path()));
    }
    return {};
}

} // namespace

QStringList putBackAfterInterruption(const QString &originals)
{
    QStringList sentences;
    for (const QByteArray &path : slotsIn(QFile::encodeName(originals))) {
        std::optional<OriginalSlot> copy = OriginalSlot::openLeft(path);
        if (!copy)
            continue;
        if (const QString sentence = settle(*copy); !sentence.isEmpty())
            sentences.append(sentence);
    }
    return sentences;
}

} // namespace brevant
