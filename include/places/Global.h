// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QSharedData>
#include <QtCore/QtGlobal>

#include <utility>

/// Marks the classes that applications may use. Everything else has hidden visibility.
#define PLACES_EXPORT Q_DECL_EXPORT

class QDebug;

namespace vela::platform::places
{

/// The private part of a new value. It is never destroyed: a static object of an application may outlive ours.
template <typename T>
Q_NEVER_INLINE const T *newPrivatePart()
{
    static const T *const part = new T;
    return part;
}

/// The one pointer from a public value class to its private part: owns it, and copies it with the value. A value that
/// was moved from reads as a new one, and gets a private part again when it is changed.
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
        : m_value(other.m_value ? new T(*other.m_value) : nullptr)
    {}
    /// Takes the private part itself: what its copies leave out, the value class has to leave out of a move on its own.
    ValuePointer(ValuePointer &&other) noexcept
        : m_value(std::exchange(other.m_value, nullptr))
    {}
    /// Assigns to the value that is there, by the value's own rules; the pointer itself stays.
    ValuePointer &operator=(const ValuePointer &other)
    {
        if (this != &other)
            *get() = *other;
        return *this;
    }
    ValuePointer &operator=(ValuePointer &&other) noexcept
    {
        ValuePointer(std::move(other)).swap(*this);
        return *this;
    }
    ~ValuePointer() { delete m_value; }

    void swap(ValuePointer &other) noexcept { std::swap(m_value, other.m_value); }

    [[nodiscard]] T *get() { return Q_LIKELY(m_value) ? m_value : renew(); }
    [[nodiscard]] const T *get() const { return Q_LIKELY(m_value) ? m_value : newPrivatePart<T>(); }
    T *operator->() { return get(); }
    const T *operator->() const { return get(); }
    T &operator*() { return *get(); }
    const T &operator*() const { return *get(); }

private:
    Q_NEVER_INLINE T *renew() { return m_value = new T; }

    T *m_value; ///< Null after a move.
};

/// The same for a value class whose copies share the private part.
/// @tparam Pointer QSharedDataPointer for copies that part when one is changed, QExplicitlySharedDataPointer for copies
/// that see each other's changes.
template <typename T, typename Pointer = QSharedDataPointer<T>>
class SharedValuePointer
{
public:
    /// Shares `part`, which is never null.
    explicit SharedValuePointer(T *part)
        : m_value(part)
    {}

    void swap(SharedValuePointer &other) noexcept { m_value.swap(other.m_value); }

    [[nodiscard]] T *get()
    {
        if (!m_value)
            m_value = new T;
        return m_value.data();
    }
    [[nodiscard]] const T *get() const
    {
        return Q_LIKELY(m_value.constData()) ? m_value.constData() : newPrivatePart<T>();
    }
    T *operator->() { return get(); }
    const T *operator->() const { return get(); }
    T &operator*() { return *get(); }
    const T &operator*() const { return *get(); }

private:
    Pointer m_value; ///< Null after a move.
};

} // namespace vela::platform::places
