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
    QByteArray name; ///< In capitals, without the group.
    /// By names in capitals, unquoted; the last of several with the same name.
    QMap<QByteArray, QByteArray> parameters;
    QByteArray value; ///< Not decoded.
    QByteArray text;  ///< The whole line.
};

/// Purpose of an address of a card.
enum class CardAddressKind
{
    Home = 1,
    Work = 2,
    Other = 3,
};

/// A location of a card: an address, a position, or both.
struct CardAddress
{
    CardAddressKind kind = CardAddressKind::Other;
    vela::platform::places::Location location;
};

/// A vCard of version 2.1, 3 or 4 as the source of places.
class VCard
{
public:
    /// @param text one whole card, within the limits of splitVCards().
    explicit VCard(const QByteArray &text);

    [[nodiscard]] const KContacts::Addressee &contact() const { return m_contact; }
    /// All lines except BEGIN and END, in order.
    [[nodiscard]] const QVector<VCardLine> &lines() const { return m_lines; }

    /// The formatted name; if it is empty the organization, then the nickname. Empty when the card has none of them.
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString note() const;
    /// The UID of the card; empty when it has none.
    [[nodiscard]] QString uid() const;
    /// The texts of a list property from all its lines, without duplicates.
    [[nodiscard]] QStringList texts(const char *property) const;
    /// The addresses that have content, or the position of the card when there is no address. A single address without
    /// a position gets the position of the card.
    [[nodiscard]] QVector<CardAddress> addresses() const;
    /// The position of the card itself; invalid when it has none.
    [[nodiscard]] vela::platform::places::Coordinates position() const;

private:
    KContacts::Addressee m_contact;
    QVector<VCardLine> m_lines;
};

/// The text of an escaped value.
QString unescaped(const QByteArray &value);

} // namespace formats
