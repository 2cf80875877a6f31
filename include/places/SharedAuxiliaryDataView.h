// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QUrl>

namespace vela::platform::places
{

/// Base of the views of records from online providers: ImageAuxiliaryData, ReservationAuxiliaryData and
/// ReviewAuxiliaryData. Copies of a view share their record until one of them is changed.
template <typename Data>
class SharedAuxiliaryDataView
{
public:
    /// A new, empty record of the view's type.
    SharedAuxiliaryDataView();
    /// A view of a copy of `data`, of any type; isValid() of the view checks the type.
    explicit SharedAuxiliaryDataView(const AuxiliaryData &data);
    SharedAuxiliaryDataView(const SharedAuxiliaryDataView &other);
    /// Moves the record; `other` becomes a new, empty record.
    SharedAuxiliaryDataView(SharedAuxiliaryDataView &&other) noexcept;
    SharedAuxiliaryDataView &operator=(const SharedAuxiliaryDataView &other);
    SharedAuxiliaryDataView &operator=(SharedAuxiliaryDataView &&other) noexcept;
    ~SharedAuxiliaryDataView();

    /// Swaps the records without a copy.
    void swap(SharedAuxiliaryDataView &other) noexcept { d.swap(other.d); }

    /// Web address; empty when unknown.
    [[nodiscard]] QUrl url() const;
    void setUrl(const QUrl &url);

    /// The record. Valid as long as the view; a change of the view may move it.
    [[nodiscard]] const AuxiliaryData &auxiliaryData() const;
    /// The same, writable; copies of the view are not changed.
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
    /// True when the record is of this type.
    [[nodiscard]] bool isOfType(const char *type) const;
    /// The text of `key`; empty when there is none.
    [[nodiscard]] QString text(const QString &key) const;
    void setText(const QString &key, const QString &value);

private:
    SharedValuePointer<Data> d;
};

} // namespace vela::platform::places
