// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QUrl>

namespace vela::platform::places
{

class ContactAuxiliaryDataPrivate;

/// A record of type "contact" seen as the address-book contact it describes. It can be read only: contacts are changed
/// in the address book. A text that is not known is empty.
class PLACES_EXPORT ContactAuxiliaryData
{
public:
    /// A new, empty record of type "contact".
    ContactAuxiliaryData();
    /// A view of a copy of `data`, whatever its type.
    explicit ContactAuxiliaryData(const AuxiliaryData &data);
    ContactAuxiliaryData(const ContactAuxiliaryData &other);
    /// Takes the value of `other`, which is a new, empty record from then on.
    ContactAuxiliaryData(ContactAuxiliaryData &&other) noexcept;
    ContactAuxiliaryData &operator=(const ContactAuxiliaryData &other);
    ContactAuxiliaryData &operator=(ContactAuxiliaryData &&other) noexcept;
    ~ContactAuxiliaryData();

    /// Exchanges the values without a copy.
    void swap(ContactAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(ContactAuxiliaryData &left, ContactAuxiliaryData &right) noexcept { left.swap(right); }

    /// Identifier of the contact in the address book.
    [[nodiscard]] QString externalId() const;
    /// Number of the account the contact belongs to; 0 when unknown.
    [[nodiscard]] int accountId() const;
    /// Number of the contact in its account; 0 when unknown.
    [[nodiscard]] int contactId() const;

    /// First name.
    [[nodiscard]] QString firstName() const;
    /// Middle name.
    [[nodiscard]] QString middleName() const;
    /// Family name.
    [[nodiscard]] QString lastName() const;
    /// The whole name, as the address book shows it.
    [[nodiscard]] QString fullName() const;
    /// Title or position.
    [[nodiscard]] QString title() const;
    /// Company or organisation.
    [[nodiscard]] QString company() const;

    /// Telephone number at home.
    [[nodiscard]] QString homePhone() const;
    /// Number of the mobile telephone.
    [[nodiscard]] QString mobilePhone() const;
    /// Telephone number at work.
    [[nodiscard]] QString workPhone() const;
    /// Fax number.
    [[nodiscard]] QString fax() const;
    /// E-mail address.
    [[nodiscard]] QString emailAddress() const;
    /// Web address; empty when unknown.
    [[nodiscard]] QUrl url() const;

    /// File path of the small photo.
    [[nodiscard]] QString photoPathSmall() const;
    /// File path of the large photo.
    [[nodiscard]] QString photoPathLarge() const;
    /// File path of the photo as it was taken.
    [[nodiscard]] QString photoPathOriginal() const;
    /// MIME type of the photos.
    [[nodiscard]] QString photoMimeType() const;

    /// True when the contact lives in the work perimeter.
    [[nodiscard]] bool isWorkContact() const;
    /// Notes about the contact.
    [[nodiscard]] QString notes() const;

    /// A copy of the record behind this view.
    [[nodiscard]] AuxiliaryData auxiliaryData() const;
    operator AuxiliaryData() const;

    /// Compares the records.
    bool operator==(const ContactAuxiliaryData &other) const;
    bool operator!=(const ContactAuxiliaryData &other) const;

private:
    friend class ContactAuxiliaryDataPrivate;
    ValuePointer<ContactAuxiliaryDataPrivate> d;
};

/// For debugging: numbers and full name; the rest of a contact is private.
PLACES_EXPORT QDebug operator<<(QDebug debug, const ContactAuxiliaryData &contact);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::ContactAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::ContactAuxiliaryData)
