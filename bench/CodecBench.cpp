// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Ratios.h"

#include "model/PlaceHeaderPrivate.h"
#include "places/PlaceHeader.h"
#include "protocol/PlacesAPIDecoder.h"
#include "protocol/PlacesAPIEncoder.h"
#include "support/SamplePlace.h"

#include <benchmark/benchmark.h>

#include <QtCore/QDataStream>

#include <cstdlib>
#include <iostream>
#include <utility>

using namespace orix_places_protocol;
using namespace vela::platform::places;

namespace
{

// ------------------------------------------------------------------------------------ the same fields as plain structs

struct PlainCoordinate
{
    double numbers[3] = {};
    float accuracies[2] = {};
};

struct PlainLocation
{
    qint64 id = 0;
    int zoom = 0;
    PlainCoordinate coordinate;
    QString before[2];
    int floor = 0;
    QString behind[10];
    QStringList compactLines;
    QStringList extendedLines;
    int virtualType = 0;
    QString virtualData;
    QString geocoded;
    PlainCoordinate box[2];
};

struct PlainRecord
{
    qint64 id = 0;
    QString externalId;
    QString type;
    bool persistable = false;
    QString providerName;
    QString providerUrl;
    bool canRequest = false;
    QStringList types;
    QMap<QString, QString> properties;
};

struct PlainPlace
{
    qint64 id = 0;
    QString texts[3];
    bool isPrivate = false;
    int usageCount = 0;
    QString source;
    qint64 times[4] = {};
    bool isHeader = false;
    qint64 mask = 0;
    int persistence = 0;
    QString term;
    int perimeter = 0;
    int certainty = 0;
    QList<PlainLocation> locations;
    QList<PlainRecord> records;
    QStringList tags;
    QStringList aliases;
    QString primary[5];
};

/// Visits the fields in order: one description for the hand-written codec and QDataStream, in both directions.
template <typename Visitor, typename Coordinate>
void visitCoordinate(Visitor &visitor, Coordinate &coordinate)
{
    for (auto &number : coordinate.numbers)
        visitor(number);
    for (auto &accuracy : coordinate.accuracies)
        visitor(accuracy);
}

template <typename Visitor, typename Location>
void visitLocation(Visitor &visitor, Location &location)
{
    visitor(location.id);
    visitor(location.zoom);
    visitCoordinate(visitor, location.coordinate);
    for (auto &text : location.before)
        visitor(text);
    visitor(location.floor);
    for (auto &text : location.behind)
        visitor(text);
    visitor(location.compactLines);
    visitor(location.extendedLines);
    visitor(location.virtualType);
    visitor(location.virtualData);
    visitor(location.geocoded);
    visitCoordinate(visitor, location.box[0]);
    visitCoordinate(visitor, location.box[1]);
}

template <typename Visitor, typename Record>
void visitRecord(Visitor &visitor, Record &record)
{
    visitor(record.id);
    visitor(record.externalId);
    visitor(record.type);
    visitor(record.persistable);
    visitor(record.providerName);
    visitor(record.providerUrl);
    visitor(record.canRequest);
    visitor(record.types);
    visitor(record.properties);
}

template <typename Visitor, typename List, typename Visit>
void visitList(Visitor &visitor, List &list, Visit visit)
{
    int count = list.size();
    visitor(count);
    if constexpr (Visitor::READS) {
        for (int i = 0; i < count; ++i) {
            list.append(typename List::value_type());
            visit(visitor, list.last());
        }
    } else {
        for (auto &element : std::as_const(list))
            visit(visitor, element);
    }
}

template <typename Visitor, typename Place>
void visitPlace(Visitor &visitor, Place &place)
{
    visitor(place.id);
    for (auto &text : place.texts)
        visitor(text);
    visitor(place.isPrivate);
    visitor(place.usageCount);
    visitor(place.source);
    for (auto &time : place.times)
        visitor(time);
    visitor(place.isHeader);
    visitor(place.mask);
    visitor(place.persistence);
    visitor(place.term);
    visitor(place.perimeter);
    visitor(place.certainty);
    if (place.isHeader) {
        visitor(place.primary[0]);
        if constexpr (Visitor::READS)
            place.locations.append(PlainLocation());
        visitLocation(visitor, Visitor::READS ? place.locations.last() : place.locations.first());
        for (int i = 1; i < 5; ++i)
            visitor(place.primary[i]);
        return;
    }
    visitList(visitor, place.locations, [](auto &v, auto &location) { visitLocation(v, location); });
    visitList(visitor, place.records, [](auto &v, auto &record) { visitRecord(v, record); });
    visitor(place.tags);
    visitor(place.aliases);
}

/// The simplest writer of the wire format.
struct PlainWriter
{
    static constexpr bool READS = false;
    QByteArray bytes;

