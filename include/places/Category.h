// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QList>
#include <QtCore/QString>

namespace vela::platform::places
{

class CategoryData;

/// A node of a provider's tree of point-of-interest categories. Copies share their data until one is changed.
class PLACES_EXPORT Category
{
public:
    Category();
    Category(const Category &other);
    /// Moves the value; `other` becomes a category without a code.
    Category(Category &&other) noexcept;
    Category &operator=(const Category &other);
    Category &operator=(Category &&other) noexcept;
    ~Category();

    /// Swaps the values without a copy.
    void swap(Category &other) noexcept { d.swap(other.d); }
    friend void swap(Category &left, Category &right) noexcept { left.swap(right); }

    /// The provider's code of the category; empty when unset.
    [[nodiscard]] QString code() const;
    void setCode(const QString &code);

    /// Direct subcategories.
    [[nodiscard]] QList<Category> children() const;
    void setChildren(const QList<Category> &children);

private:
    SharedValuePointer<CategoryData> d;
};

/// For debugging: code and children.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Category &category);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Category, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Category)
