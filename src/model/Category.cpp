// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Category.h"

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
Category &Category::operator=(const Category &other) = default;
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

} // namespace vela::platform::places
