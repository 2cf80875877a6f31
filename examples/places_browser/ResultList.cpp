// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ResultList.h"

#include "RowText.h"

#include <QtCore/QSignalBlocker>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyledItemDelegate>

#include <algorithm>

using namespace vela::platform::places;

namespace
{

constexpr int MARGIN = 8;
constexpr int WHERE = Qt::UserRole;
constexpr int IS_FAVORITE = Qt::UserRole + 1;
constexpr int DISTANCE = Qt::UserRole + 2;

const char *headingOf(SearchResultGroup::Type group)
{
    switch (group) {
    case SearchResultGroup::Favorites:
        return "Favourites";
    case SearchResultGroup::NonContacts:
        return "Saved places";
    case SearchResultGroup::Contacts:
        return "Contacts";
    case SearchResultGroup::CategorySuggestions:
        return "Categories";
    case SearchResultGroup::Remote:
        return "More places";
    case SearchResultGroup::Addresses:
        return "By address";
    default:
        return "Others";
    }
}

/// True when both look like the same place. One of them may have been stored in the meantime.
bool isSame(const AbstractPlace &a, const AbstractPlace &b)
{
    if (a.isPersisted() && b.isPersisted())
        return a.id() == b.id();
    return a.name() == b.name() && a.primaryLocation() == b.primaryLocation()
           && a.primaryCoordinates() == b.primaryCoordinates();
}

/// Draws a place as its name above its address, with a star for a favourite; draws a heading on one line.
class PlaceDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const int line = option.fontMetrics.height();
        return {0, isHeading(index) ? line + 2 * MARGIN : 2 * line + MARGIN};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        painter->save();
        isHeading(index) ? paintHeading(*painter, option, index) : paintPlace(*painter, option, index);
        painter->restore();
    }

private:
    static bool isHeading(const QModelIndex &index) { return !index.flags().testFlag(Qt::ItemIsSelectable); }

    static void paintHeading(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index)
    {
        QFont bold = option.font;
        bold.setBold(true);
        painter.setFont(bold);
        painter.setPen(option.palette.color(QPalette::Active, QPalette::PlaceholderText));
        const QRect room = option.rect.adjusted(MARGIN, 0, -MARGIN, -MARGIN / 2);
        drawLine(painter, room, Qt::AlignBottom, index.data().toString());
    }

    static void paintPlace(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index)
    {
        const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
        if (isCurrent)
            painter.fillRect(option.rect, option.palette.highlight());
        const QColor text = option.palette.color(isCurrent ? QPalette::HighlightedText : QPalette::Text);
        QRect room = option.rect.adjusted(2 * MARGIN, MARGIN / 2, -MARGIN, -MARGIN / 2);
        painter.setPen(text);
        if (index.data(IS_FAVORITE).toBool()) {
            painter.drawText(room, Qt::AlignRight | Qt::AlignTop, QStringLiteral("\u2605"));
            room.setRight(room.right() - 2 * MARGIN);
        }
        drawLine(painter, room, Qt::AlignTop, index.data().toString());
        painter.setPen(isCurrent ? text : option.palette.color(QPalette::PlaceholderText));
        const QString distance = index.data(DISTANCE).toString();
        painter.drawText(room, Qt::AlignRight | Qt::AlignBottom, distance);
        if (!distance.isEmpty())
            room.setRight(room.right() - option.fontMetrics.horizontalAdvance(distance) - MARGIN);
        drawLine(painter, room, Qt::AlignBottom, index.data(WHERE).toString());
    }

    static void drawLine(QPainter &painter, const QRect &room, Qt::Alignment alignment, const QString &text)
    {
        const QString shown = painter.fontMetrics().elidedText(text.simplified(), Qt::ElideRight, room.width());
        painter.drawText(room, static_cast<int>(Qt::AlignLeft | alignment), shown);
    }
};

} // namespace

