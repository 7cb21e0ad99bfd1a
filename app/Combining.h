// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CombineFiles.h"

#include <QObject>
#include <QString>

#include <vector>

namespace brevant {

struct AppContext;

/// Joins the selected files into one, which takes their place in the list. Once the user has confirmed,
/// nothing else in the window can come between the reading and the new list.
class Combining final : public QObject {
    Q_OBJECT

public:
    explicit Combining(AppContext &context, QObject *parent = nullptr);

    /// Disables Combine while a job runs.
    void watchJobs();

    /// Asks where to save the combined file, or says why the selection cannot be combined.
    void combine();

Q_SIGNALS:
    /// The queue holds the combined file instead of its sources, and the list shows that.
    void didCombine();

private:
    void runSavePanel(const QString &kind, TextEncoding encoding);
    void select(const QString &target);
    void write(const QString &target, TextEncoding encoding);
    [[nodiscard]] std::vector<QString> selectedEntries() const;

    AppContext &m_app;
};

} // namespace brevant
