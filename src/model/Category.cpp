// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Category.h"

#include "model/DebugParts.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class CategoryData : public QSharedData
{
public:
    QString code;
    QList<Category> children;
};

Category::Category()
    : d(new CategoryData)
{}

Category::Category(const Category &other) = default;
Category::Category(Category &&other) noexcept = default;
Category &Category::operator=(const Category &other) = default;
Category &Category::operator=(Category &&other) noexcept = default;
Category::~Category() = default;

QString Category::code() const
{
    return d->code;
}

void Category::setCode(const QString &code)
{
    d->code = code;
}

QList<Category> Category::children() const
{
    return d->children;
}

void Category::setChildren(const QList<Category> &children)
{
    d->children = children;
}

QDebug operator<<(QDebug debug, const Category &category)
{
    DebugParts parts(debug, "Category");
    parts.addIf(!category.code().isEmpty(), category.code());
    if (!category.children().isEmpty())
        parts.addLabelled("children", category.children().size());
    return debug;
}

} // namespace vela::platform::places
