// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <chrono>

namespace tool
{

/// A progress line on standard error. Does nothing when standard error is not a terminal.
class ProgressBar
{
public:
    explicit ProgressBar(const QString &title);
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;
    ~ProgressBar() { clear(); }

    /// @param part completed share from 0 to 1; 0 when it is unknown.
    void show(double part, qint64 count);
    /// Erases the line before a message is printed.
    void clear();

private:
    const QString m_title;
    const bool m_shown;
    std::chrono::steady_clock::time_point m_last;
};

} // namespace tool
