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

    /// Has these groups shown, in this order. Their answers are outstanding from now on. What was found in them before
    /// stays until setGroup() replaces it; other groups go.
    /// @param category the category whose places SearchResultGroup::Categories shows.
    void setGroups(const QList<Group> &groups, const QString &category = {});
    /// Shows what a group found. The current place stays current when it is still there.
    void setGroup(const vela::platform::places::SearchResult &result);
    /// Has rows say how far from here they are; not valid for no distances.
    void setCentre(const vela::platform::places::Coordinates &centre) { m_centre = centre; }

    /// Acts on the current place, else on the first one. False when an outstanding answer can change which that is;
    /// then nothing was done.
    bool activate();
    /// Makes a place current if it is there, without placeChosen().
    void setCurrentPlace(const AnyPlace &place);
    /// All places that are shown.
    [[nodiscard]] QVector<AnyPlace> places() const;
    /// Text to show when there is no place.
    void setEmptyText(const QString &text);
    [[nodiscard]] QString emptyText() const { return m_emptyText; }

Q_SIGNALS:
    /// The user has moved to a place, or to a category.
    void placeChosen(const ResultList::AnyPlace &place);
    /// The user wants to see the places of a category.
    void categoryChosen(const QString &category);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Found
    {
        QList<AnyPlace> places;
        bool hasMore = false;
        bool isFresh = false; ///< False while an answer is outstanding.
    };

    void rebuild();
    void addHeading(Group group);
    void addPlace(const AnyPlace &place);
    void choose(int row);
    void activatePlace(const AnyPlace &place);
    [[nodiscard]] int firstRow() const;
    [[nodiscard]] bool isFresh(const AnyPlace &place) const;
    [[nodiscard]] bool isFirstKnown() const;
    [[nodiscard]] bool isComplete() const;

    QList<Group> m_groups;
    QString m_category;
    vela::platform::places::Coordinates m_centre;
    QMap<Group, Found> m_found;
    QVector<AnyPlace> m_rows; ///< The place of each row; null for a heading.
    AnyPlace m_current;
    QString m_emptyText;
};
