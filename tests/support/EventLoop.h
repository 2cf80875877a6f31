// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtTest/QTest>

#include <algorithm>
#include <functional>

/// The event loop for a manager under test.
class EventLoop
{
public:
    /// Handles events until the condition holds. False after a minute.
    static bool runUntil(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, 60000); }
    /// Handles events long enough to detect one that must not happen.
    static void runOut() { QTest::qWait(60); }

    /// Waits for an event without handling it. False after 20 seconds.
    static bool awaitEvent()
    {
        for (int i = 0; i < 20000 && !QAbstractEventDispatcher::instance()->hasPendingEvents(); ++i)
            QTest::qSleep(1);
        return QAbstractEventDispatcher::instance()->hasPendingEvents();
    }

    /// Number of threads of this process.
    static int threads()
    {
        return static_cast<int>(
            QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    }
    /// Number of managers that a test creates and destroys to find rare races: PLACES_MANAGERS, at least 500.
    static int managers() { return std::max(500, qEnvironmentVariableIntValue("PLACES_MANAGERS")); }

private:
    int m_argumentCount = 1;
    char m_name[6] = "tests";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
};
