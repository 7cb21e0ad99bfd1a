// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewText.h"

#include "app/platform/Module.h"

namespace brevant {

PreviewText *makePreviewText(QWidget *parent)
{
    const auto make =
        reinterpret_cast<MakePreviewText>(moduleFunction("brevant-preview", "brevantMakePreviewText"));
    return make == nullptr ? nullptr : make(parent);
}

} // namespace brevant