    void align()
    {
        while (bytes.size() % 4 != 0)
            bytes.append('Z');
    }
    template <typename T>
    void raw(const T &value)
    {
        align();
        bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    void operator()(qint64 value) { raw(value); }
    void operator()(int value) { raw(value); }
    void operator()(double value) { raw(value); }
    void operator()(float value) { raw(value); }
    void operator()(bool value)
    {
        align();
        bytes.append(value ? '\1' : '\0');
    }
    void operator()(const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        raw(utf8.size());
        bytes.append(utf8);
    }
    void operator()(const QStringList &list)
    {
        raw(list.size());
        for (const QString &text : list)
            (*this)(text);
    }
    void operator()(const QMap<QString, QString> &map)
    {
        raw(map.size());
        for (auto entry = map.begin(); entry != map.end(); ++entry) {
            (*this)(entry.key());
            (*this)(entry.value());
        }
    }
};

/// The simplest reader, for valid bytes.
struct PlainReader
{
    static constexpr bool READS = true;
    const char *start;
    const char *next;

    void align() { next += (4 - (next - start) % 4) % 4; }
    template <typename T>
    void raw(T &value)
    {
        align();
        std::memcpy(&value, next, sizeof value);
        next += sizeof value;
    }
    void operator()(qint64 &value) { raw(value); }
    void operator()(int &value) { raw(value); }
    void operator()(double &value) { raw(value); }
    void operator()(float &value) { raw(value); }
    void operator()(bool &value)
    {
        align();
        value = *next++ != 0;
    }
    void operator()(QString &text)
    {
        int size = 0;
        raw(size);
        text = QString::fromUtf8(next, size);
        next += size;
    }
    void operator()(QStringList &list)
    {
        int count = 0;
        raw(count);
        for (int i = 0; i < count; ++i) {
            QString text;
            (*this)(text);
            list.append(text);
        }
    }
    void operator()(QMap<QString, QString> &map)
    {
        int count = 0;
        raw(count);
        for (int i = 0; i < count; ++i) {
            QString key;
            QString value;
            (*this)(key);
            (*this)(value);
            map.insert(key, value);
        }
    }
};

struct StreamWriter
{
    static constexpr bool READS = false;
    QDataStream &stream;
    template <typename T>
    void operator()(const T &value)
    {
        stream << value;
    }
};

struct StreamReader
{
    static constexpr bool READS = true;
    QDataStream &stream;
    template <typename T>
    void operator()(T &value)
    {
        stream >> value;
    }
};

// ------------------------------------------------------------------------------------------------------------ the data

constexpr int HEADERS = 20;

/// The bytes of an encoder, as input for the benchmarks.
std::string bytesOf(const PlacesAPIEncoder &encoder)
{
    char *data = nullptr;
    int length = 0;
    encoder.getData(data, length);
    return std::string(data, static_cast<std::size_t>(length));
}

struct Data
{
    Data()
    {
        sample::fill(place);
        PlaceHeaderPrivate::privateFromPublic(&header)->setData(*PlacePrivate::privateFromPublic(&place));
        PlacesAPIEncoder one;
        one.encodePlace(place);
        full = bytesOf(one);
        PlacesAPIEncoder many;
        many.encode(HEADERS);
        for (int i = 0; i < HEADERS; ++i)
            many.encodePlaceHeader(place);
        headers = bytesOf(many);

        PlainReader reader{full.data(), full.data()};
        visitPlace(reader, plain);
        PlainReader headerReader{headers.data(), headers.data() + 4};
        visitPlace(headerReader, plainHeader);

        PlainWriter writer;
        visitPlace(writer, plain);
        if (writer.bytes != QByteArray::fromStdString(full)) {
            std::cerr << "the hand-written codec writes other bytes\n";
            std::exit(EXIT_FAILURE);
        }
        QDataStream stream(&streamed, QIODevice::WriteOnly);
        StreamWriter streamWriter{stream};
        visitPlace(streamWriter, plain);
        QDataStream headerStream(&streamedHeaders, QIODevice::WriteOnly);
        StreamWriter headerWriter{headerStream};
        for (int i = 0; i < HEADERS; ++i)
            visitPlace(headerWriter, plainHeader);
    }

