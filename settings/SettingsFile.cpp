// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsFile.h"

#include "files/Descriptor.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/RawBytes.h"

#include <QFile>
#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <system_error>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>

namespace brevant {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
// Change times advance with the kernel's timer, every 10 ms at the slowest (CONFIG_HZ=100).
constexpr std::int64_t stampResolution = 20'000'000;

std::int64_t nanoseconds(const timespec &time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

void report(const QString &line)
{
    std::fprintf(stderr, "brevant: %s\n", qUtf8Printable(printable(line)));
}

/// Makes the programs of ours that write into one folder take turns. Where locks are not to be had, it does
/// nothing.
class FolderLock final {
public:
    explicit FolderLock(const QByteArray &folder) : m_folder(openFile(folder, O_RDONLY | O_DIRECTORY))
    {
        if (m_folder.isOpen())
            uninterrupted([this] { return ::flock(m_folder.number(), LOCK_EX); });
    }

private:
    const Descriptor m_folder;
};

} // namespace

SettingsFile::SettingsFile(const QString &path, std::function<void()> changed,
                           std::chrono::milliseconds saveTime)
    : m_path(path), m_encodedPath(QFile::encodeName(path)), m_changed(std::move(changed)),
      m_saveTime(saveTime)
{
    const std::lock_guard lock(m_mutex);
    static_cast<void>(refreshLocked()); // the first reading is no change
}

SettingsFile::~SettingsFile()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
        m_hurried = true;
    }
    m_wake.notify_all();
    if (m_writer.joinable())
        m_writer.join();
}

SettingsFile::Stamp SettingsFile::stampOf(const QByteArray &path)
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_ctim)};
}

SettingsFile::Reading SettingsFile::read(const QByteArray &path)
{
    Reading reading;
    // Taken first: should the file appear, or become readable, right after the failure, its stamp must
    // differ.
    reading.stamp = stampOf(path);
    const Descriptor file = openFile(path, O_RDONLY);
    if (!file.isOpen()) {
        reading.content = errno == ENOENT ? Content::Missing : Content::Unreadable;
        return reading;
    }
    struct stat status {};
    ::fstat(file.number(), &status);
    reading.stamp = {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_ctim)};
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const std::int64_t age = nanoseconds(now) - reading.stamp.changedAt;
    reading.fresh = age >= 0 && age < stampResolution;

    const auto bytes = S_ISREG(status.st_mode) ? FileBytes::readAll(file.number()) : std::nullopt;
    if (!bytes) {
        reading.content = Content::Unreadable;
        return reading;
    }
    reading.bytes = *bytes;
    const QJsonDocument document = QJsonDocument::fromJson(reading.bytes);
    reading.content = document.isObject() ? Content::Values : Content::Bad;
    reading.values = document.object();
    return reading;
}

QJsonObject SettingsFile::merged(QJsonObject values) const
{
    for (auto it = m_pending.begin(); it != m_pending.end(); ++it)
        values.insert(it.key(), it.value());
    return values;
}

bool SettingsFile::refreshLocked()
{
    if (!m_reading.fresh && stampOf(m_encodedPath) == m_reading.stamp)
        return false;
    Reading reading = read(m_encodedPath);
    if (reading.content == Content::Bad) {
        noteBadFile(reading.bytes);
        if (!m_bad->judged)
            reading.values = m_reading.values;
    } else {
        m_bad.reset();
    }
    const bool differs = merged(reading.values) != merged(m_reading.values);
    if (reading.content == Content::Unreadable && m_reading.content != Content::Unreadable)
        report(
            QStringLiteral("the settings in %1 cannot be read; the defaults are used, and changes hold until "
                           "the program ends")
                .arg(m_path));
    m_reading = std::move(reading);
    return differs;
}

void SettingsFile::noteBadFile(const QByteArray &bytes)
{
    if (m_bad && m_bad->bytes == bytes)
        return;
    m_bad = BadContent{.bytes = bytes, .due = std::chrono::steady_clock::now() + m_saveTime};
    wakeWriter();
}

/// Waits until bad content has stayed the same for a while, or is none any more.
void SettingsFile::judgeBadFile(std::unique_lock<std::mutex> &lock)
{
    while (m_bad && !m_bad->judged) {
        const QByteArray bytes = m_bad->bytes;
        m_wake.wait_until(lock, m_bad->due, [this] { return m_hurried; });
        bool differs = refreshLocked();
        if (m_bad && m_bad->bytes == bytes) {
            m_bad->judged = true;
            differs = merged({}) != merged(m_reading.values);
            m_reading.values = {};
        }
        if (differs) {
            lock.unlock();
            m_changed();
            lock.lock();
        }
    }
}

