// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace brevant {

/// A function that a module of the application exports; null if the module or the function is not there. The
/// module stays loaded to the end of the program.
[[nodiscard]] QFunctionPointer moduleFunction(const char *module, const char *function);

} // namespace brevant
