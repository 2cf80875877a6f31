// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Error.h"

#include "protocol/ErrorPrivate.h"
#include "protocol/ProtocolTypes.h"
#include "protocol/ReasonText.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vela::platform::places
{

namespace
{

struct Text
{
    Error::Type error;
    const char *english;
};

constexpr Text TEXTS[] = {
    {Error::Success, "done"},
    {Error::Unspecified, "failed"},
    {Error::RefusedList, "a member of the list is not valid"},
    {Error::InvalidArgument, "not possible with these arguments"},
    {Error::Reserved, "failed with an error that is not in use"},
    {Error::NotFound, "there is no such place"},
    {Error::AlreadyStored, "stored already"},
    {Error::PermissionDenied, "not permitted"},
    {Error::CommunicationFailed, "the places service could not be understood"},
    {Error::ServiceUnavailable, "no places service is running"},
    {Error::PlaceNotAcceptable, "the places service does not take such a place"},
    {Error::StorageFailed, "the places service could not read or write its store"},
    {Error::LimitExceeded, "more than the places service allows"},
    {Error::Busy, "the places service is busy"},
    {Error::TimedOut, "the places service took too long"},
    {Error::NotUnderstood, "the places service does not know this request"},
    {Error::ProviderFailed, "a provider of places failed"},
    {Error::BackupFailed, "the backup was not made"},
    {Error::RestoreFailed, "the backup was not restored"},
};

struct Failure
{
    Error::Type error = Error::Success;
    unsigned int size = 0;
    std::array<char, orix_places_protocol::REASON_SIZE> utf8 = {};
};

/// Plain bytes without a destructor: they live as long as their thread, also for a static object that calls the service
/// at the end of the process.
thread_local Failure failure;

} // namespace

void ErrorPrivate::clear()
{
    failure.error = Error::Success;
    failure.size = 0;
}

void ErrorPrivate::set(Error::Type error, const char *utf8, unsigned int size)
{
    failure.error = error;
    failure.size = std::min(size, orix_places_protocol::REASON_SIZE);
    std::copy_n(utf8, failure.size, failure.utf8.data());
}

QString Error::reason(Type error)
{
    if (error != failure.error || failure.size == 0)
        return {};
    return orix_places_protocol::lineOf(failure.utf8.data(), static_cast<int>(failure.size));
}

QString errorString(Error::Type error)
{
    const auto *const found =
        std::find_if(std::begin(TEXTS), std::end(TEXTS), [error](const Text &text) { return text.error == error; });
    // A newer service or library may report an error without a text here.
    return QLatin1String((found == std::end(TEXTS) ? TEXTS[Error::Unspecified] : *found).english);
}

} // namespace vela::platform::places
