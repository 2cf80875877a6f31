// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ProgressBar.h"

#include "TerminalText.h"

#include <cstdio>

#include <unistd.h>

namespace tool
{

ProgressBar::ProgressBar(const QString &title)
    : m_title(printable(title))
    , m_shown(::isatty(STDERR_FILENO))
{}

void ProgressBar::show(double part, qint64 count)
{
    const auto now = std::chrono::steady_clock::now();
    if (!m_shown || now - m_last < std::chrono::milliseconds(100))
        return;
    m_last = now;
    constexpr int WIDTH = 30;
    const QString bar =
        QString(static_cast<int>(part * WIDTH), QLatin1Char('#')).leftJustified(WIDTH, QLatin1Char('.'));
    const QString done =
        part > 0 ? QStringLiteral("[%1] %2 % ").arg(bar).arg(static_cast<int>(part * 100), 3) : QString();
    std::fprintf(stderr, "\r%s: %s%lld places", qUtf8Printable(m_title), qUtf8Printable(done), count);
}

void ProgressBar::clear()
{
    if (m_shown)
        std::fprintf(stderr, "\r\033[K");
}

} // namespace tool
