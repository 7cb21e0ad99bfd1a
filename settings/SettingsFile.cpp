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
#include <optional>
#include <system_error>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

// Change times advance with the kernel's timer, every 10 ms at the slowest (CONFIG_HZ=100).
constexpr std::int64_t stampResolution = 20'000'000;

void report(const QString &line)
{
    std::fprintf(stderr, "brevant: %s\n", qUtf8Printable(printable(line)));
}

/// Makes the programs of ours that write into one folder take turns, where locks are to be had.
Descriptor lockFolder(const QByteArray &folder)
{
    Descriptor file = openFile(folder, O_RDONLY | O_DIRECTORY);
    if (file.isOpen())
        uninterrupted([&file] { return ::flock(file.number(), LOCK_EX); });
    return file;
}

} // namespace

SettingsFile::SettingsFile(const QString &path, std::function<void()> changed,
                           std::chrono::milliseconds saveTime)
    : m_path(path), m_encodedPath(QFile::encodeName(path)), m_changed(std::move(changed)),
      m_saveTime(saveTime)
{
    const Lock lock(m_mutex);
    if (stampOf(m_encodedPath) != m_reading.stamp)
        reload(); // and no change yet
}

SettingsFile::Stamp SettingsFile::stampOf(const QByteArray &path)
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return {};
    return {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
            status.st_size, status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

SettingsFile::Reading SettingsFile::read(const QByteArray &path)
{
    Reading reading;
    // Taken first: should the file change, or appear, from now on, its stamp must differ.
    reading.stamp = stampOf(path);
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const std::int64_t age = (now.tv_sec - reading.stamp[3]) * 1'000'000'000 + now.tv_nsec - reading.stamp[4];
    reading.fresh = age >= 0 && age < stampResolution;
    const Descriptor file = openRegularFile(path);
    if (!file.isOpen()) {
        reading.content = errno == ENOENT ? Content::Values : Content::Unreadable;
        return reading;
    }
    const std::optional<QByteArray> bytes = FileBytes::readAll(file.number());
    const QJsonDocument document = QJsonDocument::fromJson(bytes.value_or(QByteArray()));
    reading.content = document.isObject() ? Content::Values : bytes ? Content::Bad : Content::Unreadable;
    reading.values = document.object();
    reading.bytes = bytes.value_or(QByteArray());
    return reading;
}

/// What readers get.
QJsonObject SettingsFile::values() const
{
    QJsonObject values = m_reading.values;
    for (auto it = m_pending.begin(); it != m_pending.end(); ++it)
        values.insert(it.key(), it.value());
    return values;
}

/// Tells of the change if it makes a difference to readers.
template <typename Change>
void SettingsFile::tellOf(Change change)
{
    const QJsonObject before = values();
    change();
    if (values() != before)
        m_changed();
}

bool SettingsFile::isBad(const QByteArray &bytes) const
{
    return m_reading.content == Content::Bad && m_reading.bytes == bytes;
}

void SettingsFile::reload()
{
    Reading reading = read(m_encodedPath);
    if (reading.content == Content::Bad) {
        if (isBad(reading.bytes)) {
            m_reading.stamp = reading.stamp;
            m_reading.fresh = reading.fresh;
            return;
        }
        reading.values = m_reading.values;
        reading.due = std::chrono::steady_clock::now() + m_saveTime;
        wakeWriter();
    }
    if (reading.content == Content::Unreadable) {
        reading.values = m_reading.values;
        if (m_reading.content != Content::Unreadable)
            report(u"the settings in %1 cannot be read; %2, and changes hold until the program ends"_s.arg(
                m_path,
                reading.values.isEmpty() ? u"the defaults are used"_s : u"those read before stay in use"_s));
    }
    m_reading = std::move(reading);
}

void SettingsFile::refresh(const Lock & /*held*/)
{
    if (m_reading.fresh || stampOf(m_encodedPath) != m_reading.stamp)
        tellOf([this] { reload(); });
}

QJsonValue SettingsFile::value(QLatin1StringView key)
{
    const Lock lock(m_mutex);
    refresh(lock);
    return values().value(key);
}

void SettingsFile::setValue(QLatin1StringView key, const QJsonValue &value)
{
    const Lock lock(m_mutex);
    m_pending.insert(key, value);
    wakeWriter();
}

void SettingsFile::synchronize()
{
    Lock lock(m_mutex);
    m_hurried = true;
    m_wake.notify_all();
    const std::uint64_t round = m_wantedRound; // others may go on to set values for ever
    m_wake.wait(lock, [this, round] { return m_writtenRound >= round; });
}

void SettingsFile::wakeWriter()
{
    ++m_wantedRound;
    try {
        if (!m_writer.joinable())
            m_writer = std::jthread([this](const std::stop_token &stop) { writeBehind(stop); });
    } catch (const std::system_error &error) {
        // The next value set tries again; nobody may wait for this one.
        m_writtenRound = m_wantedRound;
        reportWriteFailure(QString::fromLocal8Bit(error.what()));
    }
    m_wake.notify_all();
}

void SettingsFile::reportWriteFailure(const QString &error)
{
    if (!std::exchange(m_writeFailureReported, true))
        report(u"%1 cannot be written (%2); the settings hold until the program ends"_s.arg(m_path, error));
}

void SettingsFile::writeBehind(const std::stop_token &stop)
{
    Lock lock(m_mutex);
    while (m_wake.wait(lock, stop, [this] { return m_writtenRound != m_wantedRound; })) {
        const std::uint64_t round = m_wantedRound;
        static_cast<void>(settleBadContent(lock));
        // Nothing is left to write if the same value was set twice, and the first write took it.
        const QString error = m_pending.isEmpty() ? QString() : write(lock);
        if (error.isEmpty()) {
            m_writeFailureReported = false;
        } else {
            refresh(lock);
            // What cannot be read has been reported, and that it cannot be written either.
            if (m_reading.content != Content::Unreadable)
                reportWriteFailure(error);
        }
        m_writtenRound = round;
        m_wake.notify_all();
    }
}

/// Waits until bad content has stayed the same for a while and keeps it, unless it is replaced meanwhile.
/// False if it could not be kept.
bool SettingsFile::settleBadContent(Lock &lock)
{
    while (m_reading.content == Content::Bad && !m_reading.kept) {
        if (const auto due = m_reading.due; !m_reading.judged) {
            m_wake.wait_until(lock, due, [this] { return m_hurried; });
            refresh(lock);
            if (m_reading.due != due) // it is other content
                continue;
        }
        if (!keepBadContent(lock))
            return false;
    }
    return true;
}

/// Gives bad content up for the defaults and keeps it beside the file, and reports both once. False if it is
/// still there and could not be kept.
bool SettingsFile::keepBadContent(Lock &lock)
{
    const QByteArray bytes = m_reading.bytes;
    const bool reported = std::exchange(m_reading.judged, true);
    tellOf([this] { m_reading.values = {}; });
    lock.unlock();
    // There is nothing to keep of an empty file.
    const bool kept = !bytes.isEmpty() && DurableFile::replace(badPath(), bytes).isEmpty();
    if (!reported)
        report(kept ? u"%1 holds no settings; the defaults are used, and the file is kept as %2"_s.arg(
                          m_path, badPath())
                    : u"%1 holds no settings; the defaults are used"_s.arg(m_path));
    lock.lock();
    if (isBad(bytes))
        m_reading.kept = kept || bytes.isEmpty();
    return !isBad(bytes) || m_reading.kept;
}

/// Merges what was set into the file as it now is. The reason of a failure, or an empty text.
QString SettingsFile::write(Lock &lock)
{
    lock.unlock();
    const QByteArray folder = folderOf(m_encodedPath);
    std::optional<QString> error;
    if (!makeFolders(folder))
        error = qt_error_string(errno);
    const Descriptor turn = lockFolder(folder);
    lock.lock();
    while (!error)
        error = tryToWrite(lock);
    return *error;
}

/// As write(), but nothing if somebody else wrote meanwhile.
std::optional<QString> SettingsFile::tryToWrite(Lock &lock)
{
    tellOf([this] { reload(); });
    if (!settleBadContent(lock))
        return u"what it holds cannot be kept as %1"_s.arg(badPath());
    if (m_reading.content == Content::Unreadable)
        return u"it cannot be read"_s;
    const QJsonObject changes = m_pending;
    const QByteArray bytes = QJsonDocument(values()).toJson();
    const Stamp stamp = m_reading.stamp;
    lock.unlock();
    DurableFile file(m_path);
    // The slow part comes first, so that little time is left between the look at the file and the commit.
    const bool ready = file.write(bytes) && file.flush();
    const bool untouched = stampOf(m_encodedPath) == stamp;
    const bool written = ready && untouched && file.commit();
    lock.lock();
    if (ready && !untouched)
        return std::nullopt;
    if (written)
        tellOf([&] { forget(changes); });
    return file.errorText();
}

/// Drops values that have been written, but for those that were set again meanwhile.
void SettingsFile::forget(const QJsonObject &written)
{
    reload();
    for (auto it = written.begin(); it != written.end(); ++it) {
        if (m_pending.value(it.key()) == it.value())
            m_pending.remove(it.key());
    }
}

} // namespace brevant
