// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

/// A file in memory, for readers that open files by their paths.
class MemoryFile
{
public:
    explicit MemoryFile(const QByteArray &bytes)
        : m_file(::memfd_create("input", 0))
    {
        if (m_file < 0 || ::write(m_file, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size())
            std::abort();
    }
    ~MemoryFile() { ::close(m_file); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    [[nodiscard]] QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_file); }

private:
    const int m_file;
};
