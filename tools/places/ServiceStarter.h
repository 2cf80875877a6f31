// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

class QProcess;
class QTemporaryDir;

namespace tool
{

/// Sees to it that a places service answers: the one that is running, else one of its own for as long as this object
/// lives.
class ServiceStarter
{
public:
    ServiceStarter();
    ~ServiceStarter();

    /// True when a service listens.
    static bool isServiceRunning();
    /// Starts a service on the user's own database. False, and says why, when it cannot.
    bool start();

private:
    std::unique_ptr<QTemporaryDir> m_channelFolder;
    std::unique_ptr<QProcess> m_service;
};

} // namespace tool
