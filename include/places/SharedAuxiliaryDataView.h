// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QUrl>

namespace vela::platform::places
{

/// What the views of records from online providers have in common: ImageAuxiliaryData, ReservationAuxiliaryData and
/// ReviewAuxiliaryData. Copies of a view share their record until one of them is changed.
template <typename Data>
class SharedAuxiliaryDataView
{
public:
    /// A new, empty record of the view's type.
    SharedAuxiliaryDataView();
    /// A view of a copy of `data`, whatever its type; isValid() of the view tells whether the type is right.
    explicit SharedAuxiliaryDataView(const AuxiliaryData &data);
    SharedAuxiliaryDataView(const SharedAuxiliaryDataView &other);
    /// Takes the record of `other`, which is a new, empty one from then on.
    SharedAuxiliaryDataView(SharedAuxiliaryDataView &&other) noexcept;
    SharedAuxiliaryDataView &operator=(const SharedAuxiliaryDataView &other);
    SharedAuxiliaryDataView &operator=(SharedAuxiliaryDataView &&other) noexcept;
    ~SharedAuxiliaryDataView();

    /// Exchanges the records without a copy.
    void swap(SharedAuxiliaryDataView &other) noexcept { d.swap(other.d); }

    /// Web address; empty when unknown.
    [[nodiscard]] QUrl url() const;
    void setUrl(const QUrl &url);

    /// The record behind this view. It lives as long as the view and may move when the view is changed.
    [[nodiscard]] const AuxiliaryData &auxiliaryData() const;
    /// The same, to be changed; copies of the view keep what they had.
    [[nodiscard]] AuxiliaryData &auxiliaryData();
    operator AuxiliaryData() const { return auxiliaryData(); }

    /// Compares the records.
    friend bool operator==(const SharedAuxiliaryDataView &left, const SharedAuxiliaryDataView &right)
    {
        return left.auxiliaryData() == right.auxiliaryData();
    }
    friend bool operator!=(const SharedAuxiliaryDataView &left, const SharedAuxiliaryDataView &right)
    {
        return !(left == right);
    }

protected:
    /// True when the record is of exactly this type.
    [[nodiscard]] bool isOfType(const char *type) const;
    /// Value of a text of the record; empty when it has none of this key.
    [[nodiscard]] QString text(const QString &key) const;
    void setText(const QString &key, const QString &value);

private:
    SharedValuePointer<Data> d;
};

} // namespace vela::platform::places
