// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"

#include <QStringList>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Adds each of the paths to the queue, with the spinner shown meanwhile. Holds the calling thread until the
/// last folder has been walked.
void addWithSpinner(const QStringList &paths, const Outlets &outlets, FileQueue &queue,
                    const SettingsStore &settings);

} // namespace brevant
