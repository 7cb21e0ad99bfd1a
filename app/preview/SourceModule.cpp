// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/SourceText.h"

namespace brevant {

class SourceModule final : public QObject, public PreviewTextMaker {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.brevant.PreviewTextMaker")
    Q_INTERFACES(brevant::PreviewTextMaker)

public:
    [[nodiscard]] PreviewText *make(QWidget *parent) const override
    {
        return new SourceText(parent); // a child of the parent
    }
};

} // namespace brevant

#include "SourceModule.moc"
