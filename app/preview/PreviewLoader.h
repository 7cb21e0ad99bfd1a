// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preview/PreviewReader.h"

#include <QObject>

#include <memory>
#include <optional>
#include <tuple>

namespace brevant {

/// Reads files for the preview on threads of its own. Only the file that was asked for last is delivered.
///
/// A thread that hangs in a read (a file server that is gone) holds up neither the next file nor the end of
/// the program.
class PreviewLoader final : public QObject {
    Q_OBJECT

public:
    explicit PreviewLoader(QObject *parent);
    ~PreviewLoader() override;

    /// Starts to read a page of `path`, as readPreviewPage() does, instead of what is being read.
    void start(const QString &path, const QString &encoding, const QString &output = {},
               bool isOutputWanted = false, const QString &original = {});
    void cancel();

    /// Whether exactly that is being read.
    [[nodiscard]] bool isLoading(const QString &path, const QString &encoding, const QString &output = {},
                                 bool isOutputWanted = false, const QString &original = {}) const
    {
        return m_loading == std::tuple(path, encoding, output, isOutputWanted, original);
    }

Q_SIGNALS:
    void loaded(const brevant::PreviewContent &content); ///< on the thread of this object

private:
    struct Shared;
    static void work(const std::shared_ptr<Shared> &shared);
    void deliver(const PreviewContent &content, quint64 number);

    std::shared_ptr<Shared> m_shared;
    /// Path, encoding, output, whether that is wanted, and original, of what is being read.
    std::optional<std::tuple<QString, QString, QString, bool, QString>> m_loading;
};

} // namespace brevant
