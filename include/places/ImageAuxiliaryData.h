// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SharedAuxiliaryDataView.h>

namespace vela::platform::places
{

class ImageData;
extern template class PLACES_EXPORT SharedAuxiliaryDataView<ImageData>;

/// A view of a record of type "lbs-image" as an image of the place at url(). Unknown texts are empty.
class PLACES_EXPORT ImageAuxiliaryData : public SharedAuxiliaryDataView<ImageData>
{
public:
    using SharedAuxiliaryDataView::SharedAuxiliaryDataView;
    friend void swap(ImageAuxiliaryData &left, ImageAuxiliaryData &right) noexcept { left.swap(right); }

    /// True when the record is of type "lbs-image" and url() is a valid URL.
    [[nodiscard]] bool isValid() const;

    /// Description of the image.
    [[nodiscard]] QString description() const;
    void setDescription(const QString &description);
};

/// For debugging: description and web address.
PLACES_EXPORT QDebug operator<<(QDebug debug, const ImageAuxiliaryData &image);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::ImageAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::ImageAuxiliaryData)
