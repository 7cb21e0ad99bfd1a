// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The headers of QScintilla say "signals" and "slots" where this project has no such words.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#include <Qsci/qscilexercss.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerjavascript.h>
#include <Qsci/qsciscintilla.h>
#undef slots
#undef signals
