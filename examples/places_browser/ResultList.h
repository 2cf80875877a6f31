// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/SearchResult.h>

#include <QtCore/QMap>
#include <QtCore/QSharedPointer>
#include <QtCore/QVector>
#include <QtWidgets/QListWidget>

/// What a search found, group by group under headings. A place that several groups found stands in the first of them.
class ResultList : public QListWidget
{
    Q_OBJECT
public:
    using AnyPlace = QSharedPointer<vela::platform::places::AbstractPlace>;
    using Group = vela::platform::places::SearchResultGroup::Type;

    explicit ResultList(QWidget *parent = nullptr);

    /// Has these groups shown, in this order. What was found in them before stays until setGroup() replaces it; other
    /// groups go.
    void setGroups(const QList<Group> &groups);
    /// Shows what a group found. The current place stays current when it is still there.
    void setGroup(const vela::platform::places::SearchResult &result);

    /// Makes the first place current.
    void chooseFirst();
    /// Makes a place current if it is there, without placeChosen().
    void setCurrentPlace(const AnyPlace &place);
    /// All places that are shown.
    [[nodiscard]] QVector<AnyPlace> places() const;
    /// Text to show when there is no place.
    void setEmptyText(const QString &text);

Q_SIGNALS:
    /// The user has moved to a place.
    void placeChosen(const ResultList::AnyPlace &place);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void rebuild();
    void addHeading(Group group);
    void addPlace(const AnyPlace &place);
    void choose(int row);

    QList<Group> m_groups;
    QMap<Group, QList<AnyPlace>> m_found;
    QVector<AnyPlace> m_rows; ///< The place of each row; null for a heading.
    AnyPlace m_current;
    QString m_emptyText;
};