ResultList::ResultList(QWidget *parent)
    : QListWidget(parent)
{
    setItemDelegate(new PlaceDelegate(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    connect(this, &QListWidget::currentRowChanged, this, &ResultList::choose);
    // Queued: the click still needs the item.
    const auto activateLater = [this](QListWidgetItem *item) {
        QTimer::singleShot(0, this, [this, place = m_rows.value(row(item))] { activatePlace(place); });
    };
    connect(this, &QListWidget::itemClicked, this, activateLater);
    connect(this, &QListWidget::itemActivated, this, activateLater);
}

void ResultList::setGroups(const QList<Group> &groups, const QString &category)
{
    if (category != m_category)
        m_found.remove(SearchResultGroup::Categories);
    m_groups = groups;
    m_category = category;
    for (Found &found : m_found)
        found.isFresh = false;
    rebuild();
}

void ResultList::setGroup(const SearchResult &result)
{
    m_found[result.source()] = {result.result(), result.handle().hasMoreData(), true};
    rebuild();
}

bool ResultList::activate()
{
    const int row = currentRow();
    const bool isCurrent = row >= 0 && isFresh(m_rows[row]);
    // The current place may still come in an outstanding answer.
    if (!isCurrent && (m_current ? !isComplete() : !isFirstKnown()))
        return false;
    if (!isCurrent)
        setCurrentRow(firstRow());
    activatePlace(m_current);
    return true;
}

void ResultList::activatePlace(const AnyPlace &place)
{
    if (place && isCategory(*place))
        Q_EMIT categoryChosen(place->name());
}

int ResultList::firstRow() const
{
    const auto first = std::find_if(m_rows.begin(), m_rows.end(), [](const AnyPlace &place) { return place; });
    return first == m_rows.end() ? -1 : static_cast<int>(first - m_rows.begin());
}

bool ResultList::isFresh(const AnyPlace &place) const
{
    return std::any_of(m_groups.begin(), m_groups.end(), [&](Group group) {
        const Found found = m_found.value(group);
        return found.isFresh && found.places.contains(place);
    });
}

bool ResultList::isFirstKnown() const
{
    const auto decides = std::find_if(m_groups.begin(), m_groups.end(), [this](Group group) {
        const Found found = m_found.value(group);
        return !found.isFresh || !found.places.isEmpty();
    });
    return decides == m_groups.end() || m_found.value(*decides).isFresh;
}

bool ResultList::isComplete() const
{
    return std::all_of(m_groups.begin(), m_groups.end(), [this](Group group) { return m_found.value(group).isFresh; });
}

void ResultList::setCurrentPlace(const AnyPlace &place)
{
    m_current = place;
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](const AnyPlace &other) {
        return other && m_current && isSame(*other, *m_current);
    });
    const QSignalBlocker noChoice(this);
    setCurrentRow(row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin()));
}

QVector<ResultList::AnyPlace> ResultList::places() const
{
    QVector<AnyPlace> places = m_rows;
    places.removeAll(AnyPlace());
    return places;
}

void ResultList::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void ResultList::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    if (!m_rows.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN),
                     static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, m_emptyText);
}

void ResultList::rebuild()
{
    const int scrolled = verticalScrollBar()->value();
    {
        const QSignalBlocker noChoice(this);
        clear();
    }
    m_rows.clear();
    for (const Group group : qAsConst(m_groups)) {
        const int heading = m_rows.size();
        for (const AnyPlace &place : m_found.value(group).places) {
            const auto isIt = [&](const AnyPlace &other) { return other && isSame(*other, *place); };
            if (std::any_of(m_rows.begin(), m_rows.end(), isIt))
                continue;
            if (heading == m_rows.size())
                addHeading(group);
            addPlace(place);
        }
    }
    setCurrentPlace(m_current);
    verticalScrollBar()->setValue(scrolled);
}

void ResultList::addHeading(Group group)
{
    const Found found = m_found.value(group);
    QString heading = group == SearchResultGroup::Categories ? m_category : QString::fromLatin1(headingOf(group));
    if (found.hasMore)
        heading += QStringLiteral(", the first %1").arg(found.places.size());
    auto *item = new QListWidgetItem(heading, this);
    item->setFlags(Qt::NoItemFlags);
    m_rows.append(AnyPlace());
}

void ResultList::addPlace(const AnyPlace &place)
{
    auto *item = new QListWidgetItem(nameText(*place), this);
    item->setData(WHERE, whereText(*place));
    item->setData(DISTANCE, distanceText(*place, m_centre));
    item->setData(IS_FAVORITE, place->isFavorite());
    m_rows.append(place);
}

void ResultList::choose(int row)
{
    m_current = m_rows.value(row);
    if (m_current)
        Q_EMIT placeChosen(m_current);
}
