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

/// Searches places while the user types, and shows the one that is chosen. The arrow keys move in the list wherever one
/// types. Return acts on the current place, else on the first one, once the answer to what was typed is there; on a
/// category it shows the places of it. Escape leaves the category or clears the search, Ctrl+D makes the place a
/// favourite or an ordinary one again. The search is repeated when stored places have changed and, while the service
/// cannot be reached, every two seconds.
class BrowserWindow : public QMainWindow
{
    Q_OBJECT
public:
    BrowserWindow();

    /// Searches near a position from now on, and shows distances from it.
    void setCentre(const vela::platform::places::Coordinates &centre);
    /// Types a term and chooses the first place that it finds.
    void searchAndChoose(const QString &term);
    /// True when nothing that was asked for is missing.
    [[nodiscard]] bool isComplete() const { return !m_isSearching && !m_isLoading; }

Q_SIGNALS:
    /// Something that was asked for has come, or failed.
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
    /// The user has changed the term.
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
    AnyPlace m_shown;                                          ///< Null while none is chosen.
    QList<vela::platform::places::AuxiliaryData> m_ownRecords; ///< Those that came with the place.
    QString m_category; ///< Whose places are searched for; empty when it is the term.
    vela::platform::places::Coordinates m_centre;
    QTimer m_retry;
    int m_searchId = 0;
    bool m_isSearching = false;
    bool m_isLoading = false;
    bool m_isReturnWaiting = false;   ///< Return was pressed before it was known what it acts on.
    bool m_isFavoriteOfShown = false; ///< Whether the favourite that is being changed is still the place that is shown.
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
