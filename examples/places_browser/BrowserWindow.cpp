// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "BrowserWindow.h"

#include "PlaceText.h"
#include "ResultList.h"
#include "RowText.h"
#include "WorldMap.h"

#include <places/Place.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTextBrowser>
#include <QtWidgets/QToolButton>

#include <chrono>

using namespace vela::platform::places;

namespace
{

constexpr int MARGIN = 8;
constexpr char TOGGLE_FAVORITE[] = "Ctrl+D";

/// The groups of stored places, which are also shown without a term.
QList<SearchResultGroup::Type> storedGroups()
{
    return {SearchResultGroup::Favorites, SearchResultGroup::NonContacts, SearchResultGroup::Contacts};
}

/// The groups that a term is searched in.
QList<SearchResultGroup::Type> allGroups()
{
    return storedGroups()
           + QList<SearchResultGroup::Type>{SearchResultGroup::CategorySuggestions, SearchResultGroup::Remote,
                                            SearchResultGroup::Addresses};
}

/// Delay before a failed search is repeated.
constexpr std::chrono::seconds RETRY_INTERVAL(2);

/// Tag of the jobs that fetch a place. Favourite jobs have no tag.
const QString FETCH = QStringLiteral("fetch");

/// True when a retry may succeed.
bool isPassing(Error::Type error)
{
    return error == Error::ServiceUnavailable || error == Error::CommunicationFailed || error == Error::Busy
           || error == Error::TimedOut;
}

/// Keys that move in the list while the text field has the focus.
bool movesInList(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

QString countText(int places)
{
    return places == 1 ? QStringLiteral("1 place") : QStringLiteral("%1 places").arg(places);
}

} // namespace

BrowserWindow::BrowserWindow()
{
    setWindowTitle(QStringLiteral("Places"));
    auto *splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeListSide());
    splitter->addWidget(makePlaceSide());
    splitter->setSizes({340, 680});
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("status"));
    m_status->setContentsMargins(MARGIN, 0, 0, 0);
    statusBar()->addWidget(m_status, 1);
    resize(1020, 680);
    connectActions();
    present({}, {});
    search();
}

// -------------------------------------------------------------------------------------------------------- widgets

QWidget *BrowserWindow::makeListSide()
{
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    m_term = new QLineEdit(side);
    m_term->setObjectName(QStringLiteral("term"));
    m_term->setPlaceholderText(QStringLiteral("Search places"));
    m_term->setClearButtonEnabled(true);
    m_term->installEventFilter(this);
    m_list = new ResultList(side);
    m_list->setObjectName(QStringLiteral("list"));
    layout->addWidget(m_term);
    layout->addWidget(m_list);
    layout->setContentsMargins(MARGIN, MARGIN, 0, 0);
    return side;
}

QWidget *BrowserWindow::makePlaceSide()
{
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    m_map = new WorldMap(side);
    m_title = new QLabel(side);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    m_title->setFont(large);
    m_star = new QToolButton(side);
    m_star->setObjectName(QStringLiteral("star"));
    m_star->setAutoRaise(true);
    m_star->setFont(large);
    m_text = new QTextBrowser(side);
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setOpenExternalLinks(true);
    m_text->viewport()->setBackgroundRole(QPalette::Window);
    auto *heading = new QHBoxLayout;
    heading->addWidget(m_title, 1);
    heading->addWidget(m_star);
    heading->setContentsMargins(MARGIN, 0, 0, 0);
    layout->addWidget(m_map);
    layout->addLayout(heading);
    layout->addWidget(m_text, 1);
    layout->setContentsMargins(0, MARGIN, MARGIN, 0);
    return side;
}

void BrowserWindow::connectActions()
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(RETRY_INTERVAL);
    connect(&m_retry, &QTimer::timeout, this, &BrowserWindow::search);
    connect(m_term, &QLineEdit::textChanged, this, &BrowserWindow::edit);
    connect(m_term, &QLineEdit::returnPressed, this, &BrowserWindow::pressReturn);
    connect(m_list, &ResultList::placeChosen, this, &BrowserWindow::choose);
    connect(m_list, &ResultList::categoryChosen, this, &BrowserWindow::searchCategory);
    connect(m_star, &QToolButton::clicked, this, &BrowserWindow::toggleFavorite);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, m_term, [this] {
        m_category.isEmpty() ? m_term->clear() : edit();
        m_term->setFocus();
    });
    connect(new QShortcut(QKeySequence(QLatin1String(TOGGLE_FAVORITE)), this), &QShortcut::activated, this,
            &BrowserWindow::toggleFavorite);
    connect(&m_searches, &SearchManager::resultAvailable, this, &BrowserWindow::takeGroup);
    connect(&m_records, &PlaceSearchManager::auxiliaryDataAvailable, this, &BrowserWindow::takeRecords);
    connect(&m_storage, &PlaceStorageManager::finished, this, &BrowserWindow::takeReply);
    connect(&m_watcher, &PlaceStoreWatcher::changed, this, &BrowserWindow::search);
}

