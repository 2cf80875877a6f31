// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceRecords.h"

#include "formats/JsonWriter.h"
#include "PlaceView.h"

#include <places/AuxiliaryDataReply.h>
#include <places/AuxiliaryDataRequest.h>
#include <places/Place.h>
#include <places/PlaceManager.h>
#include <places/PlaceSearchManager.h>

#include <QtCore/QEventLoop>

#include <cstdio>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Sends one request and waits for the answer in an event loop.
AuxiliaryDataReply fetch(const AuxiliaryDataRequest &request)
{
    AuxiliaryDataReply reply;
    PlaceSearchManager manager;
    QEventLoop loop;
    QObject::connect(&manager, &PlaceSearchManager::auxiliaryDataAvailable, &loop,
                     [&](const QList<AuxiliaryDataReply> &replies) {
                         reply = replies.first();
                         loop.quit();
                     });
    if (manager.requestAuxiliaryData({request}, {}) == Error::Success)
        loop.exec(); // A refused request has no answer.
    return reply;
}

void printRecords(const QList<AuxiliaryData> &records, Form form)
{
    if (form == Form::Table) {
        for (const AuxiliaryData &record : records)
            std::fputs(qUtf8Printable(viewOf(record)), stdout);
        if (records.isEmpty())
            reportNoneShown(false);
        return;
    }
    JsonWriter out;
    out.array([&] {
        for (const AuxiliaryData &record : records) {
            out.object([&] {
                writeRecord(out, record);
                out.member("provider", record.provider().name());
            });
        }
    });
    printJson(out.result());
}

} // namespace

ExitStatus showRecords(qint64 id, const QString &type, bool onlyRemote, Form form)
{
    const QString what = QStringLiteral("place %1").arg(id);
    Error::Type error = Error::Success;
    const QSharedPointer<AbstractPlace> place(PlaceManager().getPlace(id, &error));
    if (!place)
        return report(error, what);
    AuxiliaryDataRequest request;
    request.setPlace(place);
    request.setDataType(type);
    request.setRemoteDataOnly(onlyRemote);
    const AuxiliaryDataReply reply = fetch(request);
    if (reply.status() == Error::Success)
        printRecords(reply.data(), form);
    return report(reply.status(), what, reply.reason());
}

} // namespace tool
