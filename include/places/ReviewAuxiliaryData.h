// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SharedAuxiliaryDataView.h>

#include <QtCore/QDateTime>

namespace vela::platform::places
{

class ReviewData;
extern template class PLACES_EXPORT SharedAuxiliaryDataView<ReviewData>;

/// A view of a record of type "lbs-review" as a user's review of the place; url() leads to its page. Unknown texts are
/// empty.
class PLACES_EXPORT ReviewAuxiliaryData : public SharedAuxiliaryDataView<ReviewData>
{
public:
    using SharedAuxiliaryDataView::SharedAuxiliaryDataView;
    friend void swap(ReviewAuxiliaryData &left, ReviewAuxiliaryData &right) noexcept { left.swap(right); }

    /// True when the record is of type "lbs-review" and has a rating.
    [[nodiscard]] bool isValid() const;

    /// Title of the review.
    [[nodiscard]] QString title() const;
    void setTitle(const QString &title);

    /// Rating on the provider's scale; NaN when unset, 0 when the record's text is not a number.
    [[nodiscard]] double rating() const;
    void setRating(double rating);

    /// The first lines of the review.
    [[nodiscard]] QString abstract() const;
    void setAbstract(const QString &abstract);

    /// The whole text of the review.
    [[nodiscard]] QString fullText() const;
    void setFullText(const QString &text);

    /// Name of the reviewer.
    [[nodiscard]] QString userName() const;
    void setUserName(const QString &name);

    /// Time of the review in seconds resolution, local time, 1970 to 2106; 1970-01-01T00:00:00 UTC when unset or
    /// unreadable. A null time or one outside these years is stored as 2106-02-07T06:28:15 UTC.
    [[nodiscard]] QDateTime creationTime() const;
    void setCreationTime(const QDateTime &time);
};

/// For debugging: rating and title.
PLACES_EXPORT QDebug operator<<(QDebug debug, const ReviewAuxiliaryData &review);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::ReviewAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::ReviewAuxiliaryData)
