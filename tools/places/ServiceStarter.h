// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

class QProcess;
class QTemporaryDir;

namespace tool
{

/// Provides a places service: the running one, or one started for the lifetime of this object.
class ServiceStarter
{
public:
    ServiceStarter();
    ~ServiceStarter();

    /// True when a service listens.
    static bool isServiceRunning();
    /// Starts a service on the user's own database. On a failure prints an error and returns false.
    bool start();

private:
    std::unique_ptr<QTemporaryDir> m_channelFolder;
    std::unique_ptr<QProcess> m_service;
};

} // namespace tool