/// Keeps the bad content found last beside the file, and reports it once. False if it could not be kept.
bool SettingsFile::keepBadFile()
{
    std::unique_lock lock(m_mutex);
    if (!m_bad || m_bad->kept)
        return true;
    const QByteArray bytes = m_bad->bytes;
    const bool reported = std::exchange(m_bad->reported, true);
    lock.unlock();
    const QString bad = badPath();
    // There is nothing to keep of an empty file.
    const bool kept = !bytes.isEmpty() && DurableFile::replace(bad, bytes).isEmpty();
    if (!reported) {
        report(kept
                   ? QStringLiteral("%1 holds no settings; the defaults are used, and the file is kept as %2")
                         .arg(m_path, bad)
                   : QStringLiteral("%1 holds no settings; the defaults are used").arg(m_path));
    }
    lock.lock();
    if (m_bad && m_bad->bytes == bytes)
        m_bad->kept = kept || bytes.isEmpty();
    return kept || bytes.isEmpty();
}

QJsonValue SettingsFile::value(QLatin1StringView key)
{
    QJsonValue found(QJsonValue::Undefined);
    bool differs = false;
    {
        const std::lock_guard lock(m_mutex);
        differs = refreshLocked();
        const auto pending = m_pending.constFind(key);
        found = pending != m_pending.constEnd() ? *pending : m_reading.values.value(key);
    }
    if (differs)
        m_changed();
    return found;
}

void SettingsFile::refresh()
{
    bool differs = false;
    {
        const std::lock_guard lock(m_mutex);
        differs = refreshLocked();
    }
    if (differs)
        m_changed();
}

void SettingsFile::setValue(QLatin1StringView key, const QJsonValue &value)
{
    {
        const std::lock_guard lock(m_mutex);
        m_pending.insert(key, value);
        wakeWriter();
    }
}

void SettingsFile::wakeWriter()
{
    ++m_setCount;
    try {
        if (!m_writer.joinable())
            m_writer = std::thread([this] { writeBehind(); });
    } catch (const std::system_error &error) {
        // The next value set tries again; nobody may wait for this one.
        m_writtenCount = m_setCount;
        reportWriteFailure(QString::fromLocal8Bit(error.what()));
    }
    m_wake.notify_all();
}

void SettingsFile::synchronize()
{
    std::unique_lock lock(m_mutex);
    m_hurried = true;
    m_wake.notify_all();
    const std::uint64_t count = m_setCount; // others may go on to set values for ever
    m_written.wait(lock, [this, count] { return m_writtenCount >= count; });
}

void SettingsFile::writeBehind()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_stop || m_writtenCount != m_setCount; });
        if (m_writtenCount == m_setCount)
            return;
        judgeBadFile(lock);
        const QJsonObject changes = m_pending;
        const std::uint64_t count = m_setCount;
        lock.unlock();
        static_cast<void>(keepBadFile());
        // Nothing is left to write if the same value was set twice, and the first write took it.
        const QString error = changes.isEmpty() ? QString() : writeOnce(changes);
        lock.lock();
        const bool differs = settle(changes, error);
        m_writtenCount = count;
        m_written.notify_all();
        if (differs) {
            lock.unlock();
            m_changed();
            lock.lock();
        }
    }
}

void SettingsFile::reportWriteFailure(const QString &error)
{
    if (!std::exchange(m_writeFailureReported, true))
        report(QStringLiteral("%1 cannot be written (%2); the settings hold until the program ends")
                   .arg(m_path, error));
}

bool SettingsFile::settle(const QJsonObject &changes, const QString &error)
{
    if (!error.isEmpty()) {
        const bool differs = refreshLocked();
        // What cannot be read has been reported, and that it cannot be written either.
        if (m_reading.content != Content::Unreadable)
            reportWriteFailure(error);
        return differs;
    }
    m_writeFailureReported = false;
    const QJsonObject before = merged(m_reading.values);
    static_cast<void>(refreshLocked());
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        // What was set again meanwhile stays pending.
        if (m_pending.value(it.key()) == it.value())
            m_pending.remove(it.key());
    }
    return merged(m_reading.values) != before;
}

QString SettingsFile::writeOnce(const QJsonObject &changes)
{
    const QByteArray folder = folderOf(m_encodedPath);
    if (!makeFolders(folder))
        return qt_error_string(errno);
    const FolderLock lock(folder);
    while (true) {
        Reading current = read(m_encodedPath);
        if (current.content == Content::Unreadable)
            return QStringLiteral("it cannot be read");
        if (current.content == Content::Bad) {
            {
                std::unique_lock guard(m_mutex);
                noteBadFile(current.bytes);
                judgeBadFile(guard);
                if (!m_bad)
                    continue; // somebody was about to write it
            }
            if (!keepBadFile())
                return QStringLiteral("what it holds cannot be kept as %1").arg(badPath());
        }
        for (auto it = changes.begin(); it != changes.end(); ++it)
            current.values.insert(it.key(), it.value());
        DurableFile file(m_path);
        // The slow part comes before the look at the file, so that little time is left between that and the
        // commit.
        if (!file.write(QJsonDocument(current.values).toJson()) || !file.flush())
            return file.errorText();
        // Somebody else wrote meanwhile: once more, from what is there now.
        if (stampOf(m_encodedPath) != current.stamp)
            continue;
        return file.commit() ? QString() : file.errorText();
    }
}

} // namespace brevant
