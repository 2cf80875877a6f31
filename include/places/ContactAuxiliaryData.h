// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QUrl>

namespace vela::platform::places
{

class ContactAuxiliaryDataPrivate;

/// A read-only view of a record of type "contact" as an address-book contact. To change a contact, use the address
/// book. Unknown texts are empty.
class PLACES_EXPORT ContactAuxiliaryData
{
public:
    /// A new, empty record of type "contact".
    ContactAuxiliaryData();
    /// A view of a copy of `data`, of any type.
    explicit ContactAuxiliaryData(const AuxiliaryData &data);
    ContactAuxiliaryData(const ContactAuxiliaryData &other);
    /// Moves the value; `other` becomes a new, empty record.
    ContactAuxiliaryData(ContactAuxiliaryData &&other) noexcept;
    ContactAuxiliaryData &operator=(const ContactAuxiliaryData &other);
    ContactAuxiliaryData &operator=(ContactAuxiliaryData &&other) noexcept;
    ~ContactAuxiliaryData();

    /// Swaps the values without a copy.
    void swap(ContactAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(ContactAuxiliaryData &left, ContactAuxiliaryData &right) noexcept { left.swap(right); }

    /// Id of the contact in the address book.
    [[nodiscard]] QString externalId() const;
    /// Number of the contact's account; 0 when unknown.
    [[nodiscard]] int accountId() const;
    /// Number of the contact in its account; 0 when unknown.
    [[nodiscard]] int contactId() const;

    /// First name.
    [[nodiscard]] QString firstName() const;
    /// Middle name.
    [[nodiscard]] QString middleName() const;
    /// Family name.
    [[nodiscard]] QString lastName() const;
    /// Full name as displayed by the address book.
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
    /// File path of the original photo.
    [[nodiscard]] QString photoPathOriginal() const;
    /// MIME type of the photos.
    [[nodiscard]] QString photoMimeType() const;

    /// True when the contact belongs to the work perimeter.
    [[nodiscard]] bool isWorkContact() const;
    /// Notes about the contact.
    [[nodiscard]] QString notes() const;

    /// A copy of the record.
    [[nodiscard]] AuxiliaryData auxiliaryData() const;
    operator AuxiliaryData() const;

    /// Compares the records.
    bool operator==(const ContactAuxiliaryData &other) const;
    bool operator!=(const ContactAuxiliaryData &other) const;

private:
    friend class ContactAuxiliaryDataPrivate;
    ValuePointer<ContactAuxiliaryDataPrivate> d;
};

/// For debugging: numbers and full name; other values are private.
PLACES_EXPORT QDebug operator<<(QDebug debug, const ContactAuxiliaryData &contact);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::ContactAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::ContactAuxiliaryData)
