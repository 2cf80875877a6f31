// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QList>
#include <QtCore/QSharedDataPointer>
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
    Category &operator=(const Category &other);
    ~Category();

    /// The provider's code of the category; empty when unset.
    [[nodiscard]] QString code() const;
    void setCode(const QString &code);

    /// The categories directly below this one.
    [[nodiscard]] QList<Category> children() const;
    void setChildren(const QList<Category> &children);

private:
    QSharedDataPointer<CategoryData> d;
};

} // namespace vela::platform::places