    Place place;
    PlaceHeader header;
    PlainPlace plain;
    PlainPlace plainHeader;
    std::string full;
    std::string headers;
    QByteArray streamed;
    QByteArray streamedHeaders;
};

const Data &data()
{
    static const Data data;
    return data;
}

// ------------------------------------------------------------------------------------------------------ the benchmarks

void encodePlace(benchmark::State &state)
{
    for (auto _ : state) {
        PlacesAPIEncoder encoder;
        benchmark::DoNotOptimize(encoder.encodePlace(data().place));
    }
}
BENCHMARK(encodePlace);

void encodePlaceByHand(benchmark::State &state)
{
    for (auto _ : state) {
        PlainWriter writer;
        visitPlace(writer, data().plain);
        benchmark::DoNotOptimize(writer.bytes.constData());
    }
}
BENCHMARK(encodePlaceByHand);

void encodePlaceStreamed(benchmark::State &state)
{
    for (auto _ : state) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        StreamWriter writer{stream};
        visitPlace(writer, data().plain);
        benchmark::DoNotOptimize(bytes.constData());
    }
}
BENCHMARK(encodePlaceStreamed);

void decodePlace(benchmark::State &state)
{
    for (auto _ : state) {
        PlacesAPIDecoder decoder(data().full.data(), static_cast<unsigned>(data().full.size()));
        Place *place = nullptr;
        benchmark::DoNotOptimize(decoder.decodePlace(place));
        delete place;
    }
}
BENCHMARK(decodePlace);

void decodePlaceByHand(benchmark::State &state)
{
    for (auto _ : state) {
        PlainPlace place;
        PlainReader reader{data().full.data(), data().full.data()};
        visitPlace(reader, place);
        benchmark::DoNotOptimize(place.id);
    }
}
BENCHMARK(decodePlaceByHand);

void decodePlaceStreamed(benchmark::State &state)
{
    for (auto _ : state) {
        PlainPlace place;
        QDataStream stream(data().streamed);
        StreamReader reader{stream};
        visitPlace(reader, place);
        benchmark::DoNotOptimize(place.id);
    }
}
BENCHMARK(decodePlaceStreamed);

void encodeHeaders(benchmark::State &state)
{
    for (auto _ : state) {
        PlacesAPIEncoder encoder;
        for (int i = 0; i < HEADERS; ++i)
            benchmark::DoNotOptimize(encoder.encodePlaceHeader(data().place, data().header));
    }
}
BENCHMARK(encodeHeaders);

void encodeHeadersStreamed(benchmark::State &state)
{
    for (auto _ : state) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        StreamWriter writer{stream};
        for (int i = 0; i < HEADERS; ++i)
            visitPlace(writer, data().plainHeader);
        benchmark::DoNotOptimize(bytes.constData());
    }
}
BENCHMARK(encodeHeadersStreamed);

void decodeHeaders(benchmark::State &state)
{
    for (auto _ : state) {
        PlacesAPIDecoder decoder(data().headers.data(), static_cast<unsigned>(data().headers.size()));
        QList<PlaceHeader *> headers;
        benchmark::DoNotOptimize(decoder.decodePlaces(headers));
        qDeleteAll(headers);
    }
}
BENCHMARK(decodeHeaders);

void decodeHeadersStreamed(benchmark::State &state)
{
    for (auto _ : state) {
        QDataStream stream(data().streamedHeaders);
        StreamReader reader{stream};
        QList<PlainPlace *> headers;
        for (int i = 0; i < HEADERS; ++i) {
            headers.append(new PlainPlace);
            visitPlace(reader, *headers.last());
        }
        benchmark::DoNotOptimize(headers.size());
        qDeleteAll(headers);
    }
}
BENCHMARK(decodeHeadersStreamed);

} // namespace

int main(int argc, char **argv)
{
    return bench::runAndPrint(argc, argv,
                              {{"encode a full place / by hand", "encodePlace", "encodePlaceByHand", 1.5},
                               {"decode a full place / by hand", "decodePlace", "decodePlaceByHand", 2.0},
                               {"encode a full place / QDataStream", "encodePlace", "encodePlaceStreamed", 0.5},
                               {"decode a full place / QDataStream", "decodePlace", "decodePlaceStreamed", 1.0},
                               {"encode 20 headers / QDataStream", "encodeHeaders", "encodeHeadersStreamed", 0.5},
                               {"decode 20 headers / QDataStream", "decodeHeaders", "decodeHeadersStreamed", 0.8}});
}
