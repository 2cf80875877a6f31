// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QSharedData>
#include <QtCore/QtGlobal>

#include <utility>

/// Exports a class to applications. All other symbols have hidden visibility.
#define PLACES_EXPORT Q_DECL_EXPORT

class QDebug;

namespace vela::platform::places
{

/// Private part of a default value. Never destroyed: static objects of an application may be destroyed later.
template <typename T>
Q_NEVER_INLINE const T *newPrivatePart()
{
    static const T *const part = new T;
    return part;
}

/// Owning pointer from a public value class to its private part; copies the private part with the value. After a move
/// the value equals a new one; a private part is created when it is changed.
/// `T` may be incomplete where the pointer is only declared.
template <typename T>
class ValuePointer
{
public:
    /// Takes ownership of `owned`; not null.
    explicit ValuePointer(T *owned)
        : m_value(owned)
    {}
    ValuePointer(const ValuePointer &other)
        : m_value(other.m_value ? new T(*other.m_value) : nullptr)
    {}
    /// Moves the private part. A value class whose copies leave out a member must do the same in its move.
    ValuePointer(ValuePointer &&other) noexcept
        : m_value(std::exchange(other.m_value, nullptr))
    {}
    /// Assigns to the private part by its assignment operator; the pointer is unchanged.
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
/// @tparam Pointer QSharedDataPointer for copy-on-write, QExplicitlySharedDataPointer for copies that share changes.
template <typename T, typename Pointer = QSharedDataPointer<T>>
class SharedValuePointer
{
public:
    /// Shares `part`; not null.
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
