// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/ImageAuxiliaryData.h"

#include "auxdata/SharedAuxiliaryData.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

class ImageData : public SharedAuxiliaryData
{
public:
    using SharedAuxiliaryData::SharedAuxiliaryData;
    ImageData()
        : SharedAuxiliaryData(AuxiliaryData::TypeImage)
    {}
};

template class SharedAuxiliaryDataView<ImageData>;

bool ImageAuxiliaryData::isValid() const
{
    return isOfType(AuxiliaryData::TypeImage) && url().isValid();
}

QString ImageAuxiliaryData::description() const
{
    return text(QStringLiteral("description"));
}

void ImageAuxiliaryData::setDescription(const QString &description)
{
    setText(QStringLiteral("description"), description);
}

QDebug operator<<(QDebug debug, const ImageAuxiliaryData &image)
{
    DebugParts(debug, "ImageAuxiliaryData")
        .addIf(!image.description().isEmpty(), image.description())
        .addIf(!image.url().isEmpty(), image.url().toDisplayString());
    return debug;
}

} // namespace vela::platform::places
