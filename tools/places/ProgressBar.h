// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <chrono>

namespace tool
{

/// A line on standard error that shows how far the work is; nothing unless that is a terminal.
class ProgressBar
{
public:
    explicit ProgressBar(const QString &title);
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;
    ~ProgressBar() { clear(); }

    /// @param part how much is done, from 0 to 1; 0 when nobody knows.
    void show(double part, qint64 count);
    /// Makes room for a message.
    void clear();

private:
    const QString m_title;
    const bool m_shown;
    std::chrono::steady_clock::time_point m_last;
};

} // namespace tool
