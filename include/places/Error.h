// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>
#include <QtCore/QString>

namespace vela::platform::places
{

/// The outcome of an operation. Operations return it or write it through an `Error::Type *`, which may be null.
struct PLACES_EXPORT Error
{
    Q_GADGET
public:
    enum Type : int
    {
        Success = 0,             ///< 0: done.
        Unspecified = 1,         ///< 1: failed without a more specific error.
        RefusedList = 2,         ///< 2: a member of a list is not acceptable; nothing was sent.
        InvalidArgument = 3,     ///< 3: an argument is not acceptable; nothing was sent and nothing changed.
        Reserved = 4,            ///< 4: never reported.
        NotFound = 5,            ///< 5: there is no such place.
        AlreadyStored = 6,       ///< 6: the place is stored already.
        PermissionDenied = 7,    ///< 7: the caller may not do this.
        CommunicationFailed = 8, ///< 8: the request could not be encoded or sent, or the reply could not be read.
        ServiceUnavailable = 9,  ///< 9: no places service is running.
        PlaceNotAcceptable = 10, ///< 10: the service does not accept this place.
        StorageFailed = 11,      ///< 11: the service could not read or write its store.
        LimitExceeded = 12,      ///< 12: the request is larger than the service allows.
        Busy = 13,               ///< 13: the service is overloaded; a retry may succeed.
        TimedOut = 14,           ///< 14: the service took too long and cancelled the request.
        NotUnderstood = 15,      ///< 15: the service does not know this request.
        ProviderFailed = 16,     ///< 16: a provider of remote places failed.
        BackupFailed = 17,       ///< 17: the backup was not made; an earlier file is untouched.
        RestoreFailed = 18,      ///< 18: the backup could not be restored; the store is untouched.
    };
    Q_ENUM(Type)

    /// Why the last request of the calling thread failed, as reported by the service: one line of English text for
    /// people, at most 1,024 characters, without control characters. Only the next request of this thread changes it,
    /// so call it right after the failed call. SearchResult::reason() and reason() of the other replies give the same
    /// for requests on other threads.
    /// @param error the error of that call. There is no reason for any other error.
    /// @return empty without a request, and when the service gave no reason. Do not base program logic on it.
    [[nodiscard]] static QString reason(Type error);
};

/// Meaning of an error: an English phrase for people, such as "no places service is running", to show alone or before
/// Error::reason(). Never empty; "failed" for an unknown number.
[[nodiscard]] PLACES_EXPORT QString errorString(Error::Type error);

} // namespace vela::platform::places