bool BrowserWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && movesInList(static_cast<QKeyEvent *>(event)->key())) {
        QCoreApplication::sendEvent(m_list, event);
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// ------------------------------------------------------------------------------------------------------ searching

void BrowserWindow::setCentre(const Coordinates &centre)
{
    m_centre = centre;
    m_list->setCentre(centre);
    search();
}

void BrowserWindow::searchAndChoose(const QString &term)
{
    m_term->setText(term);
    pressReturn();
}

void BrowserWindow::edit()
{
    m_isReturnWaiting = false;
    m_category.clear();
    search();
}

void BrowserWindow::pressReturn()
{
    m_isReturnWaiting = !m_list->activate();
}

void BrowserWindow::searchCategory(const QString &category)
{
    m_category = category;
    search();
}

void BrowserWindow::search()
{
    m_retry.stop();
    m_isSearching = true;
    m_searchError = Error::Success;
    const bool isCategory = !m_category.isEmpty();
    const QList<SearchResultGroup::Type> stored = m_term->text().isEmpty() ? storedGroups() : allGroups();
    const QList<SearchResultGroup::Type> groups =
        isCategory ? QList<SearchResultGroup::Type>{SearchResultGroup::Categories} : stored;
    m_list->setGroups(groups, m_category);
    m_searches.search(isCategory ? m_category : m_term->text(), m_centre, ++m_searchId, groups);
}

void BrowserWindow::takeGroup(Error::Type error, const SearchResult &result, bool last)
{
    m_list->setGroup(result);
    if (error != Error::Success)
        m_searchError = error;
    QVector<Coordinates> dots;
    const auto places = m_list->places();
    for (const AnyPlace &place : places)
        dots.append(place->primaryCoordinates());
    m_map->setDots(dots);
    m_isSearching = !last;
    if (last)
        finishSearch();
    if (m_isReturnWaiting)
        pressReturn();
    Q_EMIT progressed();
}

void BrowserWindow::finishSearch()
{
    m_searchStatus = m_searchError == Error::Success ? countText(m_list->places().size()) : errorText(m_searchError);
    m_status->setText(m_searchStatus);
    if (isPassing(m_searchError)) {
        m_list->setEmptyText(m_searchStatus + QStringLiteral(" Trying again ..."));
        m_retry.start();
    } else if (m_searchError != Error::Success) {
        m_list->setEmptyText(m_searchStatus);
    } else {
        m_list->setEmptyText(m_term->text().isEmpty() ? QStringLiteral("Type to search.")
                                                      : QStringLiteral("Nothing found."));
    }
}

// ---------------------------------------------------------------------------------------------------- one place

void BrowserWindow::choose(const AnyPlace &place)
{
    m_isReturnWaiting = false;
    m_isFavoriteOfShown = false;
    m_records.cancel(QVariant());
    m_storage.cancel(FETCH);
    m_status->setText(m_searchStatus);
    present(place, {});
    if (isCategory(*place)) {
        m_star->hide();
        m_status->setText(QStringLiteral("Return shows the places of this category."));
        return endLoading();
    }
    m_isLoading = true;
    m_storage.getPlace(*place, FETCH);
}

void BrowserWindow::takeReply(const Reply &reply)
{
    if (reply.tag() == FETCH)
        takePlace(reply);
    else
        takeFavorite(reply);
}

void BrowserWindow::takePlace(const Reply &reply)
{
    if (reply.status() == Error::Success)
        return loadRecords(reply.place());
    report(reply.status());
    endLoading();
}

void BrowserWindow::loadRecords(const FullPlace &place)
{
    m_ownRecords.clear();
    for (int i = 0; i < place->auxiliaryDataCount(); ++i)
        m_ownRecords.append(place->auxiliaryData(i));
    present(place, m_ownRecords);
    AuxiliaryDataRequest request;
    request.setPlace(place);
    m_records.cancel(QVariant());
    (void)m_records.requestAuxiliaryData({request}, QVariant()); // accepted: the request has a place
}

void BrowserWindow::takeRecords(const QList<AuxiliaryDataReply> &replies)
{
    const AuxiliaryDataReply &reply = replies.first();
    QList<AuxiliaryData> records = m_ownRecords;
    const auto found = reply.data();
    for (const AuxiliaryData &record : found) {
        if (!records.contains(record))
            records.append(record);
    }
    present(reply.place(), records);
    if (reply.status() != Error::Success)
        report(reply.status());
    endLoading();
}

void BrowserWindow::toggleFavorite()
{
    if (!m_shown || isCategory(*m_shown) || !m_star->isEnabled())
        return;
    m_isLoading = true;
    m_isFavoriteOfShown = true;
    m_star->setEnabled(false);
    m_shown->isFavorite() ? m_storage.unfav(*m_shown) : m_storage.fav(*m_shown);
}

void BrowserWindow::takeFavorite(const Reply &reply)
{
    m_star->setEnabled(true);
    if (reply.status() != Error::Success) {
        report(reply.status());
        return m_isFavoriteOfShown ? endLoading() : void();
    }
    if (m_isFavoriteOfShown) {
        m_list->setCurrentPlace(reply.place());
        loadRecords(reply.place());
    }
    search();
}

void BrowserWindow::present(const AnyPlace &place, const QList<AuxiliaryData> &records)
{
    m_shown = place;
    m_map->mark(place ? place->primaryCoordinates() : Coordinates());
    m_star->setVisible(place);
    m_title->setText(place ? place->name().simplified() : QString());
    // Set for each place: the palette may change.
    m_text->document()->setDefaultStyleSheet(
        QStringLiteral(".name { color: %1; text-align: right; padding-right: 8px }")
            .arg(palette().color(QPalette::PlaceholderText).name(QColor::HexArgb)));
    m_text->setHtml(place ? placeText(*place, records) : QString());
    if (!place)
        return;
    m_star->setText(place->isFavorite() ? QStringLiteral("★") : QStringLiteral("☆"));
    m_star->setToolTip(
        (place->isFavorite() ? QStringLiteral("Remove favourite (%1)") : QStringLiteral("Favourite (%1)"))
            .arg(QKeySequence(QLatin1String(TOGGLE_FAVORITE)).toString(QKeySequence::NativeText)));
}

void BrowserWindow::report(Error::Type error)
{
    m_status->setText(errorText(error));
}

void BrowserWindow::endLoading()
{
    m_isLoading = false;
    Q_EMIT progressed();
}
