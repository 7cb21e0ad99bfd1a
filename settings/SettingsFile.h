// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <array>
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
/// Reading sees a change from outside at once (one stat(2) a read). A value set holds for the next reader;
/// a thread of this object's own merges it into the file as it then is, so that keys that others wrote, and
/// keys unknown to us, are kept. All members are safe from any thread.
class SettingsFile final {
public:
    /// `changed` is called whenever values differ because somebody else changed the file, on the thread that
    /// found out; it must not call back. Content that is not settings may be half of an editor's save: the
    /// values from before hold until it has stayed the same for `saveTime`. Then it is kept in a file beside.
    SettingsFile(const QString &path, std::function<void()> changed,
                 std::chrono::milliseconds saveTime = std::chrono::milliseconds(500));

    ~SettingsFile() { synchronize(); }
    SettingsFile(const SettingsFile &) = delete;
    SettingsFile &operator=(const SettingsFile &) = delete;

    [[nodiscard]] const QString &path() const { return m_path; }

    /// The value the user set under `key`; undefined if none.
    [[nodiscard]] QJsonValue value(QLatin1StringView key);

    /// Sets a value. Never waits for the disk.
    void setValue(QLatin1StringView key, const QJsonValue &value);

    /// Reads the file again if it has changed.
    void refresh() { refresh(Lock(m_mutex)); }

    /// Waits until every value set so far has been written, or could not be, and bad content found has been
    /// kept. From now on bad content is judged without waiting for `saveTime`.
    void synchronize();

private:
    /// Device, inode, size and change time, which cannot be set from outside; zeros if there is no file.
    using Stamp = std::array<std::int64_t, 5>;
    using Lock = std::unique_lock<std::mutex>;

    enum class Content { Values, Bad, Unreadable };
    struct Reading {
        Content content = Content::Values;
        QJsonObject values;
        QByteArray bytes;
        Stamp stamp{};
        bool fresh = false; ///< read so soon after a change that the next one might leave the same stamp

        // Of bad content.
        std::chrono::steady_clock::time_point due; ///< when it will have stayed the same long enough
        bool judged = false;                       ///< it has, and has been reported
        bool kept = false;
    };

    [[nodiscard]] static Stamp stampOf(const QByteArray &path);
    [[nodiscard]] static Reading read(const QByteArray &path);

    // All below are called with the lock held. Those that take it, and not as const, release it while they
    // wait.
    [[nodiscard]] QJsonObject values() const;
    template <typename Change>
    void tellOf(Change change);
    void refresh(const Lock &lock);
    void reload();
    [[nodiscard]] bool isBad(const QByteArray &bytes) const;
    [[nodiscard]] QString badPath() const { return m_path + QLatin1StringView(".bad"); }
    [[nodiscard]] bool settleBadContent(Lock &lock);
    [[nodiscard]] bool keepBadContent(Lock &lock);
    void wakeWriter();
    void writeBehind(const std::stop_token &stop);
    [[nodiscard]] QString write(Lock &lock);
    [[nodiscard]] std::optional<QString> tryToWrite(Lock &lock);
    void forget(const QJsonObject &written);
    void reportWriteFailure(const QString &error);

    const QString m_path;
    const QByteArray m_encodedPath;
    const std::function<void()> m_changed;
    const std::chrono::milliseconds m_saveTime;

    std::mutex m_mutex; ///< guards all below
    std::condition_variable_any m_wake;
    Reading m_reading;
    QJsonObject m_pending;            ///< set and not yet in the file
    std::uint64_t m_wantedRound = 0;  ///< of the writer
    std::uint64_t m_writtenRound = 0; ///< the last one done
    bool m_writeFailureReported = false;
    bool m_hurried = false;
    std::jthread m_writer; ///< started by the first value set, or bad content found
};

} // namespace brevant
