// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/SearchResult.h>

#include <QtCore/QMap>
#include <QtCore/QSharedPointer>
#include <QtCore/QVector>
#include <QtWidgets/QListWidget>

/// The results of a search by group, under headings. A place that several groups contain is shown in the first of them.
class ResultList : public QListWidget
{
    Q_OBJECT
public:
    using AnyPlace = QSharedPointer<vela::platform::places::AbstractPlace>;
    using Group = vela::platform::places::SearchResultGroup::Type;

    explicit ResultList(QWidget *parent = nullptr);

    /// Sets the groups and their order; their answers are now outstanding. Earlier results stay until setGroup()
    /// replaces them; other groups are removed.
    /// @param category the category of the places in SearchResultGroup::Categories.
    void setGroups(const QList<Group> &groups, const QString &category = {});
    /// Shows the results of a group. The current place stays current if it is among them.
    void setGroup(const vela::platform::places::SearchResult &result);
    /// Sets the position for distances in rows; invalid for none.
    void setCentre(const vela::platform::places::Coordinates &centre) { m_centre = centre; }

    /// Activates the current place, else the first one. Does nothing and returns false when an outstanding answer can
    /// change that place.
    bool activate();
    /// Makes a place current if it is in the list, without placeChosen().
    void setCurrentPlace(const AnyPlace &place);
    /// All shown places.
    [[nodiscard]] QVector<AnyPlace> places() const;
    /// Text to show without places.
    void setEmptyText(const QString &text);
    [[nodiscard]] QString emptyText() const { return m_emptyText; }

Q_SIGNALS:
    /// The user moved to a place or a category.
    void placeChosen(const ResultList::AnyPlace &place);
    /// The user activated a category.
    void categoryChosen(const QString &category);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Found
    {
        QList<AnyPlace> places;
        bool hasMore = false;
        bool isFresh = false; ///< False while the answer is outstanding.
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
    QVector<AnyPlace> m_rows; ///< Place of each row; null for a heading.
    AnyPlace m_current;
    QString m_emptyText;
};
