// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QLocale>
#include <QtCore/QMetaEnum>

namespace vela::platform::places
{

/// Writes a value for debugging as "Name(part, part)" on one line. Texts are quoted and escaped in any state of the
/// stream; the state is restored at the end.
class DebugParts
{
public:
    DebugParts(const QDebug &debug, const char *name)
        : m_debug(debug)
        , m_saver(m_debug)
    {
        m_debug.nospace().quote() << name << '(';
    }
    DebugParts(const DebugParts &) = delete;
    DebugParts &operator=(const DebugParts &) = delete;
    ~DebugParts() { m_debug << ')'; }

    template <typename Part>
    DebugParts &add(const Part &part)
    {
        separate() << part;
        return *this;
    }
    /// Adds an optional part.
    template <typename Part>
    DebugParts &addIf(bool isThere, const Part &part)
    {
        return isThere ? add(part) : *this;
    }
    /// Adds "label value".
    template <typename Part>
    DebugParts &addLabelled(const char *label, const Part &part)
    {
        separate() << label << ' ' << part;
        return *this;
    }
    /// Adds a number with all digits and a unit; nothing for NaN.
    DebugParts &addNumber(double number, const char *unit = "")
    {
        if (!qIsNaN(number))
            separate() << exact(number).constData() << unit;
        return *this;
    }
    /// Adds a count with its noun, "1 record" or "2 records"; nothing for 0.
    DebugParts &addCount(qint64 count, const char *singular)
    {
        if (count != 0)
            separate() << count << ' ' << singular << (count == 1 ? "" : "s");
        return *this;
    }
    /// Adds the name of an enumerator, or its number when it has no name.
    template <typename Enumeration>
    DebugParts &addName(Enumeration value)
    {
        separate() << nameOf(value).constData();
        return *this;
    }

    template <typename Enumeration>
    static QByteArray nameOf(Enumeration value)
    {
        const char *const name = QMetaEnum::fromType<Enumeration>().valueToKey(value);
        return name ? QByteArray(name) : QByteArray::number(value);
    }

private:
    static QByteArray exact(double number) { return QByteArray::number(number, 'g', QLocale::FloatingPointShortest); }

    QDebug &separate()
    {
        if (m_hasParts)
            m_debug << ", ";
        m_hasParts = true;
        return m_debug;
    }

    QDebug m_debug; ///< Writes to the same stream, also after the caller has returned its own.
    QDebugStateSaver m_saver;
    bool m_hasParts = false;
};

} // namespace vela::platform::places
