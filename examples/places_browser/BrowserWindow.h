// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/AuxiliaryDataReply.h>
#include <places/PlaceSearchManager.h>
#include <places/PlaceStorageManager.h>
#include <places/PlaceStoreWatcher.h>
#include <places/SearchManager.h>

#include <QtCore/QTimer>
#include <QtWidgets/QMainWindow>

class QLabel;
class QLineEdit;
class QTextBrowser;
class QToolButton;
class ResultList;
class WorldMap;

/// Searches places while the user types, and shows the chosen one. The arrow keys move in the list while the text field
/// has the focus. Return activates the current place, else the first one, when the search is answered; for a category
/// it shows its places. Escape leaves the category or clears the search. Ctrl+D toggles the favourite. The search is
/// repeated when stored places change and, while the service is unavailable, every two seconds.
class BrowserWindow : public QMainWindow
{
    Q_OBJECT
public:
    BrowserWindow();

    /// Sets the centre of searches and distances.
    void setCentre(const vela::platform::places::Coordinates &centre);
    /// Searches for a term and chooses the first place.
    void searchAndChoose(const QString &term);
    /// True when no answer is outstanding.
    [[nodiscard]] bool isComplete() const { return !m_isSearching && !m_isLoading; }

Q_SIGNALS:
    /// A request was answered or has failed.
    void progressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using AnyPlace = QSharedPointer<vela::platform::places::AbstractPlace>;
    using FullPlace = QSharedPointer<vela::platform::places::Place>;
    using Reply = vela::platform::places::PlaceStorageReply;

    QWidget *makeListSide();
    QWidget *makePlaceSide();
    void connectActions();
    /// The user changed the term.
    void edit();
    void pressReturn();
    void searchCategory(const QString &category);
    void search();
    void finishSearch();
    void takeGroup(vela::platform::places::Error::Type error, const vela::platform::places::SearchResult &result,
                   bool last);
    void choose(const AnyPlace &place);
    void takeReply(const Reply &reply);
    void takePlace(const Reply &reply);
    void loadRecords(const FullPlace &place);
    void takeRecords(const QList<vela::platform::places::AuxiliaryDataReply> &replies);
    void toggleFavorite();
    void takeFavorite(const Reply &reply);
    void present(const AnyPlace &place, const QList<vela::platform::places::AuxiliaryData> &records);
    void report(vela::platform::places::Error::Type error);
    void endLoading();

    vela::platform::places::SearchManager m_searches;
    vela::platform::places::PlaceSearchManager m_records;
    vela::platform::places::PlaceStorageManager m_storage;
    vela::platform::places::PlaceStoreWatcher m_watcher;
    AnyPlace m_shown;                                          ///< Null when no place is chosen.
    QList<vela::platform::places::AuxiliaryData> m_ownRecords; ///< Records that came with the place.
    QString m_category; ///< Category of the searched places; empty during a search by term.
    vela::platform::places::Coordinates m_centre;
    QTimer m_retry;
    int m_searchId = 0;
    bool m_isSearching = false;
    bool m_isLoading = false;
    bool m_isReturnWaiting = false;   ///< Return was pressed before the current place is known.
    bool m_isFavoriteOfShown = false; ///< Whether the favourite being changed is the shown place.
    QString m_searchStatus;
    vela::platform::places::Error::Type m_searchError = vela::platform::places::Error::Success;

    // Owned by the window.
    QLineEdit *m_term = nullptr;
    ResultList *m_list = nullptr;
    WorldMap *m_map = nullptr;
    QLabel *m_title = nullptr;
    QToolButton *m_star = nullptr;
    QTextBrowser *m_text = nullptr;
    QLabel *m_status = nullptr;
};
