// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace brevant {

/// The JSON file under the settings store: one object holding only what the user set.
///
/// Reading sees a change from outside at once (one stat(2) a read). Writing is behind: a value set holds for
/// the next reader, and a thread of this object's own merges it into the file as it then is, so that keys
/// that others wrote in between, and keys unknown to us, are kept. All members are safe from any thread.
class SettingsFile final {
public:
    /// `changed` is called, from the thread that found out and with no lock held, whenever values differ
    /// because somebody else changed the file. Content that is no settings is looked at again after
    /// `saveTime`: an editor may be about to write it. Until then the values from before hold.
    SettingsFile(const QString &path, std::function<void()> changed,
                 std::chrono::milliseconds saveTime = std::chrono::milliseconds(500));

    /// Waits until every value set so far has been written, or could not be, and bad content found has been
    /// kept, for which it does not wait.
    ~SettingsFile();

    SettingsFile(const SettingsFile &) = delete;
    SettingsFile &operator=(const SettingsFile &) = delete;

    [[nodiscard]] const QString &path() const { return m_path; }

    /// The value the user set under `key`; undefined if none.
    [[nodiscard]] QJsonValue value(QLatin1StringView key);

    /// Sets a value. Never waits for the disk.
    void setValue(QLatin1StringView key, const QJsonValue &value);

    /// Reads the file again if it has changed.
    void refresh();

    /// Waits until every value set so far has been written, or could not be, and bad content found has been
    /// kept. From now on nothing is waited for before that is.
    void synchronize();

private:
    /// Tells one state of the file from another; the change time cannot be set from outside.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = -1;            ///< -1: there is no file
        std::int64_t changedAt = 0; ///< nanoseconds
        bool operator==(const Stamp &) const = default;
    };
    enum class Content { Missing, Values, Bad, Unreadable };
    struct Reading {
        Content content = Content::Missing;
        QJsonObject values;
        QByteArray bytes;
        Stamp stamp;
        bool fresh = false; ///< read so soon after the change that the next change might have the same stamp
    };

    struct BadContent {
        QByteArray bytes;
        std::chrono::steady_clock::time_point due; ///< when it is looked at again
        bool judged = false;                       ///< it was, and was the same
        bool reported = false;
        bool kept = false;
    };

    [[nodiscard]] static Stamp stampOf(const QByteArray &path);
    [[nodiscard]] static Reading read(const QByteArray &path);
    [[nodiscard]] QJsonObject merged(QJsonObject values) const;
    [[nodiscard]] bool refreshLocked();
    [[nodiscard]] QString badPath() const { return m_path + QLatin1StringView(".bad"); }
    void noteBadFile(const QByteArray &bytes);
    void judgeBadFile(std::unique_lock<std::mutex> &lock);
    [[nodiscard]] bool keepBadFile();
    void wakeWriter();
    void reportWriteFailure(const QString &error);
    void writeBehind();
    [[nodiscard]] bool settle(const QJsonObject &changes, const QString &error);
    [[nodiscard]] QString writeOnce(const QJsonObject &changes);

    const QString m_path;
    const QByteArray m_encodedPath;
    const std::function<void()> m_changed;
    const std::chrono::milliseconds m_saveTime;

    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_wake;
    std::condition_variable m_written;
    Reading m_reading;
    std::optional<BadContent> m_bad; ///< found last
    QJsonObject m_pending;           ///< set and not yet in the file
    std::uint64_t m_setCount = 0;
    std::uint64_t m_writtenCount = 0;
    bool m_writeFailureReported = false;
    bool m_hurried = false;
    bool m_stop = false;
    std::thread m_writer; ///< started by the first value set, or bad content found
};

} // namespace brevant
