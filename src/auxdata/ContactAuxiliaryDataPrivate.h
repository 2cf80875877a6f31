// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "auxdata/AuxiliaryDataPrivate.h"
#include "places/ContactAuxiliaryData.h"

namespace vela::platform::places
{

/// Reads and writes the keys of a contact record. Only some keys are also read in their legacy form.
class ContactAuxiliaryDataPrivate
{
public:
    ContactAuxiliaryDataPrivate();
    explicit ContactAuxiliaryDataPrivate(const AuxiliaryData &data);

    static ContactAuxiliaryDataPrivate *privateFromPublic(ContactAuxiliaryData *contact) { return contact->d.get(); }

    const AuxiliaryData &auxiliaryData() const { return m_data; }

    QString externalId() const { return m_data.externalId(); }
    void setExternalId(const QString &externalId) { m_data.setExternalId(externalId); }
    int accountId() const { return legacyNumber(QStringLiteral("accountId")); }
    int contactId() const { return legacyNumber(QStringLiteral("contactId")); }

    QString fax() const { return legacyText(QStringLiteral("fax")); }
    void setFax(const QString &value) { setText(QStringLiteral("fax"), value); }
    QString firstName() const { return text(QStringLiteral("firstName")); }
    void setFirstName(const QString &value) { setText(QStringLiteral("firstName"), value); }
    QString middleName() const { return text(QStringLiteral("middleName")); }
    void setMiddleName(const QString &value) { setText(QStringLiteral("middleName"), value); }
    QString lastName() const { return text(QStringLiteral("lastName")); }
    void setLastName(const QString &value) { setText(QStringLiteral("lastName"), value); }
    QString fullName() const { return text(QStringLiteral("fullName")); }
    void setFullName(const QString &value) { setText(QStringLiteral("fullName"), value); }
    QString homePhone() const { return text(QStringLiteral("homePhone")); }
    void setHomePhone(const QString &value) { setText(QStringLiteral("homePhone"), value); }
    QString mobilePhone() const { return text(QStringLiteral("mobilePhone")); }
    void setMobilePhone(const QString &value) { setText(QStringLiteral("mobilePhone"), value); }
    QString workPhone() const { return text(QStringLiteral("workPhone")); }
    void setWorkPhone(const QString &value) { setText(QStringLiteral("workPhone"), value); }
    QString title() const { return text(QStringLiteral("title")); }
    void setTitle(const QString &value) { setText(QStringLiteral("title"), value); }
    QString company() const { return text(QStringLiteral("company")); }
    void setCompany(const QString &value) { setText(QStringLiteral("company"), value); }
    QString emailAddress() const { return text(QStringLiteral("email")); }
    void setEmailAddress(const QString &value) { setText(QStringLiteral("email"), value); }
    QString photoPathSmall() const { return legacyText(QStringLiteral("photosmall")); }
    void setPhotoPathSmall(const QString &value) { setText(QStringLiteral("photosmall"), value); }
    QString photoPathLarge() const { return legacyText(QStringLiteral("photolarge")); }
    void setPhotoPathLarge(const QString &value) { setText(QStringLiteral("photolarge"), value); }
    QString photoPathOriginal() const { return legacyText(QStringLiteral("photoOriginal")); }
    void setPhotoPathOriginal(const QString &value) { setText(QStringLiteral("photoOriginal"), value); }
    QString photoMimeType() const { return legacyText(QStringLiteral("photomime")); }
    void setPhotoMimeType(const QString &value) { setText(QStringLiteral("photomime"), value); }
    QString notes() const { return legacyText(QStringLiteral("notes")); }

    QUrl url() const { return QUrl(legacyText(QStringLiteral("url"))); }
    void setUrl(const QUrl &url) { setText(QStringLiteral("url"), url.toString()); }
    bool isWorkContact() const { return legacyText(QStringLiteral("workPerimeter")) == QLatin1String("1"); }
    void setWorkContact(bool isWork);

private:
    QString text(const QString &key) const { return m_data.property(key); }
    QString legacyText(const QString &key) const;
    int legacyNumber(const QString &key) const;
    void setText(const QString &key, const QString &value) { m_data.addProperty(key, value); }

    AuxiliaryData m_data;
};

} // namespace vela::platform::places
