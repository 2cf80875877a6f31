// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QProcess>

namespace tool
{

/// A process that calls a function in the child before its program starts. The function may call only functions that
/// are safe in signal handlers. Qt 5 and Qt 6 have different interfaces for it.
class ChildProcess : public QProcess
{
public:
#if QT_VERSION_MAJOR < 6
    explicit ChildProcess(void (*prepare)())
        : m_prepare(prepare)
    {}

protected:
    void setupChildProcess() override
    {
        m_prepare();
    }

private:
    void (*const m_prepare)();
#else
    explicit ChildProcess(void (*prepare)())
    {
        setChildProcessModifier(prepare);
    }
#endif
};

} // namespace tool
