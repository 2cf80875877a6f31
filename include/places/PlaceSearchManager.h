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

/// Fetches auxiliary data of places in the background, and lists the providers of such data.
///
/// Call all functions on the manager's thread, which needs an event loop; the signal is emitted there for every
/// connection type. Two threads of the manager call the places service. They read the place of a request, so do not
/// change it before the reply. The manager may be destroyed at any time, also by a slot of its signal; the destructor
/// waits for outstanding replies of the service, at most 30 seconds.
class PLACES_EXPORT PlaceSearchManager : public QObject
{
    Q_OBJECT
public:
    explicit PlaceSearchManager(QObject *parent = nullptr);
    /// Cancels all requests without a reply.
    ~PlaceSearchManager() override;

    /// Fetches data for each request. An empty list is accepted and reports nothing.
    /// @param tag a value of the caller, returned with each reply and used by cancel().
    /// @return Error::Success, or Error::RefusedList when a request is not valid; then none of them is sent.
    [[nodiscard]] int requestAuxiliaryData(const QList<AuxiliaryDataRequest> &requests, const QVariant &tag);

    /// Cancels all requests with this tag; they are not reported.
    void cancel(const QVariant &tag);

    /// The providers of places and of auxiliary data; empty on failure. The first call in a process asks the service
    /// and blocks; later calls return the same result. Thread-safe.
    [[nodiscard]] static QList<Provider> getSupportedProviders();

    /// Providers with auxiliary data of a type. The comparison is case-sensitive.
    [[nodiscard]] static QList<Provider> findProviders(const QString &dataType);

Q_SIGNALS:
    /// Reports a request; AuxiliaryDataReply::status() is its outcome.
    /// @param replies one reply to one request.
    /// @param last true when no other request with this tag is outstanding.
    void auxiliaryDataAvailable(const QList<vela::platform::places::AuxiliaryDataReply> &replies, const QVariant &tag,
                                bool last);

private:
    const std::unique_ptr<PlaceSearchManagerPrivate> d;
};

} // namespace vela::platform::places
