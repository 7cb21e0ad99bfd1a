// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ArgumentList.h"

namespace brevant {

ArgumentList::ArgumentList(std::initializer_list<std::optional<QString>> arguments)
{
    for (const std::optional<QString> &argument : arguments)
        add(argument);
}

ArgumentList &ArgumentList::add(const std::optional<QString> &argument)
{
    m_ended = m_ended || !argument;
    if (!m_ended)
        m_values.append(*argument);
    return *this;
}

} // namespace brevant
