// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Location.h>

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <kcontacts/addressee.h>

namespace formats
{

/// A line of a card (RFC 6350), unfolded.
struct VCardLine
{
    QByteArray name;                         ///< In capitals, without the group.
    QMap<QByteArray, QByteArray> parameters; ///< By names in capitals; of several of one name the last, unquoted.
    QByteArray value;                        ///< As it is written.
    QByteArray text;                         ///< The whole line.
};

/// What an address of a card is for.
enum class CardAddressKind
{
    Home = 1,
    Work = 2,
    Other = 3,
};

/// One whereabouts of a card: an address, a position, or both.
struct CardAddress
{
    CardAddressKind kind = CardAddressKind::Other;
    vela::platform::places::Location location;
};

/// A vCard of version 2.1, 3 or 4, as a places program sees it.
class VCard
{
public:
    /// @param text one whole card, within the limits of splitVCards().
    explicit VCard(const QByteArray &text);

    [[nodiscard]] const KContacts::Addressee &contact() const { return m_contact; }
    /// Lines but for BEGIN and END, in their order.
    [[nodiscard]] const QVector<VCardLine> &lines() const { return m_lines; }

    /// The formatted name, else the organization, else the nickname; empty when it has none of them.
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString note() const;
    /// The identifier that the card gives itself; empty when it has none.
    [[nodiscard]] QString uid() const;
    /// The texts of all lines of a property that is a list.
    [[nodiscard]] QStringList texts(const char *property) const;
    /// Its addresses that say something; without any, its position. An only address has the position of its card when
    /// it has none of its own.
    [[nodiscard]] QVector<CardAddress> addresses() const;
    /// The position of the card, whatever addresses it has; invalid when it has none.
    [[nodiscard]] vela::platform::places::Coordinates position() const;

private:
    KContacts::Addressee m_contact;
    QVector<VCardLine> m_lines;
};

/// The text of an escaped value, or of an escaped parameter (RFC 6868).
QString unescaped(const QByteArray &value);

} // namespace formats
