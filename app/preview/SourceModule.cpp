// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/SourceText.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT brevant::PreviewText *brevantMakePreviewText(QWidget *parent)
{
    return new brevant::SourceText(parent); // a child of the parent
}
