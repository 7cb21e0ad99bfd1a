// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/originals/KeptOriginals.h"
#include "tests/engine/SourcesTest.h"

#include <array>

namespace brevant::test {

/// A test of sources that were replaced and are kept.
class KeptTest : public SourcesTest {
protected:
    void setUpKept()
    {
        setUp(u"originals"_s);
        m_settings->setOverride(false, suffixSwitcherKeyString);
        m_settings->setOverride(true, keepOriginalsCheckerKeyString);
        m_observer.results.clear();
        m_observer.onStatus = {};
        m_kept = std::make_unique<KeptOriginals>(m_tools);
    }

    /// Runs over one source, as a run of the window does.
    EntryResult minify(const QString &source) { return minify(source, *m_kept); }
    EntryResult minify(const QString &source, KeptOriginals &kept)
    {
        FileQueue queue;
        queue.append(source);
        KeptOriginals::Use use(kept);
        m_observer.results.clear();
        MinifyJob job(queue, *m_settings, m_tools, m_observer, m_stop);
        job.keepOriginals(use);
        job.run();
        return m_observer.results.empty() ? EntryResult() : m_observer.results.front();
    }

    /// A source with a mode and times of its own.
    [[nodiscard]] QString addMarked(const QString &name, const QByteArray &text = "copy") const
    {
        const QString source = add(name, text);
        const QByteArray bytes = QFile::encodeName(source);
        const bool isMarked =
            setMode(source, 0604) && ::utimensat(AT_FDCWD, bytes.constData(), times.data(), 0) == 0;
        return isMarked ? source : QString();
    }

    static void setAge(const QString &path, int days)
    {
        const timespec then{::time(nullptr) - days * 24 * 60 * 60, 0};
        const std::array<timespec, 2> both{then, then};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), both.data(), 0), 0);
    }

    [[nodiscard]] static QString recordOf(const QString &kept)
    {
        return QString(kept).replace(u".source.kept"_s, u".record.kept"_s);
    }

    static constexpr std::array<timespec, 2> times{timespec{1'000'000'000, 123'456'789},
                                                   timespec{1'000'000'001, 987'654'321}};
    std::unique_ptr<KeptOriginals> m_kept;
};

} // namespace brevant::test
