// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/SharedAuxiliaryDataView.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

/// The record shared by copies of a view.
class SharedAuxiliaryData : public QSharedData
{
public:
    explicit SharedAuxiliaryData(const AuxiliaryData &data)
        : record(data)
    {}

    AuxiliaryData record;

protected:
    explicit SharedAuxiliaryData(const char *type)
        : record(AuxiliaryData(QLatin1String(type)))
    {}
};

// Members of the views; instantiated in the source of each view.

template <typename Data>
SharedAuxiliaryDataView<Data>::SharedAuxiliaryDataView()
    : d(new Data)
{}

template <typename Data>
SharedAuxiliaryDataView<Data>::SharedAuxiliaryDataView(const AuxiliaryData &data)
    : d(new Data(data))
{}

template <typename Data>
SharedAuxiliaryDataView<Data>::SharedAuxiliaryDataView(const SharedAuxiliaryDataView &other) = default;
template <typename Data>
SharedAuxiliaryDataView<Data>::SharedAuxiliaryDataView(SharedAuxiliaryDataView &&other) noexcept = default;
template <typename Data>
SharedAuxiliaryDataView<Data> &SharedAuxiliaryDataView<Data>::operator=(const SharedAuxiliaryDataView &other) = default;
template <typename Data>
SharedAuxiliaryDataView<Data> &
SharedAuxiliaryDataView<Data>::operator=(SharedAuxiliaryDataView &&other) noexcept = default;
template <typename Data>
SharedAuxiliaryDataView<Data>::~SharedAuxiliaryDataView() = default;

template <typename Data>
QUrl SharedAuxiliaryDataView<Data>::url() const
{
    return QUrl(text(QStringLiteral("url")));
}

template <typename Data>
void SharedAuxiliaryDataView<Data>::setUrl(const QUrl &url)
{
    setText(QStringLiteral("url"), url.toString());
}

template <typename Data>
const AuxiliaryData &SharedAuxiliaryDataView<Data>::auxiliaryData() const
{
    return d->record;
}

template <typename Data>
AuxiliaryData &SharedAuxiliaryDataView<Data>::auxiliaryData()
{
    return d->record;
}

template <typename Data>
bool SharedAuxiliaryDataView<Data>::isOfType(const char *type) const
{
    return d->record.type() == QLatin1String(type);
}

template <typename Data>
QString SharedAuxiliaryDataView<Data>::text(const QString &key) const
{
    return d->record.property(key);
}

template <typename Data>
void SharedAuxiliaryDataView<Data>::setText(const QString &key, const QString &value)
{
    d->record.addProperty(key, value);
}

} // namespace vela::platform::places
