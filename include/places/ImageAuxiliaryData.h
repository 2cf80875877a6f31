// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SharedAuxiliaryDataView.h>

namespace vela::platform::places
{

class ImageData;
extern template class PLACES_EXPORT SharedAuxiliaryDataView<ImageData>;

/// A record of type "lbs-image" seen as an image of the place: url() leads to it. A text that is not known is empty.
class PLACES_EXPORT ImageAuxiliaryData : public SharedAuxiliaryDataView<ImageData>
{
public:
    using SharedAuxiliaryDataView::SharedAuxiliaryDataView;

    /// True when the record is of type "lbs-image" and url() is a valid URL.
    [[nodiscard]] bool isValid() const;

    [[nodiscard]] QString description() const;
    void setDescription(const QString &description);
};

} // namespace vela::platform::places
