// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QtGlobal>

/// Marks the classes that applications may use. Everything else has hidden visibility.
#define PLACES_EXPORT Q_DECL_EXPORT

namespace vela::platform::places
{

/// The one pointer from a public value class to its private part: owns it, and copies it with the value.
/// `T` may be incomplete wherever the pointer is only declared.
template <typename T>
class ValuePointer
{
public:
    /// Takes ownership of `owned`, which is never null.
    explicit ValuePointer(T *owned)
        : m_value(owned)
    {}
    ValuePointer(const ValuePointer &other)
        : m_value(new T(*other.m_value))
    {}
    /// Assigns to the value that is there, by the value's own rules; the pointer itself stays.
    ValuePointer &operator=(const ValuePointer &other)
    {
        if (this != &other)
            *m_value = *other.m_value;
        return *this;
    }
    ~ValuePointer() { delete m_value; }

    [[nodiscard]] T *get() { return m_value; }
    [[nodiscard]] const T *get() const { return m_value; }
    T *operator->() { return m_value; }
    const T *operator->() const { return m_value; }
    T &operator*() { return *m_value; }
    const T &operator*() const { return *m_value; }

private:
    T *m_value;
};

} // namespace vela::platform::places
