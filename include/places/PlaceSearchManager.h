// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryDataReply.h>
#include <places/AuxiliaryDataRequest.h>
#include <places/Global.h>
#include <places/Provider.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

namespace vela::platform::places
{

class PlaceSearchManagerPrivate;

/// Fetches auxiliary data of places in the background, and knows the providers of such data.
///
/// A manager belongs to the thread it lives in, which needs an event loop: its functions are called there and its
/// signal is emitted there, however a slot is connected. Two threads of its own ask the places service; they read the
/// place of a request, which must not change until its reply came. A manager may be destroyed at any moment, also by a
/// slot of its signal; that waits for the answers that the service owes it, 30 seconds at the most.
class PLACES_EXPORT PlaceSearchManager : public QObject
{
    Q_OBJECT
public:
    explicit PlaceSearchManager(QObject *parent = nullptr);
    /// Requests that are not answered yet never will be.
    ~PlaceSearchManager() override;

    /// Fetches data for each of these requests. An empty list is accepted and reports nothing.
    /// @param tag a value of the caller's own that comes back with every reply and names the requests to cancel().
    /// @return Error::Success, or Error::RefusedList when a request is not valid; then none of them is carried out.
    [[nodiscard]] int requestAuxiliaryData(const QList<AuxiliaryDataRequest> &requests, const QVariant &tag);

    /// Drops every request with this tag: none of them is reported any more.
    void cancel(const QVariant &tag);

    /// The providers of places and of auxiliary data; empty when the service could not be asked. The service is asked
    /// once in the life of the process, by the first call, which waits for the answer. Safe on any thread.
    [[nodiscard]] static QList<Provider> getSupportedProviders();

    /// Those of them that can be asked for auxiliary data of a type. The case of the letters counts.
    [[nodiscard]] static QList<Provider> findProviders(const QString &dataType);

Q_SIGNALS:
    /// A request was carried out; AuxiliaryDataReply::status() says how.
    /// @param replies the one reply to it.
    /// @param last true when no request with this tag is left to be carried out.
    void auxiliaryDataAvailable(const QList<vela::platform::places::AuxiliaryDataReply> &replies, const QVariant &tag,
                                bool last);

private:
    const std::unique_ptr<PlaceSearchManagerPrivate> d;
};

} // namespace vela::platform::places
