// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <vector>

namespace brevant {

/// What is seen of a page without its style sheets, and where it stands in the page's text.
struct MarkupText {
    /// A character that is no white space.
    struct Letter {
        const QChar *at;
        int link;         ///< the number of the link it is in, from 1; 0 for none
        bool isApart;     ///< white space or the edge of a block precedes it
        bool isUncertain; ///< code precedes it, which may write anything
    };

    std::vector<Letter> letters;
    std::vector<QStringView> styles; ///< the content of style elements

    explicit MarkupText(QStringView page);
};

} // namespace brevant
